#include "compare/forms/FormCompare.h"

#include "compare/forms/CompareSides.h"
#include "compare/forms/DifferenceModel.h"
#include "compare/forms/DifferenceView.h"
#include "compare/forms/ScriptedHost.h"
#include "support/WindowTest.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QProcess>

namespace quorvik::testing
{

namespace
{

using Kind = CompareSource::Kind;
using ::testing::ElementsAre;

class FormCompareTest : public WindowTest
{
protected:
    FormCompareTest()
    {
        host.Drive = ParameterSet::Of(desk.table, QStringLiteral("drive, read 14:03:12"));
        host.Blocks = QStringList(desk.table.LastParam + 1);
        host.Blocks[Param::Reference1] = QStringLiteral("Setpoints");
        desk.desk.Now = [] { return QDateTime({2026, 3, 9}, {14, 5, 10}); };
    }

    /** Open set against a drive that has been read. */
    void ShowAgainstDrive()
    {
        form = Show<FormCompare>(host);
        form->CompareWithDrive();
    }
    QAbstractItemModel *Table() const { return Find<DifferenceView>("TableDifferences")->model(); }
    QString Cell(int row, int column) const { return Table()->index(row, column).data().toString(); }
    std::vector<int> ShownParams() const
    {
        std::vector<int> numbers;
        for (int row = 0; row < Table()->rowCount(); ++row)
            numbers.push_back(Cell(row, 0).toInt());
        return numbers;
    }
    QString Head(int column) const { return Table()->headerData(column, Qt::Horizontal).toString(); }
    /** The row's cells, as text. */
    QStringList Row(int row) const
    {
        QStringList cells;
        for (int column = 0; column < Table()->columnCount(); ++column)
            cells += Cell(row, column);
        return cells;
    }
    void Copy(const Name &direction)
    {
        auto *list = Find<QComboBox>("ComboDirection");
        list->setCurrentIndex(list->findText(direction));
        EXPECT_EQ(list->currentText(), direction);
        Click("CommandTakeAll");
        Click("CommandCopy");
    }
    QString SavedSet(const char *name)
    {
        const QString path = desk.folder.filePath(QString::fromLatin1(name));
        EXPECT_EQ(SettingsFile(desk.table, desk.document).Save(path), QString());
        return path;
    }
    ParameterSet ReadBack(const QString &path) const
    {
        QString failure;
        return ParameterSet::FromFile(path, desk.table, failure);
    }

