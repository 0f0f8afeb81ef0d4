#include "settings/forms/FormViewParameters.h"
#include "settings/SettingsFile.h"
#include "settings/forms/FilePrint.h"
#include "support/OnLine.h"
#include "support/WindowTest.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeView>

namespace quorvik::testing
{

namespace
{

using namespace Param;

class ViewParameters : public WindowTest
{
protected:
    enum { ValueColumn = 3, StateColumn, AgeColumn, BlockColumn, UnitColumn, RangeColumn, FileColumn };

    void Open(ReportFilter filter = ReportFilter::All)
    {
        form = Show<FormViewParameters>(print, filter);
        list = Find<QTreeView>("ListView");
    }
    void Follow() const { QMetaObject::invokeMethod(Find<QTimer>("TimerFollow"), "timeout"); }
    std::string Cell(int row, int column) const
    {
        return list->model()->index(row, column).data().toString().toStdString();
    }
    bool ShowsStates() const
    {
        EXPECT_EQ(list->isColumnHidden(StateColumn), list->isColumnHidden(AgeColumn));
        EXPECT_EQ(!list->isColumnHidden(StateColumn), Checked("CheckStates"));
        return Checked("CheckStates");
    }

    FilePrint print{desk.desk};
    FormViewParameters *form = nullptr;
    QTreeView *list = nullptr;
};

TEST_F(ViewParameters, StateAndAgeAreColumnsOnLineUntilTheUserDecides)
{
    Open();
    EXPECT_FALSE(ShowsStates());
    OnLine drive(desk.link);
    Follow();
    EXPECT_TRUE(ShowsStates());
    EXPECT_EQ(Cell(Reference0, StateColumn), "Not read");
    EXPECT_EQ(Cell(Reference0, AgeColumn), "");
    drive.Tells(Reference0, P(Reference0));
    EXPECT_EQ(Cell(Reference0, StateColumn), "Live");
    EXPECT_EQ(Cell(Reference0, AgeColumn).substr(0, 2), "0.");
    drive.Leaves();
    Follow();
    EXPECT_TRUE(ShowsStates()) << "who lost the drive wants to know when";
    desk.states.EndLoss();
    Follow();
    EXPECT_FALSE(ShowsStates());
    Click("CheckStates");
    Follow();
    EXPECT_TRUE(ShowsStates());
    Open();
    EXPECT_TRUE(ShowsStates()) << "remembered";
    Click("CheckStates");
    const OnLine other(desk.link);
    Follow();
    EXPECT_FALSE(ShowsStates());
}

TEST_F(ViewParameters, ValuesFollowTheTableAndRowsStayWhereTheyAre)
{
    desk.table.SetParamValue(Reference1, 4321, true, false);
    desk.table.SetParamValue(Reference0, 1234, true, false);
    Open(ReportFilter::ChangedFromDefault);
    list->sortByColumn(ValueColumn, Qt::AscendingOrder);
    list->setCurrentIndex(list->model()->index(1, 0));
    ASSERT_EQ(Cell(0, ValueColumn), "12.34 %");
    desk.table.SetParamValue(Reference2, 777, true, false);
    desk.table.SetParamValue(Reference0, 9999, true, false);
    Follow();
    EXPECT_EQ(Cell(0, ValueColumn), "99.99 %");
    EXPECT_EQ(form->Rows().at(0).valueText, Name("99.99 %")) << "what is printed and exported";
    EXPECT_EQ(form->Rows().size(), 2);
    EXPECT_EQ(list->currentIndex().row(), 1);
    Click("CommandRefresh");
    EXPECT_EQ(form->Rows().size(), 3);
    EXPECT_EQ(Cell(2, ValueColumn), "99.99 %") << "sorted anew";
    desk.table.SetParamValue(Reference1, 1, true, false);
    desk.table.Resize(Reference0);
    Follow();
    EXPECT_EQ(told, QStringList()) << "a drive with fewer parameters has come";
}

TEST_F(ViewParameters, SearchAndFilterChooseRowsAndKeysLeadOn)
{
    int shown = -1;
    desk.desk.ShowParameter = [&shown](int p) {
        shown = p;
        return true;
    };
    Open();
    auto *search = Find<QLineEdit>("TextSearch");
    QTest::keyClicks(search, QStringLiteral("ERENCE 2"));
    ASSERT_GT(form->Rows().size(), 1);
    for (const ReportRow &row : form->Rows())
        EXPECT_TRUE(row.name.contains(QLatin1String("erence"), Qt::CaseInsensitive))
            << row.name.toStdString();
    QTest::keyClick(search, Qt::Key_Down);
    form->SelectParameter(Reference2);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(shown, Reference2);
    desk.asker.OnEditValue = [](int, std::int32_t) { return std::optional(777); };
    QTest::keyClick(list, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(desk.table.Value(Reference2), 777);
    search->clear();
    const qsizetype all = form->Rows().size();
    Click("CheckSettings");
    EXPECT_LT(form->Rows().size(), all);
    for (const ReportRow &row : form->Rows())
        EXPECT_EQ(desk.table[row.param].Attributes & Attr::ReadOnly, 0) << row.param;
}

TEST_F(ViewParameters, ShowsWhatTheFileHoldsAndRemembersItsColumns)
{
    desk.desk.BlockOf = [](int p) {
        return p == Reference1 ? QStringLiteral("Velocity Setpoint") : QString();
    };
    Open();
    EXPECT_EQ(Cell(Reference1, FileColumn), "") << "there is no file";
    const QString path = desk.folder.filePath(QStringLiteral("kept.Svx"));
    desk.table.SetParamValue(Reference1, 4321, true, false);
    ASSERT_EQ(SettingsFile(desk.table, desk.document).Save(path), QString());
    desk.document.BecomeSaved(path);
    desk.table.SetParamValue(Reference1, 1, true, false);
    EXPECT_EQ(Cell(Reference1, FileColumn), "43.21 %");
    EXPECT_EQ(Cell(Reference1, BlockColumn), "Velocity Setpoint");
    EXPECT_EQ(Cell(Reference1, UnitColumn), "%");
    EXPECT_NE(Cell(Reference1, RangeColumn).find(" to "), std::string::npos);
    list->header()->resizeSection(BlockColumn, 333);
    list->setColumnHidden(UnitColumn, true);
    Close();
    Open();
    EXPECT_EQ(list->columnWidth(BlockColumn), 333);
    EXPECT_TRUE(list->isColumnHidden(UnitColumn));
}

} // namespace

} // namespace quorvik::testing
