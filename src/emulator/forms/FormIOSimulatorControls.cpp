#include "emulator/EmulatorTimings.h"
#include "emulator/forms/FormIOSimulator.h"
#include "emulator/forms/Gauges.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSlider>
#include <QStyle>

namespace quorvik
{

namespace
{

constexpr int LeastLines = 10; ///< of text, that the frames have room for

QComboBox *MakeMemberList(const QString &name, const QString &member, int count, QWidget *parent)
{
    auto *list = new QComboBox(parent);
    list->setObjectName(name);
    list->setAccessibleName(member);
    for (int i = 1; i <= count; ++i)
        list->addItem(member + u' ' + QString::number(i));
    return list;
}

/** Half the length of a slider's handle: where the middle of its handle stands at the ends. */
int HalfHandle(const QSlider *slider)
{
    return slider->style()->pixelMetric(QStyle::PM_SliderLength, nullptr, slider) / 2;
}

/** Room for the frames, which scroll where a small screen with large texts cannot show all of them. */
class FrameArea : public QScrollArea
{
public:
    explicit FrameArea(QWidget *parent)
        : QScrollArea(parent)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }
    QSize minimumSizeHint() const override
    {
        return {widget()->minimumSizeHint().width() / 2, LeastLines * fontMetrics().height()};
    }
};

} // namespace

FormIOSimulator::FormIOSimulator(Desk &desk)
    : Form(desk, QStringLiteral("FormIOSimulator"), QStringLiteral("I/O Simulator"),
           QStringLiteral("IO Simulator.htm"))
    , TimerUpdateScreen(this)
{
    auto *frames = new QWidget;
    auto *grid = new QGridLayout(frames);
    grid->setContentsMargins({});
    grid->addWidget(MakeFrameDigitalInputs(), 0, 0);
    grid->addWidget(MakeFrameAnalogInputs(), 1, 0);
    grid->addWidget(MakeFrameFreqInput(), 2, 0);
    grid->addWidget(MakeFrameRelayOutputs(), 0, 1);
    grid->addWidget(MakeFrameAnalogOutputs(), 1, 1);
    grid->addWidget(MakeFrameFreqDigOutput(), 2, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);

    auto *area = new FrameArea(this);
    area->setWidget(frames);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(MakeCommandHelp());
    buttons->addWidget(MakeCommandClose());
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(area, 1);
    layout->addLayout(buttons);

    TimerUpdateScreen.setObjectName(QStringLiteral("TimerUpdateScreen"));
    TimerUpdateScreen.setInterval(EmulatorTimings::UpdateScreenMs);
    connect(&TimerUpdateScreen, &QTimer::timeout, this,
            [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    Load();
}

QGroupBox *FormIOSimulator::MakeFrameDigitalInputs()
{
    QGroupBox *frame = MakeFrame(QStringLiteral("FrameDigitalInputs"), QStringLiteral("Digital Inputs"));
    digitalStrip_ = new TerminalStrip({{1, QStringLiteral("DI 1")},
                                       {2, QStringLiteral("DI 2")},
                                       {3, QStringLiteral("DI 3")},
                                       {4, QStringLiteral("DI 4")},
                                       {5, QStringLiteral("DI 5")},
                                       {6, QStringLiteral("DI 6")},
                                       {7, QStringLiteral("DI 7")},
                                       {8, QStringLiteral("+24V")},
                                       {9, QStringLiteral("COM")}},
                                      Indicator::Lamp, 7, true, frame);
    ComboDigitalInput_ =
        MakeMemberList(QStringLiteral("ComboDigitalInput"), QStringLiteral("Digital Input"), 7, frame);
    On(ComboDigitalInput_, &QComboBox::currentIndexChanged, this, [this] { ComboDigitalInput_Click(); });
    On(digitalStrip_, &TerminalStrip::Picked, this,
       [this](int position) { ComboDigitalInput_->setCurrentIndex(position); });

    auto *row = new QHBoxLayout;
    row->setSpacing(fontMetrics().height());
    row->addWidget(ComboDigitalInput_);
    row->addStretch();
    const QStringList captions{QStringLiteral("&Open"), QStringLiteral("&Closed")};
    for (int i = 0; i < 2; ++i) {
        auto *option = new QRadioButton(captions.at(i), frame);
        option->setObjectName(ControlName("OptionDigitalInputState", i));
        On(option, &QRadioButton::clicked, this, [this, i] { OptionDigitalInputState_Click(i); });
        OptionDigitalInputState_[std::size_t(i)] = option;
        row->addWidget(option);
    }
    row->addStretch();

    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(digitalStrip_);
    layout->addLayout(row);
    layout->addStretch();
    return frame;
}

QGroupBox *FormIOSimulator::MakeFrameAnalogInputs()
{
    QGroupBox *frame = MakeFrame(QStringLiteral("FrameAnalogInputs"), QStringLiteral("Analog Inputs"));
    analogStrip_ = new TerminalStrip({{11, QStringLiteral("AI 1")},
                                      {12, QStringLiteral("AI 2")},
                                      {13, QStringLiteral("AI 3")},
                                      {14, QStringLiteral("AI 4")},
                                      {15, QStringLiteral("AI 5")},
                                      {16, QStringLiteral("COM")}},
                                     Indicator::Level, 5, true, frame);
    ComboAnalogInput_ =
        MakeMemberList(QStringLiteral("ComboAnalogInput"), QStringLiteral("Analog Input"), 5, frame);
    HScrollAnalogInputStatus_ =
        MakeScroll(QStringLiteral("HScrollAnalogInputStatus"), QStringLiteral("Analog input level"));
    HScrollAnalogInputStatus_->setRange(0, 4095);
    LabelMin_ = MakeLabel(QStringLiteral("LabelMin"));
    LabelMax_ = MakeLabel(QStringLiteral("LabelMax"));
    LabelAnalogInputStatus_ = MakeLabel(QStringLiteral("LabelAnalogInputStatus"));
    // The row must not move about while the level changes.
    LabelAnalogInputStatus_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("-20.00 mA")));
    On(ComboAnalogInput_, &QComboBox::currentIndexChanged, this, [this] {
        ComboAnalogInput_Click();
        HScrollAnalogInputStatus_Change();
    });
    On(HScrollAnalogInputStatus_, &QSlider::valueChanged, this,
       [this] { HScrollAnalogInputStatus_Change(); });
    On(analogStrip_, &TerminalStrip::Picked, this,
       [this](int position) { ComboAnalogInput_->setCurrentIndex(position); });

    auto *row = new QHBoxLayout;
    row->addWidget(ComboAnalogInput_);
    row->addStretch();
    row->addWidget(MakeLabel(QStringLiteral("LabelAnalogStatus"), QStringLiteral("Status:")));
    row->addWidget(LabelAnalogInputStatus_);
    row->addStretch();
    auto *ends = new QHBoxLayout;
    ends->addWidget(LabelMin_);
    ends->addStretch();
    ends->addWidget(LabelMax_);
    auto *slide = new QVBoxLayout;
    slide->setSpacing(0);
    slide->addWidget(HScrollAnalogInputStatus_);
    slide->addWidget(new Ruler(QStringList(3, QString()), 5, HalfHandle(HScrollAnalogInputStatus_), frame));
    slide->addLayout(ends);

    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(analogStrip_);
    layout->addLayout(row);
    layout->addLayout(slide);
    layout->addStretch();
    return frame;
}

