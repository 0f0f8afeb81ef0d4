#include "link/forms/FormProgressBar.h"

#include "link/DriveLink.h"
#include "model/Model.h"
#include "platform/Guard.h"

#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int Reading = 1;
constexpr int Writing = 2;
constexpr int BarColumns = 44;

} // namespace

FormProgressBar::FormProgressBar(Desk &desk, QWidget *owner, DriveLink &link)
    : DialogForm(desk, owner, QStringLiteral("FormProgressBar"),
                 link.ScanKind == Reading ? QStringLiteral("Reading Parameters from Drive")
                                          : QStringLiteral("Writing Parameters to Drive"),
                 QStringLiteral("Going On Line.htm"))
    , link_(link)
    , tag_(link.ScanKind)
    , lastParam_(desk.model.LastParam)
    , progressBarRead_(new QProgressBar(this))
{
    setProperty("Tag", QString::number(tag_));
    link_.BeginWholeScan();

    progressBarRead_->setObjectName(QStringLiteral("ProgressBarRead"));
    progressBarRead_->setAccessibleName(QStringLiteral("Progress"));
    // A drive that claims to have no parameters at all leaves nothing to show.
    progressBarRead_->setRange(0, std::max(lastParam_ + 1, 1));
    progressBarRead_->setMinimumWidth(BarColumns * fontMetrics().averageCharWidth());

    auto *commandCancel = new QPushButton(QStringLiteral("Cancel"), this);
    commandCancel->setObjectName(QStringLiteral("CommandCancel"));
    On(commandCancel, &QPushButton::clicked, this, [this] { reject(); });
    // An Enter that was meant for the dialog before this one must not end the scan.
    commandCancel->setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFocus();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(progressBarRead_);
    layout->addWidget(commandCancel, 0, Qt::AlignHCenter);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_.start(link_.Timings().progressUpdate);
}

void FormProgressBar::TimerUpdateScreen_Timer()
{
    Model &model = desk().model;
    progressBarRead_->setValue(std::clamp(link_.CurrentParam, 0, progressBarRead_->maximum()));
    const bool ended = link_.IsWholeScanOver();
    if (!ended && link_.PortOpen())
        return;
    timerUpdateScreen_.stop();
    if (ended && tag_ == Reading)
        model.RefreshAllDependents();
    accept();
}

void FormProgressBar::reject()
{
    if (tag_ == Writing)
        Guarded([this] { desk().model.SetAllWriteFlags(WriteState::None); });
    DialogForm::reject();
}

void FormProgressBar::done(int result)
{
    timerUpdateScreen_.stop();
    link_.EndWholeScan();
    // The interest is given back for what it was raised for: a link that broke has changed LastParam since.
    if (!std::exchange(gone_, true) && tag_ == Reading)
        Guarded([this] {
            for (int i = 0; i <= lastParam_; ++i)
                desk().model.RemoveReadInterest(i);
        });
    DialogForm::done(result);
}

} // namespace quorvik
