// How the panel is put together; what it does stands in FormVirtualOperator.cpp.

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "operator/FormVirtualOperator.h"
#include "operator/JogButton.h"
#include "operator/LatchButton.h"
#include "operator/VirtualSlider.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int UpdateInterval = 500; // milliseconds

/** Asks for the width of all sliders, and makes do with that of one. */
class SignalScroll : public QScrollArea
{
public:
    SignalScroll(QWidget *sliders, QWidget *parent)
        : QScrollArea(parent)
    {
        setObjectName(QStringLiteral("ScrollSignal"));
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidget(sliders);
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }
    QSize minimumSizeHint() const override
    {
        const QSize all = widget()->minimumSizeHint();
        return {all.width() / FormVirtualOperator::Signals,
                all.height() + horizontalScrollBar()->sizeHint().height()};
    }

protected:
    /** A resizable widget of the area's own would keep the height that its wrapped names ask for. */
    void resizeEvent(QResizeEvent *event) override
    {
        widget()->resize(std::max(viewport()->width(), widget()->minimumSizeHint().width()),
                         viewport()->height());
        QScrollArea::resizeEvent(event);
    }
};

} // namespace

FormVirtualOperator::FormVirtualOperator(Desk &desk, QWidget *owner, VirtualOperatorFields &fields)
    : Form(desk, QStringLiteral("FormVirtualOperator"), Caption(), QStringLiteral("Virtual Operator.htm"))
    , fields_(fields)
    , watched_(desk.table)
    , commandRun_(new OperatorButton(OperatorSymbol::Run, this))
    , commandStop_(new OperatorButton(OperatorSymbol::Stop, this))
    , commandJog_(new JogButton(this))
    , mnuPop1_(new QMenu(QStringLiteral("Pop1"), this))
    , labelNotice_(new QLabel(this))
    , timerUpdateScreen_(new QTimer(this))
{
    // A window of its own would let the owner come in front of Stop.
    setParent(owner, Qt::Dialog);
    if (owner)
        owner->installEventFilter(this);

    auto *left = new QVBoxLayout;
    left->addWidget(MakeStartStop());
    left->addWidget(MakeDigitals(), 1);
    auto *stations = new QHBoxLayout;
    stations->addLayout(left);
    stations->addWidget(new SignalScroll(MakeSignals(), this), 1);
    labelNotice_->setObjectName(QStringLiteral("LabelNotice"));
    labelNotice_->setTextFormat(Qt::PlainText);
    labelNotice_->setWordWrap(true);
    labelNotice_->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Plain));
    labelNotice_->setMargin(3);
    labelNotice_->hide();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(labelNotice_);
    layout->addLayout(stations, 1);
    layout->addWidget(MakeCommands());

    mnuPop1_->setObjectName(QStringLiteral("mnuPop1"));
    QAction *properties = mnuPop1_->addAction(QStringLiteral("Properties"));
    properties->setObjectName(QStringLiteral("mnuProperties"));
    On(properties, &QAction::triggered, this, [this] { mnuProperties_Click(); });

    On(&desk.document, &Document::VirtualSettingsLoaded, this, [this] { RefreshControls(); });
    On(&desk.table.Signals(), &TableSignals::Entered, this, [this] { ShowCommands(); });
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    timerUpdateScreen_->setInterval(UpdateInterval);
    On(timerUpdateScreen_, &QTimer::timeout, this, [this] { tickGuard_.Run([this] { ShowCommands(); }); });
    On(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            commandJog_->Release();
    });
    // A space bar struck by accident must find Stop, never Run.
    commandStop_->setFocus();
    resize(sizeHint());
}

