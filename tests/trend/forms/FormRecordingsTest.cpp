#include "trend/forms/FormRecordings.h"

#include "emulator/DriveEmulator.h"
#include "model/ParameterNumbers.h"
#include "support/WindowTest.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"
#include "trend/forms/TrendHost.h"

#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QThread>
#include <QTreeWidget>
#include <cstdlib>
#include <gmock/gmock.h>

namespace quorvik::testing
{

/** A host with recordings alone. */
class RecordingsOnly : public TrendHost
{
public:
    explicit RecordingsOnly(TestDesk &desk)
        : emulator(desk.table)
        , recorder(desk.table, desk.document, desk.link, emulator)
        , store(desk.folder.filePath(QStringLiteral("recordings")))
    {
        recorder.AddChannel(Param::VelFeedback, TrendPace::Fast);
    }

    TrendRecorder &Recorder() override { return recorder; }
    TrendStore &Store() override { return store; }
    TripTrend &Trips() override { std::abort(); }
    StepTest &Steps() override { std::abort(); }

    QString Record(const char *title, RecordingKind kind)
    {
        recorder.Start();
        for (int i = 0; i < 3; ++i)
            Q_EMIT emulator.Emulated();
        recorder.SetTitle(QLatin1String(title));
        recorder.Stop();
        QThread::msleep(2);
        const QString path = store.Save(recorder.Snapshot(), kind);
        EXPECT_TRUE(store.Flush(10'000));
        return path;
    }

    DriveEmulator emulator;
    TrendRecorder recorder;
    TrendStore store;
};

class FormRecordingsTest : public WindowTest
{
protected:
    void Open()
    {
        Show<FormRecordings>(host, [this](const QString &path, bool asOverlay) {
            opened += (asOverlay ? QStringLiteral("over ") : QString()) + path;
        });
    }
    QTreeWidget &List() { return *Find<QTreeWidget>("ListRecordings"); }
    std::vector<std::string> Titles()
    {
        std::vector<std::string> titles;
        for (int i = 0; i < List().topLevelItemCount(); ++i)
            if (!List().topLevelItem(i)->isHidden())
                titles.push_back(List().topLevelItem(i)->text(1).toStdString());
        return titles;
    }

    RecordingsOnly host{desk};
    QStringList opened;
};

TEST_F(FormRecordingsTest, RecordingsAreFoundOpenedKeptAndDeletedByKeys)
{
    const QString pump = host.Record("pump", RecordingKind::Capture);
    const QString trip = host.Record("<b>trip</b>", RecordingKind::Trip);
    Open();
    EXPECT_THAT(Titles(), ::testing::ElementsAre("<b>trip</b>", "pump"));
    QTest::keyClick(&List(), Qt::Key_Return);
    QTest::keyClick(&List(), Qt::Key_V, Qt::AltModifier);
    QTRY_COMPARE(opened.size(), 2);
    EXPECT_TRUE(opened[0] == trip && opened[1] == QStringLiteral("over ") + trip);

    QTest::keyClicks(Find<QLineEdit>("TextFilter"), QStringLiteral("PUM"));
    EXPECT_THAT(Titles(), ::testing::ElementsAre("pump"));
    EXPECT_FALSE(Enabled("CommandOpen")) << "what is hidden is not chosen";
    QTest::keyClick(&List(), Qt::Key_Down);
    auto *notes = Find<QPlainTextEdit>("TextNotes");
    notes->setPlainText(QStringLiteral("after the repair"));
    // A list that is read anew takes nothing away from under the user.
    host.Record("another pump", RecordingKind::Capture);
    QTRY_COMPARE(Titles().size(), 2U);
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("after the repair"));
    Click("CommandKeep");
    const TrendDataPtr kept = host.store.Load(pump, nullptr);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->head.notes.toStdString(), "after the repair");

    List().setFocus();
    desk.asker.Expect("Delete the recording of", MsgAnswer::No);
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_TRUE(QFile::exists(pump));
    desk.asker.Expect("Delete the recording of", MsgAnswer::Yes);
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_FALSE(QFile::exists(pump));
    EXPECT_TRUE(QFile::exists(trip));
}

} // namespace quorvik::testing
