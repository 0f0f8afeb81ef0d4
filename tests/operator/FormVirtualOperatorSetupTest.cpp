#include "operator/PanelTest.h"

#include "operator/FormVirtualOperatorSetup.h"
#include "operator/VirtualSlider.h"

#include <QAction>
#include <QComboBox>

namespace quorvik::testing
{

namespace
{

class VirtualOperatorSetup : public PanelTest
{
protected:
    /** Puts the setup up on a control of the panel, and chooses a destination unless there is none. */
    void OpenOn(int selection, int destination = 0)
    {
        if (panel == nullptr)
            Open();
        setup = std::make_unique<FormVirtualOperatorSetup>(desk.desk, *panel, selection);
        setup->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(setup.get()));
        if (destination != 0)
            Combo("ComboDestination").setCurrentIndex(Listed(destination));
    }

    QComboBox &Combo(const char *name) const { return *FindIn<QComboBox>(setup.get(), name); }
    QLineEdit &Edit(const char *name) const { return *FindIn<QLineEdit>(setup.get(), name); }
    std::string Label(const char *name) const
    {
        return FindIn<QLabel>(setup.get(), name)->text().toStdString();
    }
    int Listed(int p) const
    {
        return Combo("ComboDestination").findText(QString::number(p) + u' ', Qt::MatchStartsWith);
    }

    void Enter(const char *bias, const char *gain) const
    {
        TypeIn(setup.get(), "TextBiasGain(0)", bias);
        TypeIn(setup.get(), "TextBiasGain(1)", gain);
    }

    void Press(const char *button) const { ClickIn(setup.get(), button); }
    bool CanApply() const { return FindIn(setup.get(), "CommandApply")->isEnabled(); }

    std::unique_ptr<FormVirtualOperatorSetup> setup;
};

TEST_F(VirtualOperatorSetup, OpensOnTheRecordWithoutAnEditAndOffersWhatCanBeWritten)
{
    Setting(2) = {217, -2500, 30000, 0};
    OpenOn(2);
    EXPECT_EQ(Combo("ComboInput").currentText(), Name("Signal C"));
    EXPECT_EQ(Combo("ComboDestination").currentText(), Name("217 Reference 0"));
    EXPECT_EQ(Edit("TextBiasGain(0)").text(), Name("-25.00"));
    EXPECT_EQ(Edit("TextBiasGain(1)").text(), Name("100.00")) << "clamped into the range";
    EXPECT_EQ(Label("LabelUnits(1)"), "%");
    EXPECT_EQ(Label("LabelBiasGain(1)"), "Gain");
    EXPECT_FALSE(CanApply());
    EXPECT_EQ(Listed(122), -1) << "read only";
    EXPECT_NE(Listed(1), -1) << "stop-only stays";
}

TEST_F(VirtualOperatorSetup, ApplySetsTheSlidersLimitsAndMovesItInOnce)
{
    const struct {
        const char *bias;
        const char *gain;
        int position; ///< before the Apply
        int min, max, largeChange;
        int moved; ///< the position behind it
    } cases[] = {
        {"0", "50", 8000, 5000, 0, 500, 5000},
        {"-100", "100", 5000, 10000, -10000, 1000, 5000},
        {"75", "25", 10000, 2500, 7500, 750, 7500},
        {"75", "25", 0, 2500, 7500, 750, 2500},
        {"0", "0", 4000, 0, 0, 1, 0},
        {"-0.05", "0.25", 25, 25, -5, 2, 25},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.bias);
        OpenOn(0, 217);
        VirtualSlider &slider = panel->VScrollSignal(0);
        slider.SetLimits(10000, 0, 1000);
        slider.setValue(each.position);
        Enter(each.bias, each.gain);
        ASSERT_TRUE(CanApply());
        int writes = 0;
        QObject::connect(&desk.model, &Model::TitleChanged, setup.get(), [&writes] { ++writes; });
        Press("CommandApply");
        EXPECT_EQ(slider.Min(), each.min);
        EXPECT_EQ(slider.Max(), each.max);
        EXPECT_EQ(slider.LargeChange(), each.largeChange);
        EXPECT_EQ(slider.value(), each.moved);
        EXPECT_EQ(Value(217), each.moved);
        EXPECT_EQ(writes, 1) << "one Change";
        EXPECT_TRUE(setup->isVisible());
        setup.reset();
    }
    EXPECT_EQ(Text("LabelInputName(0)"), "Reference 0");
}

