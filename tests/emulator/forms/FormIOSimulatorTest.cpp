#include "emulator/forms/FormIOSimulator.h"

#include "emulator/DriveEmulator.h"
#include "emulator/forms/Gauges.h"
#include "emulator/forms/LampLook.h"
#include "support/WindowTest.h"

#include <QSlider>

namespace quorvik::testing
{

constexpr char Open[] = "OptionDigitalInputState(0)";
constexpr char Closed[] = "OptionDigitalInputState(1)";

class FormIOSimulatorTest : public WindowTest
{
protected:
    FormIOSimulatorTest() { emulator.TimerEmulateSvx.setInterval(5); }

    void Show() { WindowTest::Show<FormIOSimulator>()->TimerUpdateScreen.setInterval(5); }

    QSlider *AnalogScroll() const { return Find<QSlider>("HScrollAnalogInputStatus"); }
    QSlider *FreqScroll() const { return Find<QSlider>("HScrollFreqInputStatus"); }
    /** The terminals beside the list of their members. */
    TerminalStrip *Strip(const char *members) const
    {
        return Find(members)->parentWidget()->findChild<TerminalStrip *>({}, Qt::FindDirectChildrenOnly);
    }

    bool Becomes(int p, std::int32_t raw)
    {
        return QTest::qWaitFor([&] { return P(p) == raw; });
    }
    bool BecomesText(const char *label, const char *text)
    {
        return QTest::qWaitFor([&] { return Text(label) == text; });
    }

