#include "operator/PanelTest.h"

#include "operator/FormVirtualOperatorSetup.h"
#include "operator/VirtualSlider.h"

namespace quorvik::testing
{

class VirtualOperatorSetup : public PanelTest
{
protected:
    /** Puts the setup up on a control of the panel, and chooses a destination unless there is none. */
    void OpenOn(int selection, int destination = 0)
    {
        if (panel == nullptr)
            Open();
        Show<FormVirtualOperatorSetup>(*panel, selection);
        if (destination != 0)
            PickParam("ComboDestination", destination);
    }
};

TEST_F(VirtualOperatorSetup, OpensOnTheRecordWithoutAnEditAndOffersWhatCanBeWritten)
{
    Setting(2) = {217, -2500, 30000, 0};
    OpenOn(2);
    EXPECT_EQ(Text("ComboInput"), "Signal C");
    EXPECT_EQ(Text("ComboDestination"), "217 Reference 0");
    EXPECT_EQ(Text("TextBiasGain(0)"), "-25.00");
    EXPECT_EQ(Text("TextBiasGain(1)"), "100.00") << "clamped into the range";
    EXPECT_EQ(Text("LabelUnits(1)"), "%");
    EXPECT_FALSE(Enabled("CommandApply"));
    PickParam("ComboDestination", 122);
    EXPECT_EQ(Text("ComboDestination"), "") << "read only, and not offered";
}

TEST_F(VirtualOperatorSetup, ApplySetsTheSlidersLimitsAndMovesItInOnce)
{
    // The positions are those before the Apply and behind it.
    const std::tuple<const char *, const char *, int, int, int, int, int> cases[] = {
        {"0", "50", 8000, 5000, 0, 500, 5000},  {"-100", "100", 5000, 10000, -10000, 1000, 5000},
        {"0", "0", 4000, 0, 0, 1, 0},           {"-0.05", "0.25", 25, 25, -5, 2, 25},
        {"75", "25", 0, 2500, 7500, 750, 2500}, {"75", "25", 10000, 2500, 7500, 750, 7500},
    };
    for (const auto &[bias, gain, position, min, max, largeChange, moved] : cases) {
        SCOPED_TRACE(bias);
        OpenOn(0, 217);
        VirtualSlider &slider = panel->VScrollSignal(0);
        slider.SetLimits(10000, 0, 1000);
        slider.setValue(position);
        TypeAll("TextBiasGain", {bias, gain});
        ASSERT_TRUE(Enabled("CommandApply"));
        int writes = 0;
        const QObject counting;
        QObject::connect(&desk.document, &Document::TitleChanged, &counting, [&writes] { ++writes; });
        Click("CommandApply");
        EXPECT_EQ(slider.Min(), min);
        EXPECT_EQ(slider.Max(), max);
        EXPECT_EQ(slider.LargeChange(), largeChange);
        EXPECT_EQ(slider.value(), moved);
        EXPECT_EQ(P(217), moved);
        EXPECT_EQ(writes, 1) << "one Change";
        EXPECT_TRUE(window->isVisible());
    }
    EXPECT_EQ(Controls(panel).Text("LabelInputName(0)"), "Reference 0");
    Click("CommandOK");
    // Upside down it still goes up, towards the gain, with the up key and a click above the handle.
    QTest::keyClick(&panel->VScrollSignal(0), Qt::Key_Up);
    EXPECT_EQ(P(217), 7499);
    QTest::mouseClick(&panel->VScrollSignal(0), Qt::LeftButton, {}, QPoint(10, 3));
    EXPECT_EQ(P(217), 6749);
}

TEST_F(VirtualOperatorSetup, ADestinationWithListedValuesOffersThem)
{
    OpenOn(8, 305);
    EXPECT_EQ(Text("LabelBiasGain(0)"), "Open Value");
    EXPECT_FALSE(Visible("TextBiasGain(0)"));
    ASSERT_TRUE(Visible("ComboBiasGain(1)"));
    EXPECT_EQ(Find<QComboBox>("ComboBiasGain(1)")->count(), 2);
    Pick("ComboBiasGain(1)", 1);
    Click("CommandOK");
    EXPECT_EQ(Setting(8), (VirtualSetting{305, 0, 1, 0}));
    window = panel;
    EXPECT_EQ(Text("CommandDigital(8)"), "Ramp Bypass\r\n=False");
    Click("CommandDigital(8)");
    EXPECT_EQ(P(305), 1);
}

TEST_F(VirtualOperatorSetup, AConflictIsRefusedButNotOneWithSignalA)
{
    Setting(0).Destination = 217;
    Setting(1).Destination = 221;
    OpenOn(8, 221);
    desk.asker.Expect("Conflict");
    Click("CommandOK");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Setting(8).Destination, 0);
    PickParam("ComboDestination", 217);
    Click("CommandOK");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Setting(8).Destination, 217);
}

TEST_F(VirtualOperatorSetup, ARefusedEntryStaysForCorrection)
{
    const std::tuple<const char *, const char *, const char *, const char *> cases[] = {
        {"1,5", "10", "Please enter a numerical value for the Bias.", "TextBiasGain(0)"},
        {"0", "", "Please enter a numerical value for the Gain.", "TextBiasGain(1)"},
    };
    for (const auto &[bias, gain, refusal, focused] : cases) {
        OpenOn(1, 217);
        TypeAll("TextBiasGain", {bias, gain});
        desk.asker.Expect(Name(refusal));
        Click("CommandOK");
        EXPECT_TRUE(window->isVisible());
        EXPECT_TRUE(Find(focused)->hasFocus()) << refusal;
        EXPECT_EQ(Setting(1), VirtualSetting{});
    }
    // An end beyond sixteen bits fails at the slider.
    Record(217).Max = 100000;
    OpenOn(1, 217);
    TypeAll("TextBiasGain", {"0", "400"});
    Click("CommandOK");
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(panel->VScrollSignal(1).Min(), 10000);
}

TEST_F(VirtualOperatorSetup, TextsAreFormattedWhenTheyAreLeftAndCancelDropsThem)
{
    OpenOn(1, 217);
    Type("TextBiasGain(0)", "2.675");
    auto *gain = Find<QLineEdit>("TextBiasGain(1)");
    gain->setFocus();
    EXPECT_EQ(Text("TextBiasGain(0)"), "2.68");
    EXPECT_EQ(gain->selectedText(), gain->text());
    Pick("ComboInput", 3);
    EXPECT_EQ(Text("ComboDestination"), "0 None") << "drops the edits of the former input";
    Click("CommandCancel");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Setting(1), VirtualSetting{});
}

} // namespace quorvik::testing