TEST_F(VirtualOperatorSetup, ASliderUpsideDownStillGoesUpWithTheUpKey)
{
    OpenOn(0, 217);
    Enter("75", "25");
    Press("CommandOK");
    EXPECT_FALSE(setup->isVisible());
    VirtualSlider &slider = panel->VScrollSignal(0);
    slider.setValue(5000);
    QTest::keyClick(&slider, Qt::Key_Up);
    EXPECT_EQ(slider.value(), 4999) << "towards the gain at the top";
    QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(10, 3));
    EXPECT_EQ(slider.value(), 4249);
}

TEST_F(VirtualOperatorSetup, ADestinationWithListedValuesOffersThem)
{
    OpenOn(8, 305);
    EXPECT_EQ(Label("LabelBiasGain(0)"), "Open Value");
    EXPECT_FALSE(Edit("TextBiasGain(0)").isVisible());
    QComboBox &closed = Combo("ComboBiasGain(1)");
    ASSERT_TRUE(closed.isVisible());
    EXPECT_EQ(closed.count(), 2);
    closed.setCurrentIndex(1);
    Press("CommandOK");
    EXPECT_EQ(Setting(8), (VirtualSetting{305, 0, 1, 0}));
    EXPECT_EQ(Digital(8).text(), Name("Ramp Bypass\r\n=False"));
    Click("CommandDigital(8)");
    EXPECT_EQ(Value(305), 1);
}

TEST_F(VirtualOperatorSetup, AConflictIsRefusedButNotOneWithSignalA)
{
    Setting(0).Destination = 217;
    Setting(1).Destination = 221;
    OpenOn(8, 221);
    desk.asker.Expect(Name("Conflict"));
    Press("CommandOK");
    EXPECT_TRUE(setup->isVisible());
    EXPECT_EQ(Setting(8).Destination, 0);
    Combo("ComboDestination").setCurrentIndex(Listed(217));
    Press("CommandOK");
    EXPECT_FALSE(setup->isVisible());
    EXPECT_EQ(Setting(8).Destination, 217);
}

TEST_F(VirtualOperatorSetup, ARefusedEntryStaysForCorrection)
{
    const struct {
        const char *bias;
        const char *gain;
        const char *told;
        const char *focused;
    } cases[] = {
        {"1,5", "10", "Please enter a numerical value for the Bias.", "TextBiasGain(0)"},
        {"0", "", "Please enter a numerical value for the Gain.", "TextBiasGain(1)"},
        {"0", "100.01", "The valid Gain range for model", "TextBiasGain(1)"},
    };
    for (const auto &each : cases) {
        OpenOn(1, 217);
        Enter(each.bias, each.gain);
        desk.asker.Expect(Name(each.told));
        Press("CommandOK");
        EXPECT_TRUE(setup->isVisible());
        EXPECT_TRUE(Edit(each.focused).hasFocus()) << each.told;
        EXPECT_EQ(Setting(1), VirtualSetting{});
    }
    // An end beyond sixteen bits fails at the slider.
    Record(217).Max = 100000;
    OpenOn(1, 217);
    Enter("0", "400");
    Press("CommandOK");
    EXPECT_EQ(Failures.size(), 1);
    EXPECT_TRUE(setup->isVisible());
    EXPECT_EQ(panel->VScrollSignal(1).Min(), 10000);
}

TEST_F(VirtualOperatorSetup, TextsAreFormattedWhenTheyAreLeftAndCancelDropsThem)
{
    OpenOn(1, 217);
    TypeIn(setup.get(), "TextBiasGain(0)", "2.675");
    Edit("TextBiasGain(1)").setFocus();
    EXPECT_EQ(Edit("TextBiasGain(0)").text(), Name("2.68"));
    EXPECT_EQ(Edit("TextBiasGain(1)").selectedText(), Edit("TextBiasGain(1)").text());
    Combo("ComboInput").setCurrentIndex(3);
    EXPECT_EQ(Combo("ComboDestination").currentText(), Name("0 None"))
        << "drops the edits of the former input";
    Press("CommandCancel");
    EXPECT_FALSE(setup->isVisible());
    EXPECT_EQ(Setting(1), VirtualSetting{});
}

TEST_F(VirtualOperatorSetup, PropertiesOpensOnTheControlThatWasClicked)
{
    Open();
    fields.VirtualSelection = 9;
    QString shown;
    const auto readAndClose = [&shown] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        shown = FindIn<QComboBox>(dialog, "ComboInput")->currentText();
        dialog->reject();
    };
    QMetaObject::invokeMethod(panel, readAndClose, Qt::QueuedConnection);
    panel->findChild<QAction *>(Name("mnuProperties"))->trigger();
    EXPECT_EQ(shown, Name("Digital D"));
}

} // namespace

} // namespace quorvik::testing
