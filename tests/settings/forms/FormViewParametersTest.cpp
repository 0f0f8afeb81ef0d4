#include "settings/forms/FormViewParameters.h"

#include "model/Model.h"
#include "settings/forms/FilePrint.h"
#include "support/TestDesk.h"

#include <QHeaderView>
#include <QLabel>
#include <QRadioButton>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

class ViewParameters : public ::testing::Test
{
protected:
    void Open(ReportFilter filter)
    {
        OpenViewParameters(desk.desk, print, filter);
        ASSERT_EQ(desk.forms.Count(), 2);
        form = qobject_cast<FormViewParameters *>(desk.forms.At(1));
    }

    template<typename Widget = QWidget> Widget *Find(const char *name) const
    {
        return form->findChild<Widget *>(QLatin1String(name));
    }

    QString Total() const { return Find<QLabel>("LabelTotal")->text(); }
    QString Shown(int row, int column) const
    {
        const QAbstractItemModel *list = Find<QTreeView>("ListView")->model();
        return list->index(row, column).data().toString();
    }

    void ClickHead(int column) const
    {
        auto *header = Find<QTreeView>("ListView")->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
    }

    TestDesk desk;
    FilePrint print{desk.desk};
    FormViewParameters *form = nullptr;
};

TEST_F(ViewParameters, ShowsWhatItsOptionsSay)
{
    // The rules between parameters hold some values off their presets from the start.
    for (int p = 0; p <= desk.model.LastParam; ++p)
        desk.model.ParamTable[p].Preset = desk.model.Value(p);
    Open(ReportFilter::ChangedFromDefault);
    EXPECT_TRUE(Find<QRadioButton>("OptionView(1)")->isChecked());
    EXPECT_EQ(Total(), QStringLiteral("Total: 0"));

    desk.model.ParamTable[221].Value = 700;
    EXPECT_EQ(Total(), QStringLiteral("Total: 0"));
    QTest::mouseClick(Find("CommandRefresh"), Qt::LeftButton);
    EXPECT_EQ(Total(), QStringLiteral("Total: 1"));
    EXPECT_EQ(Shown(0, 3), QStringLiteral("7.00 %"));

    Find<QRadioButton>("OptionView(0)")->click();
    EXPECT_EQ(Total(), QStringLiteral("Total: 434"));
    EXPECT_EQ(Shown(9, 0), QStringLiteral("  9"));

    Open(ReportFilter::ChangedFromDefault);
    EXPECT_EQ(Total(), QStringLiteral("Total: 1")) << "the open list changes its filter";
}

TEST_F(ViewParameters, AHeadSortsFlipsAndStaysInForce)
{
    Open(ReportFilter::All);
    EXPECT_EQ(Shown(0, 0), QStringLiteral("  0"));
    ClickHead(1);
    EXPECT_LT(QString::compare(Shown(0, 1), Shown(433, 1), Qt::CaseInsensitive), 0);
    ClickHead(1);
    const QString last = Shown(0, 1);
    EXPECT_GT(QString::compare(last, Shown(433, 1), Qt::CaseInsensitive), 0);
    QTest::mouseClick(Find("CommandRefresh"), Qt::LeftButton);
    EXPECT_EQ(Shown(0, 1), last);
    ClickHead(0);
    EXPECT_EQ(Shown(433, 0), QStringLiteral("433"));
}

} // namespace

} // namespace quorvik::testing