    DriveEmulator emulator{desk.table};
};

TEST_F(FormIOSimulatorTest, DigitalInputsAreChosenAtTheirTerminalsAndReachTheirDestinations)
{
    Show();
    TerminalStrip *strip = Strip("ComboDigitalInput");
    const auto pick = [strip](int terminal) {
        QTest::mouseClick(strip, Qt::LeftButton, {}, strip->CellRect(terminal).center().toPoint());
    };
    ASSERT_EQ(P(1), 239);
    Click(Closed);
    EXPECT_EQ(P(132), 1);
    EXPECT_TRUE(strip->IsLit(0));
    EXPECT_TRUE(Becomes(239, P(15)));
    pick(1);
    EXPECT_EQ(Text("ComboDigitalInput"), "Digital Input 2");
    EXPECT_EQ(strip->Selected(), 1);
    EXPECT_TRUE(Checked(Open)) << "the options follow the member";
    Click(Closed);
    EXPECT_EQ(P(133), 1);
    EXPECT_EQ(P(132), 1);
    pick(7);
    EXPECT_EQ(strip->Selected(), 1) << "a supply terminal is no member";
    Pick("ComboDigitalInput", 0);
    EXPECT_TRUE(Checked(Closed));
    Click(Open);
    EXPECT_EQ(P(132), 0);
    EXPECT_TRUE(told.isEmpty()) << told.join(u'\n').toStdString();
}

TEST_F(FormIOSimulatorTest, AnalogInputOneMovesReferenceZero)
{
    Show();
    QSlider *scroll = AnalogScroll();
    scroll->setFocus();
    QTest::keyClick(scroll, Qt::Key_Right);
    EXPECT_EQ(P(139), 1);
    QTest::keyClick(scroll, Qt::Key_PageUp);
    EXPECT_EQ(P(139), 21);
    EXPECT_EQ(Text("LabelAnalogInputStatus"), "0.10 V");
    QTest::keyClick(scroll, Qt::Key_End);
    EXPECT_EQ(P(139), 2047);
    EXPECT_TRUE(Becomes(217, 10000));
    Pick("ComboAnalogInput", 1);
    QTest::keyClick(scroll, Qt::Key_Right);
    EXPECT_EQ(P(140), 1);
    EXPECT_EQ(P(139), 2047) << "the member left keeps its status";
}

TEST_F(FormIOSimulatorTest, RangeFollowsTypeAndPolarity)
{
    const std::tuple<int, int, int, const char *, const char *, int, int, const char *, int> cases[] = {
        {0, 0, 4095, "0 mA", "20 mA", 0, 4095, "20.00 mA", 4095},
        {0, 1, 3000, "-20 mA", "+20 mA", -2048, 2047, "20.00 mA", 2047},
        {1, 0, -5, "0 V", "10 V", 0, 4095, "0.00 V", 0},
        {1, 1, -3000, "-10 V", "+10 V", -2048, 2047, "-10.00 V", -2048},
        // A code of its own changes nothing: the range stays the last one.
        {2, 0, 1024, "-10 V", "+10 V", -2048, 2047, "5.00 V", 1024},
    };
    Show();
    for (const auto &[type, polarity, status, min, max, minimum, maximum, level, after] : cases) {
        SCOPED_TRACE(::testing::Message() << type << ' ' << polarity << ' ' << status);
        P(33) = type;
        P(28) = polarity;
        P(139) = status;
        Tick();
        EXPECT_EQ(Text("LabelMin"), min);
        EXPECT_EQ(Text("LabelMax"), max);
        EXPECT_EQ(AnalogScroll()->minimum(), minimum);
        EXPECT_EQ(AnalogScroll()->maximum(), maximum);
        EXPECT_EQ(Text("LabelAnalogInputStatus"), level);
        EXPECT_EQ(P(139), after);
    }
}

TEST_F(FormIOSimulatorTest, EachAnalogInputHasALevelOfItsOwn)
{
    Show();
    TerminalStrip *strip = Strip("ComboAnalogInput");
    for (int lit = 0; lit < 5; ++lit) {
        for (int i = 0; i < 5; ++i)
            P(139 + i) = i == lit ? 1024 : 0;
        Tick();
        const QImage image = strip->grab().toImage();
        for (int i = 0; i < 5; ++i) {
            const QRect cell = strip->CellRect(i).toAlignedRect();
            bool isLit = false;
            for (int x = cell.left(); x < cell.right(); ++x)
                for (int y = cell.top(); y < cell.bottom(); ++y)
                    isLit = isLit || image.pixelColor(x, y) == SignalColor();
            EXPECT_EQ(isLit, i == lit) << i << " while " << lit;
        }
        Pick("ComboAnalogInput", lit);
        EXPECT_EQ(AnalogScroll()->value(), 1024);
    }
}

TEST_F(FormIOSimulatorTest, FrequencyInputCountsInTens)
{
    P(164) = 125;
    Show();
    EXPECT_EQ(P(164), 120) << "12.5 to the even 12";
    QTest::keyClick(FreqScroll(), Qt::Key_Right);
    EXPECT_EQ(P(164), 130);
    EXPECT_EQ(Text("LabelFreqInputStatus"), "130 Hz");
    QTest::keyClick(FreqScroll(), Qt::Key_End);
    EXPECT_EQ(P(164), 60000);

    P(164) = 505;
    EXPECT_TRUE(BecomesText("LabelFreqInputStatus", "505 Hz"));
    EXPECT_EQ(P(164), 505) << "what came from elsewhere is shown, not rounded";
}

TEST_F(FormIOSimulatorTest, OutputsAreShownInTheirUnits)
{
    const std::tuple<int, int, int, const char *, const char *> cases[] = {
        {168, -4095, 0, "LabelAnalogOutput(0)", "-10.0 Volts"},
        {169, 2048, 0, "LabelAnalogOutput(1)", "5.0 Volts"},
        {170, 1234, 0, "LabelFreqDigOutput", "Output = 1234 Hz"},
        {170, -1, 1, "LabelFreqDigOutput", "Output = On"},
        {170, 1, 1, "LabelFreqDigOutput", "Output = Off"},
        {165, 1, 0, "LabelRelayOutput(0)", "Output 1 = On (Energized)"},
        {167, -1, 0, "LabelRelayOutput(2)", "Output 3 = On (Energized)"},
    };
    emulator.TimerEmulateSvx.stop();
    Show();
    for (const auto &[p, raw, mode, label, text] : cases) {
        P(90) = mode;
        P(p) = raw;
        EXPECT_TRUE(BecomesText(label, text)) << text;
    }
}

TEST_F(FormIOSimulatorTest, OnLineInputsAreGreyAndWriteNoLimitBack)
{
    Show();
    desk.table.SetPortOpen(true);
    P(139) = 3000;
    P(140) = -3000;
    Tick();
    Pick("ComboAnalogInput", 1);
    EXPECT_EQ(P(139), 3000);
    EXPECT_EQ(P(140), -3000);
    for (const bool online : {true, false}) {
        desk.table.SetPortOpen(online);
        for (const char *input : {"HScrollAnalogInputStatus", "HScrollFreqInputStatus", Open, Closed})
            EXPECT_TRUE(QTest::qWaitFor([&] { return Enabled(input) == !online; })) << input;
    }
    EXPECT_TRUE(Enabled("ComboDigitalInput"));
}

TEST_F(FormIOSimulatorTest, BadStatusIsToldAndCanBePutRight)
{
    P(132) = 5;
    Show();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.at(0).startsWith(QStringLiteral("Digital Input 1 (132): "))) << told.at(0).toStdString();
    Click(Closed);
    EXPECT_EQ(P(132), 1);

    told.clear();
    P(33) = 128;
    emulator.TimerEmulateSvx.stop();
    P(168) = 4095;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !told.isEmpty(); }));
    EXPECT_TRUE(BecomesText("LabelAnalogOutput(0)", "10.0 Volts"));
    P(168) = -4095;
    EXPECT_TRUE(BecomesText("LabelAnalogOutput(0)", "-10.0 Volts"));
    EXPECT_EQ(told, QStringList{QStringLiteral("Analog Input 1 (33, 28): The result is out of range.")})
        << "told once";
    P(33) = 0;
    EXPECT_TRUE(BecomesText("LabelMin", "-20 mA"));
}

} // namespace quorvik::testing
