#include "blocks/BlockFixture.h"

#include "desktop/BoxColors.h"
#include "platform/Guard.h"

#include <QPushButton>

namespace quorvik::testing
{

namespace
{

using BlockFormTest = BlockFixture;

TEST_F(BlockFormTest, RowsTellNumberNameClassAndColour)
{
    Open("FormVelocityLoop");
    EXPECT_EQ(Label1(4)->text(), QStringLiteral("(190) Forward Max Speed"));
    EXPECT_EQ(Label1(4)->toolTip(), QStringLiteral("(190) ") + desk.model.ParamTable[190].Name);
    EXPECT_EQ(Label1(4)->property("Tag").toString(), QStringLiteral("190"));

    // Read/write, linked destination, read only; then a stop-only one stopped and running.
    desk.model.ParamTable[1].Value = 191;
    Tick();
    const std::tuple<int, int> rows[] = {{4, Access::ReadWrite},
                                         {6, Access::LinkedDestination},
                                         {14, Access::ReadOnly},
                                         {24, Access::IcrReadWrite}};
    for (const auto &[row, accessClass] : rows) {
        EXPECT_EQ(Text1(row)->property("Tag").toString(), QString::number(accessClass)) << row;
        EXPECT_EQ(Text1(row)->BackColor(), ColorOf(desk.model.Colors.at(std::size_t(accessClass)))) << row;
    }
    EXPECT_TRUE(Text1(6)->toolTip().contains(desk.model.ParamTable[1].Name));
    desk.model.ParamTable[Param::DriveState].Value = 1;
    desk.model.Colors[Access::IcrReadOnly] = 0x00FF80;
    Tick();
    EXPECT_EQ(Text1(24)->BackColor(), ColorOf(0x00FF80));
}

TEST_F(BlockFormTest, TheFirstTickComesWithTheLoad)
{
    desk.model.ParamTable[190].Value = 1234;
    Open("FormVelocityLoop");
    EXPECT_EQ(Text1(4)->text(), QStringLiteral("12.34 %"));
}

TEST_F(BlockFormTest, AStandingValueRepaintsNothing)
{
    Open("FormVelocityLoop");
    Tick();
    struct PaintCounter : QObject {
        int paints = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } counter;
    QTest::qWait(20);
    for (QWidget *control : form->findChildren<QWidget *>())
        control->installEventFilter(&counter);
    Tick();
    Tick();
    QCoreApplication::processEvents();
    EXPECT_EQ(counter.paints, 0);
    desk.model.ParamTable[190].Value = 1;
    Tick();
    QCoreApplication::processEvents();
    EXPECT_GT(counter.paints, 0);
}

TEST_F(BlockFormTest, OnlyClassesZeroAndOneOpenTheDialog)
{
    int shown = 0;
    desk.rules.ShowEditDialog = [&] {
        ++shown;
        desk.model.EditConfirmed = false;
    };
    desk.model.ParamTable[1].Value = 191;
    Open("FormVelocityLoop");
    QTest::mouseClick(Text1(4), Qt::LeftButton);
    EXPECT_EQ(desk.model.EditParamNumber, 190);
    QTest::keyClick(Text1(24), Qt::Key_Return);
    EXPECT_EQ(desk.model.EditParamNumber, 197);
    EXPECT_EQ(shown, 2);
    for (const int refused : {6, 14}) {
        QTest::mouseClick(Text1(refused), Qt::LeftButton);
        QTest::keyClick(Text1(refused), Qt::Key_Enter);
    }
    EXPECT_EQ(shown, 2);
}

TEST_F(BlockFormTest, TheLinkedRowMovesOneReadCount)
{
    const std::vector<int> before = ReadFlags();
    desk.model.ParamTable[23].Value = 217;
    Open("FormAnalogInputs", 1);
    EXPECT_EQ(ReadFlag(217), 1);
    EXPECT_EQ(ReadFlag(23), 1);
    EXPECT_EQ(form->property("Tag").toString(), QStringLiteral("1"));
    desk.model.ParamTable[23].Value = 189;
    Tick();
    EXPECT_EQ(ReadFlag(217), 0);
    EXPECT_EQ(ReadFlag(189), 1);
    EXPECT_EQ(Label1(10)->property("Tag").toString(), QStringLiteral("189"));
    Tick();
    EXPECT_EQ(ReadFlag(189), 1);
    // Selected anew and closed before the next tick.
    desk.model.ParamTable[23].Value = 190;
    Close();
    EXPECT_EQ(ReadFlags(), before);
}

TEST_F(BlockFormTest, ASelectorOutsideTheTableIsToldOnceAndMovesNoCount)
{
    QStringList told;
    SetFailureReporter([&told](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    const std::vector<int> before = ReadFlags();
    Open("FormAnalogInputs", 1);
    desk.model.ParamTable[23].Value = 9999;
    Tick();
    Tick();
    EXPECT_EQ(told.size(), 1);
    Close();
    EXPECT_EQ(ReadFlags(), before);
    SetFailureReporter({});
}

TEST_F(BlockFormTest, ALinkedCaptionHasTenCharactersOrAnEllipsis)
{
    desk.model.ParamTable[23].Value = 217;
    desk.model.ParamTable[217].Name = QStringLiteral("Spee");
    Open("FormAnalogInputs", 1);
    EXPECT_EQ(Label1(10)->text(), QStringLiteral("(217) Spee"));
    desk.model.ParamTable[217].Name = QStringLiteral("Speed");
    Tick();
    EXPECT_EQ(Label1(10)->text(), QStringLiteral("(217) Spee..."));
    EXPECT_EQ(Label1(10)->toolTip(), QStringLiteral("(217) Speed"));
}

TEST_F(BlockFormTest, OneWindowToAMemberAndCountsForEachWindow)
{
    const auto entry =
        std::find_if(BlockCatalogue().begin(), BlockCatalogue().end(), [](const BlockMenuEntry &e) {
            return QLatin1String(e.form) == QLatin1String("FormAnalogInputs");
        });
    OpenBlock(desk.desk, *entry, 2);
    OpenBlock(desk.desk, *entry, 2);
    OpenBlock(desk.desk, *entry, 3);
    EXPECT_EQ(desk.forms.Count(), 3) << "with the main window";
    EXPECT_EQ(ReadFlag(24), 1);
    EXPECT_EQ(entry->MenuCaption(3), QStringLiteral("Analog Input &3"));
}

TEST_F(BlockFormTest, HelpMentorAndCloseWork)
{
    Open("FormFreqDigOutput");
    Find<QPushButton>(QStringLiteral("CommandHelp"))->click();
    QApplication::setActiveWindow(form);
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    QTest::keyClick(Text1(0), Qt::Key_F1);
    EXPECT_EQ(desk.help.Topics, QStringList(2, QStringLiteral("Frequency Digital Output.htm")));

    desk.model.ParamTable[90].Value = 1;
    bool opened = false;
    desk.desk.OpenIOMentor = [&] {
        opened = true;
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    };
    Find<QPushButton>(QStringLiteral("CommandIOMentor"))->click();
    EXPECT_TRUE(opened);
    const WizardIOStartRecord &start = desk.model.WizardIOStart;
    EXPECT_EQ(std::tuple(start.outputs, start.kind, start.member, start.freqDigMode), std::tuple(1, 1, 0, 1));
    EXPECT_TRUE(QTest::qWaitFor([] { return !QGuiApplication::overrideCursor(); }));

    const QPointer<BlockForm> watched = form;
    Find<QPushButton>(QStringLiteral("CommandClose"))->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !watched; }));
}

} // namespace

} // namespace quorvik::testing
