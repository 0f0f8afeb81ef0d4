#include "compare/forms/FormCompare.h"
#include "history/PastStates.h"
#include "shell/OpenWindows.h"
#include "shell/ShellFixture.h"

#include <QTableView>

namespace quorvik::testing
{

namespace
{

/** The comparison over the wire: menu, question and drive. */
class CompareOverTheWire : public ShellTest
{
protected:
    /** What the rows show of set 1, set 2 and the difference, with the number before. */
    QStringList ShownRows() const
    {
        const QAbstractItemModel *rows = Find<QTableView>("TableDifferences")->model();
        QStringList shown;
        for (int row = 0; row < rows->rowCount(); ++row) {
            QStringList cells;
            for (const int column : {0, 3, 4, 5})
                cells += rows->index(row, column).data().toString();
            shown += cells.join(u' ');
        }
        return shown;
    }
    QString Head() const
    {
        return Find<QTableView>("TableDifferences")->model()->headerData(4, Qt::Horizontal).toString();
    }

    SimulatedDrive drive;
};

TEST_F(CompareOverTheWire, TheMenuReadsTheDriveAsideAndCopiesIntoIt)
{
    drive.Set(Param::Reference1, 777);
    drive.Set(Param::FwdAccelA, 60);
    UseDrive(drive);
    LoadQuietly();
    Table().SetValue(Param::JogReference, 600, ChangeCause::Factory);
    Trigger("mnuToolsCompare");
    EXPECT_EQ(ShownRows(), QStringList{QStringLiteral("221 6.00 % 5.00 % -1.00 %")})
        << "the factory set at first";
    Click("CommandReadDrive");
    EXPECT_TRUE(Link().PortOpen());
    EXPECT_TRUE(Head().startsWith(QStringLiteral("drive, read ")));
    EXPECT_EQ(ShownRows(), (QStringList{QStringLiteral("218 0.00 % 7.77 % +7.77 %"),
                                        QStringLiteral("221 6.00 % 5.00 % -1.00 %"),
                                        QStringLiteral("226 5.0 Sec 6.0 Sec +1.0 Sec")}));
    EXPECT_EQ(drive.Stat(QStringLiteral("writes")), 0);
    EXPECT_EQ(Table().Value(Param::Reference1), 0) << "the table is left alone";

    Click("CommandTakeAll");
    Type("TextSearch", "22");
    auto *direction = Find<QComboBox>("ComboDirection");
    direction->setCurrentIndex(direction->findText(QStringLiteral("open set to drive"), Qt::MatchStartsWith));
    Click("CommandCopy");
    EXPECT_EQ(drive.Value(Param::JogReference), 600);
    EXPECT_EQ(drive.Value(Param::FwdAccelA), 50);
    EXPECT_EQ(drive.Value(Param::Reference1), 777) << "it was not shown";
    EXPECT_EQ(ShownRows(), QStringList());
    EXPECT_TRUE(
        QString::fromStdString(Text("LabelOutcome")).startsWith(QStringLiteral("2 written and verified")))
        << Text("LabelOutcome");
    EXPECT_NE(Find<QComboBox>("ComboSide(0)")->findText(QStringLiteral("Backup "), Qt::MatchStartsWith), -1);
    Set().DriveModified = false;
}

TEST_F(CompareOverTheWire, WhatTheDriveHasTakenIsTakenBack)
{
    QCoreApplication::setApplicationVersion(QStringLiteral("1"));
    drive.Set(Param::FwdAccelA, 60);
    UseDrive(drive);
    LoadQuietly();
    Trigger("mnuToolsCompare");
    Click("CommandReadDrive");
    Click("CommandTakeAll");
    auto *direction = Find<QComboBox>("ComboDirection");
    direction->setCurrentIndex(direction->findText(QStringLiteral("open set to drive"), Qt::MatchStartsWith));
    Click("CommandCopy");
    EXPECT_EQ(drive.Value(Param::FwdAccelA), 50);

    Engines &engines = main->AllEngines();
    JournalReader reader(engines.journal.Path());
    PastStates past(reader, engines.backups, Table());
    const auto changes = [&] {
        engines.recorder.HandOver();
        EXPECT_TRUE(engines.journal.Flush(10'000));
        const JournalFilter ofRamp{.param = Param::FwdAccelA};
        return reader.RowsOf(reader.Actions(ofRamp, 0, 1).at(0), ofRamp);
    };
    ShowCompareWith(*main, past.Before(changes()), true);
    EXPECT_EQ(ShownRows(), QStringList{QStringLiteral("226 6.0 Sec 5.0 Sec -1.0 Sec")});
    Click("CommandCopy");
    EXPECT_EQ(drive.Value(Param::FwdAccelA), 60);
    EXPECT_EQ(changes().at(0).row.result, EntryResult::Verified);
    const qint64 now = JournalTime::Now().utcMs;
    const PastState state = past.StateAt(past.Drives().at(0), now);
    EXPECT_EQ(state.set.Value(Param::FwdAccelA), 60) << state.note.toStdString();
    EXPECT_TRUE(state.set.Knows(Param::JogReference)) << "by the backup that the write made";
    Set().DriveModified = false;
}

TEST_F(CompareOverTheWire, TheOnLineQuestionLeadsToIt)
{
    drive.Set(Param::Reference1, 777);
    UseDrive(drive);
    LoadQuietly();
    asker.Expect(QStringLiteral("Write current parameter settings"), MsgAnswer::Other);
    Trigger("mnuToolsOnline");
    ASSERT_TRUE(QTest::qWaitFor([this] {
        return main->findChild<FormCompare *>() && Head().startsWith(QStringLiteral("drive, read "));
    }));
    EXPECT_EQ(ShownRows(), QStringList{QStringLiteral("218 0.00 % 7.77 % +7.77 %")});
    EXPECT_EQ(drive.Stat(QStringLiteral("writes")), 0);
    EXPECT_EQ(Table().Value(Param::Reference1), 0);
}

} // namespace

} // namespace quorvik::testing
