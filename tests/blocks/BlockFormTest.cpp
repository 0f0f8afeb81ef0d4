#include "blocks/BlockFixture.h"

#include "desktop/BoxColors.h"

namespace quorvik::testing
{

using BlockFormTest = BlockFixture;

TEST_F(BlockFormTest, RowsTellClassAndColourAndOpenTheDialog)
{
    // The last row may be written at stop only.
    const std::pair<int, int> rows[] = {{4, Access::ReadWrite},
                                        {6, Access::LinkedDestination},
                                        {14, Access::ReadOnly},
                                        {24, Access::IcrReadWrite}};
    QList<int> edited;
    desk.asker.OnEditValue = [&](int p, std::int32_t) {
        edited.append(p);
        return std::nullopt;
    };
    Set({{1, 191}, {190, 1234}});
    Open("FormVelocityLoop");
    for (const auto &[row, accessClass] : rows) {
        EXPECT_EQ(Text1(row)->property("Tag").toInt(), accessClass) << row;
        EXPECT_EQ(Text1(row)->BackColor(), ColorOf(desk.colors.Colors.at(std::size_t(accessClass)))) << row;
        EXPECT_EQ(Text1(row)->cursor().shape() == Qt::PointingHandCursor, accessClass < Access::IcrReadOnly);
        QTest::mouseClick(Text1(row), Qt::LeftButton);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_7})
            QTest::keyClick(Text1(row), key);
    }
    EXPECT_EQ(edited, QList<int>({190, 190, 190, 190, 197, 197, 197, 197}));
    EXPECT_TRUE(Text1(4)->accessibleDescription().startsWith(Name("12.34 %, ")));
    EXPECT_TRUE(Text1(6)->toolTip().contains(Record(1).Name));
    Set({{Param::DriveState, 1}});
    desk.colors.Colors[Access::IcrReadOnly] = 0x00FF80;
    Tick();
    EXPECT_EQ(Text1(24)->BackColor(), ColorOf(0x00FF80));
}

TEST_F(BlockFormTest, ADiagramScalesToItsWindow)
{
    Open("FormCurrentLoop");
    const QSize usual = form->size();
    for (const double scale : {1.0, 1.4, 0.75, 0.1, 1.0}) {
        form->resize(usual * scale);
        QCoreApplication::processEvents();
        const DiagramView &view = form->View();
        const QSize room = view.parentWidget()->size();
        EXPECT_EQ(scale >= 0.75, view.width() <= room.width() && view.height() <= room.height()) << scale;
        for (const auto *label : view.findChildren<QLabel *>()) {
            EXPECT_GE(label->fontInfo().pixelSize(), 8) << scale;
            EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width()) << scale;
        }
        EXPECT_EQ(scale < 1, view.Unit() < DiagramView::UnitOf(form->font())) << scale;
    }
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
    const auto paintsOfATick = [&] {
        counter.paints = 0;
        Tick();
        QCoreApplication::processEvents();
        return counter.paints;
    };
    EXPECT_EQ(paintsOfATick(), 0);
    Set({{190, 1}});
    EXPECT_GT(paintsOfATick(), 0);
}

TEST_F(BlockFormTest, TheLinkedRowMovesOneReadCountOrTellsWhyNot)
{
    Set({{23, 217}});
    Record(217).Name = Name("Spee");
    Open("FormAnalogInputs", 1);
    EXPECT_EQ(ReadFlag(217), 1);
    EXPECT_EQ(ReadFlag(23), 1);
    EXPECT_EQ(CaptionText(10), "(217) Spee") << "ten characters stand whole";
    Set({{23, 200}, {200, 698}});
    Tick();
    Tick();
    EXPECT_EQ(ReadFlag(217), 0);
    EXPECT_EQ(ReadFlag(200), before.at(200) + 1);
    EXPECT_EQ(CaptionText(10), "(200) Moto...");
    EXPECT_EQ(Label1(10)->toolTip(), Name("(200) ") + Record(200).Name);
    EXPECT_EQ(ValueText(10), "698 RPM");
    Set({{23, 9999}});
    Tick();
    Tick();
    EXPECT_EQ(told.size(), 1) << "a selector outside the table";
    EXPECT_EQ(ReadFlag(200), before.at(200) + 1) << "no count has moved";
    Close();
    EXPECT_EQ(ReadFlags(), before);
}

TEST_F(BlockFormTest, HelpAndMentorOpenOnTheBlock)
{
    Open("FormFreqDigOutput");
    Click("CommandHelp");
    EXPECT_EQ(desk.help.Topics, QStringList(Name("Frequency Digital Output.htm")));

    Set({{90, 1}});
    bool opened = false;
    desk.desk.OpenIOMentor = [&] {
        opened = true;
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    };
    Click("CommandIOMentor");
    EXPECT_TRUE(opened);
    const WizardIOStartRecord &start = desk.desk.WizardIOStart;
    EXPECT_EQ(std::tuple(start.outputs, start.kind, start.member, start.freqDigMode), std::tuple(1, 1, 0, 1));
    EXPECT_TRUE(QTest::qWaitFor([] { return !QGuiApplication::overrideCursor(); }));
}

} // namespace quorvik::testing
