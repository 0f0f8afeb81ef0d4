#include "operator/PanelTest.h"

#include "operator/FormVirtualOperatorSetup.h"
#include "operator/VirtualSlider.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>

namespace quorvik::testing
{

namespace
{

class VirtualOperatorSetup : public PanelTest
{
protected:
    void OpenOn(int selection)
    {
        if (panel == nullptr)
            Open();
        setup = std::make_unique<FormVirtualOperatorSetup>(desk.desk, *panel, selection);
        setup->show();
    }

    template<typename Widget> Widget *In(const char *name) const
    {
        auto *widget = setup->findChild<Widget *>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    void ChooseDestination(int p) const
    {
        auto *combo = In<QComboBox>("ComboDestination");
        combo->setCurrentIndex(combo->findText(QString::number(p) + u' ', Qt::MatchStartsWith));
    }

    void Enter(const char *name, const char *text) const
    {
        auto *edit = In<QLineEdit>(name);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, QLatin1String(text));
    }

    void Press(const char *button) const { QTest::mouseClick(In<QAbstractButton>(button), Qt::LeftButton); }
    bool CanApply() const { return In<QAbstractButton>("CommandApply")->isEnabled(); }

    std::unique_ptr<FormVirtualOperatorSetup> setup;
};

TEST_F(VirtualOperatorSetup, OpensOnTheRecordWithoutAnEditAndOffersWhatCanBeWritten)
{
    Setting(2) = {217, -2500, 30000, 0};
    OpenOn(2);
    EXPECT_EQ(In<QComboBox>("ComboInput")->currentText(), QStringLiteral("Signal C"));
    EXPECT_EQ(In<QComboBox>("ComboDestination")->currentText(), QStringLiteral("217 Reference 0"));
    EXPECT_EQ(In<QLineEdit>("TextBiasGain(0)")->text(), QStringLiteral("-25.00"));
    EXPECT_EQ(In<QLineEdit>("TextBiasGain(1)")->text(), QStringLiteral("100.00")) << "clamped into the range";
    EXPECT_EQ(In<QLabel>("LabelUnits(1)")->text(), QStringLiteral("%"));
    EXPECT_EQ(In<QLabel>("LabelBiasGain(1)")->text(), QStringLiteral("Gain"));
    EXPECT_FALSE(CanApply());
    auto *combo = In<QComboBox>("ComboDestination");
    EXPECT_EQ(combo->findText(QStringLiteral("122 "), Qt::MatchStartsWith), -1) << "read only";
    EXPECT_NE(combo->findText(QStringLiteral("1 "), Qt::MatchStartsWith), -1) << "stop-only stays";
}

TEST_F(VirtualOperatorSetup, ApplySetsTheSlidersLimitsAndMovesItInOnce)
{
    const struct {
        const char *bias;
        const char *gain;
        int position; ///< before the Apply
        int min;
        int max;
        int largeChange;
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
        OpenOn(0);
        panel->VScrollSignal(0).SetLimits(10000, 0, 1000);
        panel->VScrollSignal(0).setValue(each.position);
        ChooseDestination(217);
        Enter("TextBiasGain(0)", each.bias);
        Enter("TextBiasGain(1)", each.gain);
        ASSERT_TRUE(CanApply());
        int writes = 0;
        const auto counter =
            QObject::connect(&desk.model, &Model::TitleChanged, setup.get(), [&writes] { ++writes; });
        Press("CommandApply");
        QObject::disconnect(counter);
        const VirtualSlider &slider = panel->VScrollSignal(0);
        EXPECT_EQ(slider.Min(), each.min);
        EXPECT_EQ(slider.Max(), each.max);
        EXPECT_EQ(slider.LargeChange(), each.largeChange);
        EXPECT_EQ(slider.value(), each.moved) << each.bias << " to " << each.gain;
        EXPECT_EQ(Value(217), each.moved);
        EXPECT_EQ(writes, 1) << "one Change";
        EXPECT_TRUE(setup->isVisible());
        setup.reset();
    }
    EXPECT_EQ(Text("LabelInputName(0)"), QStringLiteral("Reference 0"));
}

TEST_F(VirtualOperatorSetup, ASliderUpsideDownStillGoesUpWithTheUpKey)
{
    OpenOn(0);
    ChooseDestination(217);
    Enter("TextBiasGain(0)", "75");
    Enter("TextBiasGain(1)", "25");
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
    OpenOn(8);
    EXPECT_EQ(In<QLabel>("LabelBiasGain(0)")->text(), QStringLiteral("Open Value"));
    ChooseDestination(305);
    EXPECT_FALSE(In<QLineEdit>("TextBiasGain(0)")->isVisible());
    auto *closed = In<QComboBox>("ComboBiasGain(1)");
    ASSERT_TRUE(closed->isVisible());
    EXPECT_EQ(closed->count(), 2);
    closed->setCurrentIndex(1);
    Press("CommandOK");
    EXPECT_EQ(Setting(8), (VirtualSetting{305, 0, 1, 0}));
    EXPECT_EQ(Find<QAbstractButton>("CommandDigital(8)")->text(), QStringLiteral("Ramp Bypass\r\n=False"));
    Click("CommandDigital(8)");
    EXPECT_EQ(Value(305), 1);
}

TEST_F(VirtualOperatorSetup, AConflictIsRefusedButNotOneWithSignalA)
{
    Setting(0).Destination = 217;
    Setting(1).Destination = 221;
    OpenOn(8);
    ChooseDestination(221);
    desk.asker.Expect(QStringLiteral("Conflict"));
    Press("CommandOK");
    EXPECT_TRUE(setup->isVisible());
    EXPECT_EQ(Setting(8).Destination, 0);
    ChooseDestination(217);
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
        OpenOn(1);
        ASSERT_TRUE(QTest::qWaitForWindowActive(setup.get()));
        ChooseDestination(217);
        Enter("TextBiasGain(0)", each.bias);
        In<QLineEdit>("TextBiasGain(1)")->setText(QLatin1String(each.gain));
        desk.asker.Expect(QLatin1String(each.told));
        Press("CommandOK");
        EXPECT_TRUE(setup->isVisible());
        EXPECT_TRUE(In<QLineEdit>(each.focused)->hasFocus()) << each.told;
        EXPECT_EQ(Setting(1), VirtualSetting{});
    }
}

TEST_F(VirtualOperatorSetup, AnEndBeyondSixteenBitsFailsAtTheSlider)
{
    Record(217).Max = 100000;
    OpenOn(1);
    ChooseDestination(217);
    Enter("TextBiasGain(1)", "400");
    Press("CommandOK");
    EXPECT_EQ(Failures.size(), 1);
    EXPECT_TRUE(setup->isVisible());
    EXPECT_EQ(panel->VScrollSignal(1).Min(), 10000);
}

TEST_F(VirtualOperatorSetup, TextsAreFormattedWhenTheyAreLeftAndCancelDropsThem)
{
    OpenOn(1);
    ASSERT_TRUE(QTest::qWaitForWindowActive(setup.get()));
    ChooseDestination(217);
    Enter("TextBiasGain(0)", "2.675");
    In<QLineEdit>("TextBiasGain(1)")->setFocus();
    EXPECT_EQ(In<QLineEdit>("TextBiasGain(0)")->text(), QStringLiteral("2.68"));
    EXPECT_EQ(In<QLineEdit>("TextBiasGain(1)")->selectedText(), In<QLineEdit>("TextBiasGain(1)")->text());
    In<QComboBox>("ComboInput")->setCurrentIndex(3);
    EXPECT_EQ(In<QComboBox>("ComboDestination")->currentText(), QStringLiteral("0 None"))
        << "another input drops the edits of the former one";
    Press("CommandCancel");
    EXPECT_FALSE(setup->isVisible());
    EXPECT_EQ(Setting(1), VirtualSetting{});
}

TEST_F(VirtualOperatorSetup, PropertiesOpensOnTheControlThatWasClicked)
{
    Open();
    fields.VirtualSelection = 9;
    QString shown;
    QMetaObject::invokeMethod(
        panel,
        [&shown] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            shown = dialog->findChild<QComboBox *>(QStringLiteral("ComboInput"))->currentText();
            dialog->reject();
        },
        Qt::QueuedConnection);
    panel->findChild<QAction *>(QStringLiteral("mnuProperties"))->trigger();
    EXPECT_EQ(shown, QStringLiteral("Digital D"));
}

} // namespace

} // namespace quorvik::testing
