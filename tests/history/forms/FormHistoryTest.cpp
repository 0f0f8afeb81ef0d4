#include "history/forms/FormHistory.h"

#include "history/HistoryTexts.h"
#include "history/forms/HistoryModel.h"
#include "history/forms/HistoryView.h"
#include "history/forms/ScriptedHistory.h"
#include "support/WindowTest.h"

#include <QCheckBox>
#include <QClipboard>
#include <QMenu>
#include <QProcess>
#include <QRegularExpression>
#include <QScrollBar>

namespace quorvik::testing
{

namespace
{

using ::testing::ElementsAre;

constexpr int HourMs = 3600000;

class FormHistoryTest : public WindowTest
{
protected:
    FormHistoryTest()
    {
        desk.desk.ShowParameter = [this](int p) {
            shown.append(QStringLiteral("box %1").arg(p));
            return p != Param::RunEnable;
        };
        desk.desk.ShowInList = [this](int p) { shown.append(QStringLiteral("list %1").arg(p)); };
    }

    void Open()
    {
        host.Flush();
        form = Show<FormHistory>(host);
    }
    HistoryView &View() const { return form->View(); }
    const HistoryModel &Model() const { return *qobject_cast<HistoryModel *>(View().model()); }
    /** A line below a run. */
    QModelIndex Line(int run, int line) const { return Model().index(line, 0, Model().index(run, 0)); }
    std::string Cell(const QModelIndex &line, HistoryModel::Column column) const
    {
        return line.siblingAtColumn(column).data().toString().toStdString();
    }
    /** What stands in a column, of all lines of a run. */
    std::vector<std::string> Cells(int run, HistoryModel::Column column) const
    {
        std::vector<std::string> texts;
        for (int line = 0; line < Model().rowCount(Model().index(run, 0)); ++line)
            texts.push_back(Cell(Line(run, line), column));
        return texts;
    }
    void Follow()
    {
        host.Flush();
        QMetaObject::invokeMethod(Find<QTimer>("TimerFollow"), "timeout");
    }

    ScriptedHistory host{desk};
    FormHistory *form = nullptr;
    QStringList shown;
};

TEST_F(FormHistoryTest, ReadsByPagesAndTakesUpWhatIsNewAboveThePlaceInSight)
{
    constexpr int actions = 2 * HistoryModel::Page + 50;
    for (int i = 1; i <= actions; ++i)
        host.Add({}, 217, {i});
    host.Flush();
    host.BeginRun();
    const int sequence = host.Add({.origin = Origin::Switch}, 218, {20}, EntryResult::Queued);
    host.Flush();
    HistoryModel model(host.reader, nullptr);
    model.SetFilter({});
    ASSERT_EQ(model.rowCount(), 2) << "a line for each run";
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 1);
    EXPECT_EQ(model.rowCount(model.index(1, 0)), HistoryModel::Page - 1);
    while (model.HasOlder())
        model.FetchOlder();
    ASSERT_EQ(model.rowCount(model.index(1, 0)), actions);
    for (int line = 0; line < actions; ++line)
        ASSERT_EQ(model.RowAt(model.index(line, 0, model.index(1, 0)))->row.rawAfter, actions - line);

    Open();
    EXPECT_EQ(host.Refreshed, 1);
    QScrollBar *bar = View().verticalScrollBar();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        bar->setValue(bar->maximum());
        return Model().rowCount(Model().index(1, 0)) == actions;
    })) << "older ones come as they come in sight";
    bar->setValue(100);
    const QModelIndex top = View().indexAt(QPoint(0, 0));
    const std::int32_t before = Model().RowAt(top)->row.rawAfter;
    EXPECT_EQ(Cell(Line(0, 0), HistoryModel::ResultColumn), "queued");
    for (int i = 0; i < 3; ++i)
        host.Add({.origin = Origin::Mentor}, 219, {30});
    host.Write({.results = {{.sequence = sequence, .time = host.Time, .result = EntryResult::Verified}}});
    Follow();
    EXPECT_THAT(Cells(0, HistoryModel::OriginColumn), ElementsAre("Mentor", "Mentor", "Mentor", "switch"));
    EXPECT_EQ(Cell(Line(0, 3), HistoryModel::ResultColumn), "verified");
    EXPECT_EQ(Model().RowAt(View().indexAt(QPoint(0, 0)))->row.rawAfter, before);
}