QWidget *FormVirtualOperator::MakeStartStop()
{
    auto *frame = new QGroupBox(QStringLiteral("Virtual Run/Stop/Jog"), this);
    frame->setObjectName(QStringLiteral("FrameStartStop"));
    commandRun_->setObjectName(QStringLiteral("CommandRun"));
    commandStop_->setObjectName(QStringLiteral("CommandStop"));
    commandJog_->setObjectName(QStringLiteral("CommandJog"));
    commandRun_->setToolTip(QStringLiteral("Run"));
    commandStop_->setToolTip(QStringLiteral("Stop"));
    commandJog_->setToolTip(QStringLiteral("Jog while held, with the mouse or the space bar"));
    auto *layout = new QHBoxLayout(frame);
    for (QWidget *button : {static_cast<QWidget *>(commandRun_), static_cast<QWidget *>(commandStop_),
                            static_cast<QWidget *>(commandJog_)})
        layout->addWidget(button);
    On(commandRun_, &QPushButton::clicked, this, [this] { CommandRun_Click(); });
    On(commandStop_, &QPushButton::clicked, this, [this] { CommandStop_Click(); });
    On(commandJog_, &JogButton::MouseDown, this, [this] { CommandJog_MouseDown(); });
    On(commandJog_, &JogButton::MouseUp, this, [this] { CommandJog_MouseUp(); });
    return frame;
}

QLabel *FormVirtualOperator::MakeLabel(const char *name, int index)
{
    auto *label = new QLabel(frameSignal_);
    label->setObjectName(ControlName(name, index));
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QWidget *FormVirtualOperator::MakeSignals()
{
    frameSignal_ = new QGroupBox(QStringLiteral("Virtual Signal Inputs"), this);
    frameSignal_->setObjectName(QStringLiteral("FrameSignal"));
    frameSignal_->installEventFilter(this);
    auto *layout = new QGridLayout(frameSignal_);
    layout->setRowStretch(1, 1);
    for (int index = 0; index < Signals; ++index) {
        const auto signal = std::size_t(index);
        QLabel *name = MakeLabel("LabelInputName", index);
        name->setWordWrap(true);
        name->setMinimumSize(fontMetrics().averageCharWidth() * 13, fontMetrics().lineSpacing() * 3);
        auto *slider = new VirtualSlider(frameSignal_);
        slider->setObjectName(ControlName("VScrollSignal", index));
        slider->installEventFilter(this);
        On(slider, &VirtualSlider::valueChanged, this, [this, index] { VScrollSignal_Change(index); });
        QLabel *value = MakeLabel("LabelSignalValue", index);
        value->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Sunken));
        value->setBackgroundRole(QPalette::Base);
        value->setForegroundRole(QPalette::Text);
        value->setAutoFillBackground(true);
        value->setMargin(3);
        QFont reading = font();
        reading.setBold(true);
        reading.setPointSizeF(reading.pointSizeF() * 1.2);
        value->setFont(reading);
        auto *line = new QFrame(frameSignal_);
        line->setObjectName(ControlName("Line1", index));
        line->setFrameStyle(int(QFrame::VLine) | int(QFrame::Sunken));

        layout->setColumnStretch(2 * index, 1);
        layout->addWidget(name, 0, 2 * index);
        layout->addWidget(slider, 1, 2 * index);
        layout->addWidget(value, 2, 2 * index);
        layout->addWidget(line, 0, 2 * index + 1, 3, 1);
        vScrollSignal_[signal] = slider;
        labelInputName_[signal] = name;
        labelSignalValue_[signal] = value;
        line1_[signal] = line;
    }
    return frameSignal_;
}

QWidget *FormVirtualOperator::MakeDigitals()
{
    auto *frame = new QGroupBox(QStringLiteral("Virtual Digital Inputs"), this);
    frame->setObjectName(QStringLiteral("FrameDigital"));
    auto *layout = new QGridLayout(frame);
    for (int index = Signals; index < Records; ++index) {
        auto *button = new LatchButton(frame);
        button->setObjectName(ControlName("CommandDigital", index));
        button->installEventFilter(this);
        On(button, &QPushButton::clicked, this, [this, index] { CommandDigital_Click(index); });
        const int place = index - Signals;
        layout->addWidget(button, place / 2, place % 2);
        commandDigital_[std::size_t(place)] = button;
    }
    return frame;
}

QWidget *FormVirtualOperator::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    auto *setup = new QPushButton(QStringLiteral("Setup..."), commands);
    setup->setObjectName(QStringLiteral("CommandSetup"));
    On(setup, &QPushButton::clicked, this, [this] { CommandSetup_Click(); });
    layout->addWidget(setup);
    layout->addStretch();
    layout->addWidget(MakeCommandClose());
    layout->addWidget(MakeCommandHelp());
    return commands;
}

} // namespace quorvik