    ScriptedHost host{desk};
    FormCompare *form = nullptr;
};

TEST_F(FormCompareTest, OpensOnWhatDiffersAndFollowsTheOpenSet)
{
    Show<FormCompare>(host);
    EXPECT_THAT(ShownParams(), ElementsAre()) << "the factory set is open";
    EXPECT_FALSE(Visible("LabelBanner"));
    desk.table.SetParamValue(Param::Reference1, 500, true, true);
    desk.table.SetParamValue(Param::Run, 1, true, true);
    desk.table.SetValue(Param::DriveState, 1, ChangeCause::Emulated);
    Tick();
    EXPECT_THAT(ShownParams(), ElementsAre(Param::Reference1));
    EXPECT_EQ(Row(0),
              (QStringList{QStringLiteral("218"), QStringLiteral("Reference 1"), QStringLiteral("Setpoints"),
                           QStringLiteral("5.00 %"), QStringLiteral("0.00 %"), QStringLiteral("-5.00 %"),
                           QStringLiteral("setting"), QString()}));
    EXPECT_EQ(Text("LabelCounts"), "1 of 434 rows, 0 ticked");

    Click("CheckCommands");
    Click("CheckStatus");
    EXPECT_THAT(ShownParams(), ElementsAre(Param::Reference1, Param::Run, Param::DriveState))
        << "settings that differ come first";
    EXPECT_EQ(Cell(1, 7), QStringLiteral("set by the input of (1)"));
    Type("TextSearch", "setpoin");
    EXPECT_THAT(ShownParams(), ElementsAre(Param::Reference1));
    Click("CheckDiffering");
    Find<QLineEdit>("TextSearch")->setText(QStringLiteral("reference"));
    Click("CheckChanged");
    EXPECT_THAT(ShownParams(), ElementsAre(Param::Reference1));
}

TEST_F(FormCompareTest, AnUnreadDriveIsSaidInEachRow)
{
    P(Param::Reference1) = 500;
    form = Show<FormCompare>(host);
    form->Sides().Select(1, {Kind::Drive});
    ASSERT_GT(Table()->rowCount(), 200) << "all settings";
    for (int row = 0; row < Table()->rowCount(); ++row)
        EXPECT_EQ(Cell(row, 4), QStringLiteral("not read")) << row;
    EXPECT_EQ(Text("LabelBanner"), "The drive has not been read yet. \"Read Drive\" does so.");

    // A reading that comes to nothing leaves it so; one by half says which rows are missing.
    const ParameterSet whole = std::exchange(host.Drive, ParameterSet{});
    host.ReadingResult = {Outcome::LinkLost};
    Click("CommandReadDrive");
    EXPECT_EQ(Text("LabelBanner"), "The drive could not be read. \"Read Drive\" tries again.");
    EXPECT_EQ(Cell(0, 4), QStringLiteral("not read"));
    host.Drive = whole;
    host.Drive.known[Param::Reference1] = false;
    host.ReadingResult = {Outcome::Partial, {Param::Reference1}};
    Click("CommandReadDrive");
    EXPECT_EQ(Row(0).mid(0, 6),
              (QStringList{QStringLiteral("218"), QStringLiteral("Reference 1"), QStringLiteral("Setpoints"),
                           QStringLiteral("5.00 %"), QStringLiteral("not read"), QString()}));
    EXPECT_EQ(Head(4), QStringLiteral("drive, half read 14:05:10"));
    host.Drive = whole;
    host.ReadingResult = {};
    Click("CommandReadDrive");
    EXPECT_EQ(Head(4), QStringLiteral("drive, read 14:03:12"));
    EXPECT_EQ(Cell(0, 4), QStringLiteral("0.00 %"));
    EXPECT_FALSE(Visible("LabelBanner"));
    EXPECT_EQ(P(Param::Reference1), 500) << "the open set is left alone";
}

TEST_F(FormCompareTest, OtherModelsAndBadFilesAreSaidAboveTheRows)
{
    host.Drive.records[Param::DriveModel].Value = 1;
    ShowAgainstDrive();
    EXPECT_TRUE(QString::fromStdString(Text("LabelBanner"))
                    .startsWith(QStringLiteral("The models differ (open set: ")));
    QFile bad(desk.folder.filePath(QStringLiteral("bad.Svx")));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    desk.asker.ExpectOpen(bad.fileName());
    Click("CommandFile(2)");
    EXPECT_TRUE(
        QString::fromStdString(Text("LabelBanner")).contains(QStringLiteral("is not a settings file")));
    EXPECT_EQ(Head(5), QStringLiteral("bad.Svx"));
    EXPECT_EQ(Cell(0, 5), QStringLiteral("not read"));
}

TEST_F(FormCompareTest, TheKeyboardAloneTicksCopiesAndSorts)
{
    for (const int p : {Param::Reference0, Param::Reference1, Param::Reference2})
        host.Drive.records[p].Value = 700 + p;
    host.Drive.records[Param::Reference2].Value = 30000;
    ShowAgainstDrive();
    ASSERT_THAT(ShownParams(), ElementsAre(217, 218, 219));
    auto *view = Find<DifferenceView>("TableDifferences");
    EXPECT_EQ(QApplication::focusWidget(), view);
    Press(Qt::Key_Space);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Text("LabelCounts"), "3 of 434 rows, 1 ticked");
    Press(Qt::Key_Space);
    EXPECT_EQ(Text("LabelCounts"), "3 of 434 rows, 3 ticked") << "all of a mixed selection";
    QTest::keyClick(view, Qt::Key_C, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Text("LabelOutcome").empty(); }));
    EXPECT_EQ(Text("LabelOutcome"),
              "1 value copied into the open set; 2 not copied: the column Note says why.");
    EXPECT_EQ(P(Param::Reference1), 918);
    EXPECT_EQ(Record(Param::Reference1).WriteFlag, WriteState::Queued);
    EXPECT_TRUE(desk.document.FileModified);
    ASSERT_THAT(ShownParams(), ElementsAre(217, 219));
    EXPECT_EQ(Cell(0, 7), QStringLiteral("Not copied: it is set by (23) Analog In 1 Destination."));
    EXPECT_TRUE(Cell(1, 7).startsWith(QStringLiteral("Not copied: it lies outside its limits")));
    Tick();
    EXPECT_FALSE(Cell(1, 7).isEmpty()) << "what was said stays while nobody does anything";

    view->setCurrentIndex(Table()->index(0, 0));
    view->setFocus();
    Press(Qt::Key_Return, Qt::ControlModifier);
    Press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(ShownParams(), ElementsAre(219, 217));
    // Round the window by Tab, through every control.
    QSet<QString> reached;
    for (int i = 0; i < 40; ++i) {
        Press(Qt::Key_Tab);
        reached.insert(QApplication::focusWidget()->objectName());
    }
    for (const QWidget *control : window->findChildren<QWidget *>())
        if (control->isVisible() && (control->focusPolicy() & Qt::TabFocus) != 0 &&
            !control->objectName().startsWith(u"qt_")) {
            EXPECT_TRUE(reached.contains(control->objectName())) << control->objectName().toStdString();
        }
}