QGroupBox *FormIOSimulator::MakeFrameFreqInput()
{
    QGroupBox *frame = MakeFrame(QStringLiteral("FrameFreqInput"), QStringLiteral("Frequency Input"));
    HScrollFreqInputStatus_ =
        MakeScroll(QStringLiteral("HScrollFreqInputStatus"), QStringLiteral("Frequency input"));
    HScrollFreqInputStatus_->setRange(0, 6000);
    LabelFreqInputStatus_ = MakeLabel(QStringLiteral("LabelFreqInputStatus"));
    On(HScrollFreqInputStatus_, &QSlider::valueChanged, this, [this] { HScrollFreqInputStatus_Change(); });

    auto *row = new QHBoxLayout;
    row->addWidget(MakeLabel(QStringLiteral("LabelFreqStatus"), QStringLiteral("Status:")));
    row->addWidget(LabelFreqInputStatus_);
    row->addStretch();
    auto *slide = new QVBoxLayout;
    slide->setSpacing(0);
    slide->addWidget(HScrollFreqInputStatus_);
    slide->addWidget(new Ruler(
        {QStringLiteral("0"), QStringLiteral("20 kHz"), QStringLiteral("40 kHz"), QStringLiteral("60 kHz")},
        4, HalfHandle(HScrollFreqInputStatus_), frame));

    auto *layout = new QGridLayout(frame);
    layout->addWidget(new TerminalStrip({{18, QStringLiteral("FREQ")}, {19, QStringLiteral("COM")}},
                                        Indicator::None, 0, false, frame),
                      0, 0, 2, 1, Qt::AlignTop);
    layout->addLayout(row, 0, 1);
    layout->addLayout(slide, 1, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
    return frame;
}

QGroupBox *FormIOSimulator::MakeFrameRelayOutputs()
{
    QGroupBox *frame = MakeFrame(QStringLiteral("FrameRelayOutputs"), QStringLiteral("Relay Outputs"));
    relayStrip_ = new TerminalStrip({{25, QStringLiteral("NO 1")},
                                     {26, QStringLiteral("NC 1")},
                                     {27, QStringLiteral("C 1")},
                                     {28, QStringLiteral("NO 2")},
                                     {29, QStringLiteral("NC 2")},
                                     {30, QStringLiteral("C 2")},
                                     {54, QStringLiteral("NO 3")},
                                     {55, QStringLiteral("NC 3")},
                                     {56, QStringLiteral("C 3")}},
                                    Indicator::Contact, 0, false, frame);
    auto *layout = new QGridLayout(frame);
    layout->addWidget(relayStrip_, 0, 0, 1, 2);
    for (int i = 0; i < 3; ++i) {
        relayLamps_[std::size_t(i)] = new Lamp(frame);
        LabelRelayOutput_[std::size_t(i)] = MakeLabel(ControlName("LabelRelayOutput", i));
        layout->addWidget(relayLamps_[std::size_t(i)], i + 1, 0);
        layout->addWidget(LabelRelayOutput_[std::size_t(i)], i + 1, 1);
    }
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(4, 1);
    return frame;
}

QGroupBox *FormIOSimulator::MakeFrameAnalogOutputs()
{
    QGroupBox *frame = MakeFrame(QStringLiteral("FrameAnalogOutputs"), QStringLiteral("Analog Outputs"));
    auto *layout = new QGridLayout(frame);
    layout->addWidget(new TerminalStrip({{21, QStringLiteral("AO 1")},
                                         {22, QStringLiteral("AO 2")},
                                         {23, QStringLiteral("COM")},
                                         {24, QStringLiteral("COM")}},
                                        Indicator::None, 0, false, frame),
                      0, 0, 1, 3);
    for (int i = 0; i < 2; ++i) {
        LabelAnalogOutput_[std::size_t(i)] = MakeLabel(ControlName("LabelAnalogOutput", i));
        analogBars_[std::size_t(i)] = new LevelBar(frame);
        layout->addWidget(
            MakeLabel(ControlName("LabelAnalogOut", i), QStringLiteral("Output %1 = ").arg(i + 1)), i + 1, 0);
        layout->addWidget(LabelAnalogOutput_[std::size_t(i)], i + 1, 1);
        layout->addWidget(analogBars_[std::size_t(i)], i + 1, 2);
    }
    layout->addWidget(
        new Ruler({QStringLiteral("-10 V"), QStringLiteral("0"), QStringLiteral("+10 V")}, 5, 0, frame), 3,
        2);
    layout->setColumnMinimumWidth(1, fontMetrics().horizontalAdvance(QStringLiteral("-10.0 Volts")));
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(4, 1);
    return frame;
}

QGroupBox *FormIOSimulator::MakeFrameFreqDigOutput()
{
    QGroupBox *frame = MakeFrame(QStringLiteral("FrameFreqDigOutput"), QStringLiteral("Freq/Digital Output"));
    freqDigLamp_ = new Lamp(frame);
    LabelFreqDigOutput_ = MakeLabel(QStringLiteral("LabelFreqDigOutput"));
    auto *layout = new QGridLayout(frame);
    layout->addWidget(
        new TerminalStrip({{51, QStringLiteral("+")}, {52, QStringLiteral("OUT")}, {53, QStringLiteral("-")}},
                          Indicator::None, 0, false, frame),
        0, 0, Qt::AlignTop);
    layout->addWidget(freqDigLamp_, 0, 1);
    layout->addWidget(LabelFreqDigOutput_, 0, 2);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(1, 1);
    return frame;
}

QGroupBox *FormIOSimulator::MakeFrame(const QString &name, const QString &title)
{
    auto *frame = new QGroupBox(title, this);
    frame->setObjectName(name);
    return frame;
}

QLabel *FormIOSimulator::MakeLabel(const QString &name, const QString &text)
{
    auto *label = new QLabel(text, this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QSlider *FormIOSimulator::MakeScroll(const QString &name, const QString &spokenName)
{
    auto *scroll = new QSlider(Qt::Horizontal, this);
    scroll->setObjectName(name);
    scroll->setAccessibleName(spokenName);
    scroll->setSingleStep(1);
    scroll->setPageStep(20);
    return scroll;
}

} // namespace quorvik