TEST_F(FormHistoryTest, ActionsOfSeveralRowsOpenAndTellWhatBecameOfThem)
{
    const int last = host.Add({.origin = Origin::Mentor, .title = QStringLiteral("<b>Basic</b>")}, 217,
                              {20, 30, 40}, EntryResult::Acknowledged);
    host.Write({.results = {{.sequence = last,
                             .time = host.Time,
                             .result = EntryResult::Differs,
                             .raw = 39,
                             .text = QStringLiteral("39 %")}}});
    host.Add({.origin = Origin::File}, 217, {});
    host.Write({.notes = {{.action = 2, .text = QStringLiteral("Opened /a/b.Svx")}}});
    Open();
    EXPECT_EQ(Cell(Line(0, 0), HistoryModel::WhatColumn), "Opened /a/b.Svx");
    EXPECT_EQ(Cell(Line(0, 0), HistoryModel::SetColumn), "b.Svx");
    EXPECT_FALSE(Model().hasChildren(Line(0, 0)));
    const QModelIndex burst = Line(0, 1);
    EXPECT_EQ(Cell(burst, HistoryModel::WhatColumn), "<b>Basic</b>");
    EXPECT_EQ(Cell(burst, HistoryModel::ResultColumn), "2 acknowledged, 1 differs");
    View().setCurrentIndex(burst);
    Press(Qt::Key_Return);
    ASSERT_EQ(Model().rowCount(burst), 3);
    const QModelIndex third = Model().index(2, 0, burst);
    EXPECT_EQ(Cell(third, HistoryModel::WhatColumn), "(217) Reference 217");
    EXPECT_EQ(Cell(third, HistoryModel::FromColumn), "30 %");
    EXPECT_EQ(Cell(third, HistoryModel::ResultColumn), "differs, the drive has 39 %");
    EXPECT_EQ(Model().RowsAt(burst).size(), 3);
    Pick("ComboResult", Find<QComboBox>("ComboResult")->findText(QStringLiteral("differs")));
    EXPECT_EQ(Cell(Line(0, 0), HistoryModel::WhatColumn), "(217) Reference 217 \302\267 <b>Basic</b>");
    EXPECT_EQ(Cell(Line(0, 0), HistoryModel::ToColumn), "40 %");
}

TEST_F(FormHistoryTest, FiltersNarrowTheList)
{
    const DriveIdentity identity{.model = 3, .driveAmps = 40, .operatingHours = 100, .lastParam = 433};
    host.Write({.drives = {{.link = 1, .time = host.Time, .identity = identity}}});
    const qint64 now = host.Time.utcMs;
    host.Time.utcMs = now - qint64(24) * 20 * HourMs;
    host.Add({.origin = Origin::EditDialog}, 217, {1});
    host.Time.utcMs = now;
    host.Add({.origin = Origin::Mentor}, 218, {2}, EntryResult::Refused);
    host.Add({.origin = Origin::Switch, .link = 1}, 219, {3}, EntryResult::Verified);
    Open();
    EXPECT_FALSE(Enabled("CheckThisDrive"));
    host.Drive = JournalSighting{identity, host.Time};
    Tick();
    const auto values = [this] { return Cells(0, HistoryModel::ToColumn); };
    EXPECT_THAT(values(), ElementsAre("3 %", "2 %", "1 %"));
    const struct {
        const char *list;
        const char *choice;
        const char *value;
    } rows[] = {
        {"ComboParameter", "(217)", "1 %"},
        {"ComboOrigin", "Mentor", "2 %"},
        {"ComboResult", "verified", "3 %"},
    };
    for (const auto &row : rows) {
        auto *list = Find<QComboBox>(row.list);
        list->setCurrentIndex(list->findText(Name(row.choice), Qt::MatchStartsWith));
        EXPECT_THAT(values(), ElementsAre(row.value)) << row.choice;
        list->setCurrentIndex(0);
    }
    for (const auto &[days, count] : {std::pair{1, 2}, {2, 2}, {3, 3}}) {
        Pick("ComboDays", days);
        EXPECT_EQ(values().size(), count) << days;
    }
    Pick("ComboDays", 0);
    Find<QCheckBox>("CheckThisDrive")->setChecked(true);
    EXPECT_THAT(values(), ElementsAre("3 %"));
    host.Drive.reset();
    Tick();
    EXPECT_TRUE(Enabled("CheckThisDrive")) << "or it could not be taken away";
    Find<QCheckBox>("CheckThisDrive")->setChecked(false);
    EXPECT_FALSE(Enabled("CheckThisDrive"));
    Type("TextSearch", "rEFERENCE 218");
    EXPECT_TRUE(QTest::qWaitFor([&] { return values().size() == 1; }));
    Type("TextSearch", "nowhere");
    EXPECT_TRUE(QTest::qWaitFor([&] { return Visible("LabelEmpty"); }));
    EXPECT_EQ(Text("LabelEmpty"), "Nothing that was recorded fits these filters.");
    form->ShowOnly(217);
    EXPECT_THAT(values(), ElementsAre("1 %"));
    EXPECT_TRUE(View().isVisible());
}