TEST_F(FormCompareTest, FilesAreSavedAndBackupsAreNot)
{
    const QString path = SavedSet("a.Svx");
    const QString backup = SavedSet("kept.Svx");
    host.Kept = {{backup, QStringLiteral("kept")}};
    P(Param::Reference1) = 500;
    form = Show<FormCompare>(host);
    desk.asker.ExpectOpen(path);
    Click("CommandFile(1)");
    desk.asker.Expect(QStringLiteral("Copy 1 value into \"a.Svx\"?"), MsgAnswer::No);
    Copy("open set to a.Svx");
    EXPECT_EQ(ReadBack(path).Value(Param::Reference1), 0);
    desk.asker.Expect(QStringLiteral("The file is saved at once."), MsgAnswer::Yes);
    Click("CommandCopy");
    EXPECT_EQ(ReadBack(path).Value(Param::Reference1), 500);
    EXPECT_EQ(Table()->rowCount(), 0) << "read again";

    desk.table.SetParamValue(Param::Reference1, 7, true, true);
    Tick();
    desk.document.FileName = path;
    Click("CommandCopy");
    EXPECT_EQ(Text("LabelOutcome"),
              "\"a.Svx\" is the open set's own file: copy into the open set, and save it.");
    EXPECT_EQ(ReadBack(path).Value(Param::Reference1), 500);
    desk.document.UpdateTitle();
    Tick();
    EXPECT_EQ(Head(3), QStringLiteral("open set (a.Svx)"));

    // A backup is only a source, also when it was chosen as a file.
    desk.asker.ExpectOpen(backup);
    Click("CommandFile(1)");
    EXPECT_EQ(Find<QComboBox>("ComboDirection")->count(), 1);
    EXPECT_EQ(Text("ComboDirection"), "backup kept to open set (a.Svx)");
    const QString presets = SavedSet("presets.FIL");
    form->Sides().Select(0, {Kind::File, presets});
    EXPECT_EQ(Find<QComboBox>("ComboDirection")->count(), 0);
    Click("CommandCopy");
    EXPECT_EQ(Text("LabelOutcome").substr(0, 43), "None of these sets can be copied into: choo");
}

