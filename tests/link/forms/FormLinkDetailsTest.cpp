#include "link/forms/FormLinkDetails.h"

#include "link/Frames.h"
#include "link/LinkStatistics.h"
#include "link/PacketLog.h"
#include "support/WindowTest.h"

#include <QFile>
#include <QListWidget>
#include <QScrollBar>
#include <QTableView>

namespace quorvik::testing
{

class FormLinkDetailsTest : public WindowTest
{
protected:
    void Read(int first, int last)
    {
        for (int p = first; p <= last; ++p) {
            Q_EMIT desk.link.Sent(ReadRequest(p));
            Q_EMIT desk.link.Received(ValueReply(0), true);
        }
        Tick();
        Tick();
    }
    QString Cell(int row, int column = 4) const
    {
        const QAbstractItemModel *model = Find<QTableView>("TablePackets")->model();
        return model->index(row < 0 ? model->rowCount() + row : row, column).data().toString();
    }
    int Rows() const { return Find<QTableView>("TablePackets")->model()->rowCount(); }

    /** A time without the digits that the filters look for. */
    static qint64 Noon() { return QDateTime(QDate(2026, 1, 1), QTime(12, 0)).toMSecsSinceEpoch(); }

    LinkStatistics statistics{desk.link, MicrosecondsUp, Noon};
    PacketLog log{desk.link, statistics};
};

TEST_F(FormLinkDetailsTest, FollowsTheEndUntilTheUserLooksBack)
{
    Show<FormLinkDetails>(statistics, log);
    auto *view = Find<QTableView>("TablePackets");
    QScrollBar *bar = view->verticalScrollBar();
    Read(1, 100);
    EXPECT_EQ(Text("LabelRequests"), "100 (0 writes)");
    EXPECT_EQ(Cell(0), Name("read (1) ") + Record(1).Name);
    EXPECT_EQ(bar->value(), bar->maximum());
    bar->setValue(50);
    const auto topRow = [view] { return view->model()->index(view->rowAt(0), 2).data(); };
    const QVariant seen = topRow();
    Read(1, 10);
    EXPECT_EQ(topRow(), seen);
    // The first rows go, what is looked at stays.
    for (int i = 0; i < 9; ++i)
        Read(200, 299);
    EXPECT_EQ(Rows(), 2000);
    EXPECT_EQ(topRow(), seen);
    bar->setValue(bar->maximum());
    Read(300, 310);
    EXPECT_EQ(bar->value(), bar->maximum());
    EXPECT_EQ(Cell(-1).left(5), Name("(310)"));
}

TEST_F(FormLinkDetailsTest, FiltersStopsAndSavesWhatIsShown)
{
    auto *form = Show<FormLinkDetails>(statistics, log);
    statistics.Begin();
    Read(217, 217);
    Q_EMIT desk.link.Sent(ReadRequest(219));
    Q_EMIT desk.link.Failed(LinkFault::NoReply);
    Q_EMIT desk.link.Received(ValueReply(1), false);
    Tick();
    const std::tuple<int, const char *, int> cases[] = {{0, "", 5},       {1, "", 2},      {2, "", 1},
                                                        {3, "", 2},       {0, "219", 2},   {0, "00 D9", 1},
                                                        {1, "answer", 0}, {3, "answer", 1}};
    for (const auto &[kind, text, rows] : cases) {
        Pick("ComboKind", kind);
        Type("TextFilter", text);
        EXPECT_EQ(Rows(), rows) << kind << text;
    }
    Read(1, 9);
    EXPECT_EQ(Rows(), 1) << "the filter holds for what comes";
    EXPECT_EQ(Find<QListWidget>("ListSilences")->count(), 1);

    const QString path = desk.folder.filePath(QStringLiteral("details.txt"));
    form->ChooseFile = [&](const QString &) { return path; };
    Click("CommandSave");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string saved = file.readAll().toStdString();
    for (const char *part : {"On line since", "Requests:            11 (0 writes)", "Silence at ",
                             "Packets: 1\n", "no answer: read (219)"})
        EXPECT_THAT(saved, ::testing::HasSubstr(part));
    EXPECT_THAT(saved, ::testing::Not(::testing::HasSubstr("read (217)")));
    form->ChooseFile = [&](const QString &) { return QStringLiteral("/nowhere/details.txt"); };
    desk.asker.Expect(QStringLiteral("nowhere"));
    Click("CommandSave");

    Click("CommandStop");
    EXPECT_EQ(Text("CommandStop"), "&Go on");
    Type("TextFilter", "");
    Pick("ComboKind", 0);
    const int before = Rows();
    Read(1, 9);
    EXPECT_EQ(Rows(), before);
    Click("CommandStop");
    Read(1, 9);
    EXPECT_EQ(Rows(), before + 18);
    Click("CommandClear");
    EXPECT_EQ(Rows(), 0);
    Close();
    EXPECT_FALSE(log.IsRecording());
}

} // namespace quorvik::testing