TEST_F(FormHistoryTest, WorksByTheKeyboard)
{
    host.Add({}, Param::RunEnable, {1});
    host.Add({}, Param::Reference1, {2});
    Open();
    EXPECT_EQ(QApplication::focusWidget(), &View());
    Press(Qt::Key_Down);
    Press(Qt::Key_Enter, Qt::KeypadModifier);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text().count(u'\n'), 1) << "two lines";
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(
        QStringLiteral("(218) Reference 218, from -8 %, to 2 %, kept off line")));
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);
    EXPECT_EQ(shown.join(u' ').toStdString(),
              qPrintable(QStringLiteral("box 218 box %1 list %1").arg(int(Param::RunEnable))));
    Press(Qt::Key_Up);
    Q_EMIT View().customContextMenuRequested(View().visualRect(View().currentIndex()).center());
    auto *menu = FindIn<QMenu>(window, "");
    ASSERT_TRUE(menu);
    menu->findChild<QAction *>(QStringLiteral("mnuHistoryOnly"))->trigger();
    EXPECT_THAT(Cells(0, HistoryModel::ToColumn), ElementsAre("2 %"));
}

TEST_F(FormHistoryTest, HandsOverWhatIsToBeTakenBackAndWhichMomentIsWanted)
{
    host.Add({}, 217, {1});
    host.Time.utcMs = 1763800353456;
    host.Add({.origin = Origin::Mentor}, 218, {2, 3});
    Open();
    const QModelIndex burst = Line(0, 0);
    View().setExpanded(burst, true);
    for (const QModelIndex &line : {burst, Model().index(1, 0, burst), Line(0, 1)})
        View().selectionModel()->select(line, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    Click("CommandTakeBack");
    std::vector<int> values;
    for (const ShownRow &row : host.TakenBack)
        values.push_back(row.row.rawAfter);
    EXPECT_THAT(values, ElementsAre(2, 3, 1)) << "each once";

    Click("CommandStateAt");
    EXPECT_EQ(Text("LabelOutcome"), "The history knows of no drive yet: nothing was written to one.");
    host.Drive = JournalSighting{DriveIdentity(), host.Time};
    View().selectionModel()->setCurrentIndex(burst, QItemSelectionModel::NoUpdate);
    QTimer::singleShot(0, form,
                       [] { FindIn<QPushButton>(QApplication::activeModalWidget(), "CommandOK")->click(); });
    Click("CommandStateAt");
    EXPECT_EQ(host.StateWanted, 1763800353999) << "with all that was changed in that second";
}

TEST_F(FormHistoryTest, SaysWhatThereIsNotToSee)
{
    Open();
    EXPECT_TRUE(Text("LabelEmpty").starts_with("Nothing is recorded yet."));
    host.Add({}, 217, {1});
    Follow();
    EXPECT_FALSE(Visible("LabelEmpty"));
    EXPECT_EQ(Model().rowCount(), 1);

    const QString damaged = desk.folder.filePath(QStringLiteral("damaged.sqlite"));
    QFile file(damaged);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5000, 'x')) == 5000);
    file.close();
    JournalReader reader(damaged);
    HistoryModel model(reader, nullptr);
    model.SetFilter({});
    EXPECT_FALSE(model.Failure().isEmpty());
}