TEST_F(FormCompareTest, TheDriveIsWrittenOnLineOnlyAndShowsWhatWasReadBack)
{
    for (const int p : {Param::Reference1, Param::Reference2, Param::Reference3})
        P(p) = p;
    P(Param::DriveState) = 1;
    P(Param::SaveParameters) = 1;
    desk.table.SetPortOpen(true);
    ShowAgainstDrive();
    for (const char *kind : {"CheckStatus", "CheckCommands"})
        Click(kind);
    // The line goes down and comes up again: it may be another drive.
    desk.table.SetPortOpen(false);
    Copy("open set to drive, read 14:03:12");
    EXPECT_EQ(Text("LabelOutcome").substr(0, 24), "The program is off line.");
    Tick();
    desk.table.SetPortOpen(true);
    Click("CommandCopy");
    EXPECT_EQ(Text("LabelOutcome").substr(0, 47), "The line was down since the drive was read. \"Re");
    EXPECT_TRUE(host.Written.empty());
    Click("CommandReadDrive");

    const auto row = [](int p, Arrival arrival, std::optional<std::int32_t> rawFound) {
        return WrittenRow{.value = {p, p}, .arrival = arrival, .rawFound = rawFound};
    };
    host.Report.rows = {row(Param::Reference1, Arrival::Verified, 218),
                        row(Param::Reference2, Arrival::Sent, {}),
                        row(Param::Reference3, Arrival::Differs, 3)};
    Click("CommandCopy");
    EXPECT_THAT(host.Written, ElementsAre(ParamValue{218, 218}, ParamValue{219, 219}, ParamValue{220, 220}));
    EXPECT_EQ(host.WrittenFrom, QStringLiteral("open set"));
    EXPECT_EQ(Head(4), QStringLiteral("drive, written 14:05:10"));
    ASSERT_THAT(ShownParams(), ElementsAre(219, 220, Param::SaveParameters, Param::DriveState));
    EXPECT_EQ(Cell(0, 4), QStringLiteral("not read"));
    EXPECT_EQ(Cell(1, 4), QStringLiteral("0.03 %"));
    EXPECT_EQ(QString::fromStdString(Text("LabelOutcome")),
              host.Report.Summary() + QStringLiteral("; 2 not copied: the column Note says why."));
    EXPECT_EQ(Cell(3, 7), QStringLiteral("Not copied: it is read only."));
}

TEST_F(FormCompareTest, WhatWasBeforeIsTakenBackAndNothingElse)
{
    ParameterSet past = ParameterSet::FactoryOf(desk.table, QStringLiteral("before 14:00"));
    past.known.assign(past.known.size(), false);
    past.known[Param::Reference1] = past.known[Param::Reference2] = true;
    past.records[Param::Reference1].Value = 700;
    for (const int p : {Param::Reference1, Param::Reference3})
        P(p) = p;
    std::optional<Origin> origin;
    QObject::connect(&desk.table.Signals(), &TableSignals::IntentBegan, &desk.table.Signals(),
                     [&] { origin = desk.table.CurrentIntent()->origin; });
    form = Show<FormCompare>(host);
    // What was searched and ticked before must not be taken back with it.
    Click("CommandTakeAll");
    Type("TextSearch", "none");
    form->CompareWithPast(past, QStringLiteral("Of one nobody knew it."), true);
    EXPECT_THAT(ShownParams(), ElementsAre(Param::Reference1));
    EXPECT_EQ(Text("LabelCounts"), "1 of 434 rows, 1 ticked");
    EXPECT_EQ(Text("LabelBanner"), "Of one nobody knew it.");
    Click("CommandCopy");
    EXPECT_EQ(origin, Origin::Undo);
    EXPECT_EQ(P(Param::Reference1), 700);
    EXPECT_EQ(P(Param::Reference3), Param::Reference3);
}

TEST_F(FormCompareTest, ExportsTheShownRows)
{
    host.Drive.records[Param::Reference1].Value = 500;
    host.Drive.records[Param::Reference2].Value = 600;
    ShowAgainstDrive();
    Type("TextSearch", "219");
    const QString csv = desk.folder.filePath(QStringLiteral("a.csv"));
    const QString pdf = desk.folder.filePath(QStringLiteral("a.PDF"));
    for (const QString &path : {csv, pdf}) {
        form->ChooseExport = [path](const QString &) { return path; };
        Click("CommandExport");
    }
    QFile file(csv);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.startsWith(QStringLiteral("\"Compared\",\"open set\",\"drive, read 14:03:12\"\r\n")));
    EXPECT_TRUE(
        text.contains(QStringLiteral("\"219\",\"Reference 2\",\"\",\"0.00 %\",\"6.00 %\",\"+6.00 %\"")));
    EXPECT_FALSE(text.contains(QStringLiteral("218")));

    QProcess tool;
    tool.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    ASSERT_TRUE(tool.waitForFinished()) << "pdftotext is needed";
    const QString printed = QString::fromUtf8(tool.readAllStandardOutput()).simplified();
    for (const char *part : {"Compared: open set; drive, read 14:03:12", "Model: SVR100-000",
                             "Date: ", "219 Reference 2 0.00 % 6.00 % +6.00 % setting"})
        EXPECT_TRUE(printed.contains(QLatin1String(part))) << part << '\n' << printed.toStdString();
}

} // namespace

} // namespace quorvik::testing
