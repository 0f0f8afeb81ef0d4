#include "blocks/FormWhyNot.h"

#include "support/OnLine.h"
#include "support/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTreeWidget>

namespace quorvik::testing
{

namespace
{

using namespace Param;

class FormWhyNotTest : public WindowTest
{
protected:
    FormWhyNotTest()
    {
        desk.desk.ShowParameter = [this](int p) {
            shown.push_back(p);
            return true;
        };
        desk.desk.ShowOnMap = [this](int p) { mapped.push_back(p); };
    }

    QTreeWidget *List() const { return Find<QTreeWidget>("ListConditions"); }
    /** The rows that begin so, as their parameters and values, in the order of the list. */
    QTreeWidgetItem *RowOf(int p) const
    {
        const QList<QTreeWidgetItem *> rows =
            List()->findItems(QStringLiteral("(%1) ").arg(p), Qt::MatchStartsWith, 1);
        return rows.value(0);
    }

    std::vector<int> shown;
    std::vector<int> mapped;
};

TEST_F(FormWhyNotTest, LeadsFromTheFirstCauseToTheNextAndToTheirBoxes)
{
    P(DigitalIn2Status) = 1;
    P(RunEnable) = 0;
    Show<FormWhyNot>();
    EXPECT_TRUE(RowOf(RunEnable)->font(0).bold());
    EXPECT_EQ(List()->currentItem(), RowOf(RunEnable));
    QTest::keyClick(List(), Qt::Key_Return);
    Click("CommandFirst");
    List()->setCurrentItem(RowOf(PositiveILimit));
    Click("CommandGoTo");
    Click("CommandMap");
    EXPECT_EQ(shown, (std::vector<int>{RunEnable, RunEnable, PositiveILimit}));
    EXPECT_EQ(mapped, std::vector<int>{PositiveILimit});

    P(RunEnable) = 1;
    Tick();
    EXPECT_FALSE(RowOf(RunEnable)->font(0).bold());
    EXPECT_TRUE(RowOf(Param::Run)->font(0).bold());
    EXPECT_EQ(List()->currentItem(), RowOf(PositiveILimit)) << "the user's own choice went";
    Click("CommandFirst");
    EXPECT_EQ(shown.back(), Param::Run);
    Click("CommandCopy");
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(
        QStringLiteral("(239) Run is False: digital input 1 is its source and reads Open.")));
}

TEST_F(FormWhyNotTest, AsksTheDriveForWhatItShowsAndJudgesWhatItTold)
{
    std::vector<int> before;
    for (int p = 0; p <= desk.table.LastParam; ++p)
        before.push_back(Record(p).ReadFlag);
    OnLine line(desk.link);
    Show<FormWhyNot>();
    EXPECT_EQ(RowOf(RunEnable)->text(0).back(), QChar(u'n')) << "taken for known";
    EXPECT_GT(Record(RunEnable).ReadFlag, before[RunEnable]);
    EXPECT_GT(Record(DigitalIn2Status).ReadFlag, before[DigitalIn2Status]) << "a source is not asked for";
    P(RunEnable) = 0;
    line.Tells(RunEnable, 0);
    Tick();
    EXPECT_TRUE(RowOf(RunEnable)->font(0).bold());
    EXPECT_EQ(List()->currentItem(), RowOf(RunEnable)) << "the first cause, once it is known";
    EXPECT_TRUE(Text("LabelHeadline").find("not known yet") != std::string::npos);
    Close();
    for (int p = 0; p <= desk.table.LastParam; ++p)
        EXPECT_EQ(Record(p).ReadFlag, before[std::size_t(p)]) << p << " would go on being fetched";
}

} // namespace

} // namespace quorvik::testing