TEST_F(FormHistoryTest, ExportsWhatTheFiltersShow)
{
    host.Time = {.utcMs = 1763800353000, .offsetMinutes = 60};
    for (int i = 0; i < 120; ++i)
        host.Add({.origin = Origin::Compare, .title = QStringLiteral("=1+1")}, 218, {1000 + i},
                 EntryResult::Verified);
    host.Add({}, 219, {7});
    Open();
    form->ShowOnly(218);
    const QString csv = desk.folder.filePath(QStringLiteral("a.csv"));
    const QString pdf = desk.folder.filePath(QStringLiteral("a.PDF"));
    for (const QString &path : {csv, pdf}) {
        form->ChooseExport = [path](const QString &) { return path; };
        Click("CommandExport");
        EXPECT_EQ(Text("LabelOutcome"),
                  qPrintable(QStringLiteral("120 rows exported to \"%1\".").arg(path.section(u'/', -1))));
    }
    QFile file(csv);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"));
    ASSERT_EQ(lines.size(), 2 + 1 + 120 + 1);
    EXPECT_EQ(lines[0], QStringLiteral("\"Shown\",\"(218) Reference 1\""));
    EXPECT_EQ(
        lines[3],
        QStringLiteral("\"2025-11-22 09:32:33 +01:00\",\"anna\",\"compare\",\"'=1+1\",\"218\","
                       "\"Reference 218\",\"1109 %\",\"1119 %\",\"verified\",\"/a/b.Svx\",\"off line\""));

    QProcess tool;
    tool.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    ASSERT_TRUE(tool.waitForFinished()) << "pdftotext is needed";
    const QString printed = QString::fromUtf8(tool.readAllStandardOutput());
    const QStringList pages = printed.split(u'\f', Qt::SkipEmptyParts);
    ASSERT_GT(pages.size(), 2);
    EXPECT_TRUE(pages[0].contains(QStringLiteral("Shown: (218) Reference 1")));
    for (int page = 0; page < pages.size(); ++page) {
        EXPECT_TRUE(pages[page].contains(QStringLiteral("Page %1").arg(page + 1)));
        EXPECT_TRUE(pages[page].contains(QRegularExpression(QStringLiteral("Time +User +Origin"))));
    }
    EXPECT_EQ(printed.count(QStringLiteral("=1+1")), 120);

    form->ChooseExport = [this](const QString &) {
        return desk.folder.filePath(QStringLiteral("no/such/a.csv"));
    };
    desk.asker.Expect("no/such");
    Click("CommandExport");
}

TEST(HistoryTextsTest, TimesSayTheirZoneWhereItIsAnotherOne)
{
    const struct {
        int minutes;
        int now;
        const char *text;
        const char *whole;
    } rows[] = {
        {60, 60, "2025-11-22 09:32:33", "2025-11-22 09:32:33 +01:00"},
        {60, 120, "2025-11-22 09:32:33 UTC+1", "2025-11-22 09:32:33 +01:00"},
        {-210, 60, "2025-11-22 05:02:33 UTC-3:30", "2025-11-22 05:02:33 -03:30"},
    };
    for (const auto &row : rows) {
        const JournalTime time{1763800353000, row.minutes};
        EXPECT_EQ(HistoryTexts::Time(time, row.now).toStdString(), row.text);
        EXPECT_EQ(HistoryTexts::WholeTime(time).toStdString(), row.whole);
    }
    EXPECT_EQ(HistoryTexts::Before({}), QStringLiteral("not known"));
}

} // namespace

} // namespace quorvik::testing
