#include "shell/StatusBarMain.h"

#include "desktop/BoxColors.h"
#include "desktop/PlainText.h"
#include "platform/Guard.h"

#include <QDateTime>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QToolButton>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int clockMs = 1000;
constexpr QColor tripColor(0xc6, 0x28, 0x28);
constexpr QColor stoppingColor(0xff, 0xb3, 0x00);

} // namespace

StatusBarMain::StatusBarMain(QWidget *parent)
    : QStatusBar(parent)
    , comStatus_(new QToolButton(this))
{
    setObjectName(QStringLiteral("StatusBarMain"));

    comStatus_->setObjectName(QStringLiteral("ComStatus"));
    comStatus_->setAccessibleName(tr("Link to the drive"));
    comStatus_->setToolTip(tr("Switch the link to the drive on or off"));
    comStatus_->setCursor(Qt::PointingHandCursor);
    comStatus_->setFocusPolicy(Qt::StrongFocus);
    comStatus_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("OffLine")) * 2);
    addWidget(comStatus_);
    On(comStatus_, &QToolButton::clicked, this, [this] { Q_EMIT PanelClick(comStatus_->objectName()); });

    driveStatus_ =
        AddPanel(QStringLiteral("DriveStatus"), tr("Drive status"), QStringLiteral("Current Limit"));
    driveStatus_->installEventFilter(this);
    driveFault_ = new QToolButton(this);
    driveFault_->setObjectName(QStringLiteral("DriveFault"));
    driveFault_->setAccessibleName(tr("Fault of the drive"));
    driveFault_->setToolTip(tr("Open the Fault Log"));
    driveFault_->setCursor(Qt::PointingHandCursor);
    driveFault_->setFocusPolicy(Qt::StrongFocus);
    driveFault_->setAutoRaise(true);
    driveFault_->setAutoFillBackground(true);
    driveFault_->hide();
    addWidget(driveFault_);
    On(driveFault_, &QToolButton::clicked, this, [this] { Q_EMIT PanelClick(driveFault_->objectName()); });
    driveModel_ = AddPanel(QStringLiteral("DriveModel"), tr("Drive model"), QStringLiteral("Undefined-000"));

    addWidget(new QWidget(this), 1);
    date_ = AddPanel(QStringLiteral("Date"), tr("Date"), QStringLiteral("00/00/0000"));
    time_ = AddPanel(QStringLiteral("Time"), tr("Time"), QStringLiteral("00:00 PM"));

    SetComStatus(false);
    ShowClock();
    On(&clock_, &QTimer::timeout, this, [this] { ShowClock(); });
    clock_.start(clockMs);
}

void StatusBarMain::ShowIn(QLabel *panel, const QString &text)
{
    panel->setText(text);
    // A screen reader says the panel's name and would leave its text out.
    SetSpokenText(panel, text);
}

QLabel *StatusBarMain::AddPanel(const QString &key, const QString &spokenName, const QString &widest)
{
    auto *panel = new QLabel(this);
    panel->setObjectName(key);
    panel->setAccessibleName(spokenName);
    panel->setTextFormat(Qt::PlainText);
    panel->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Sunken));
    panel->setAlignment(Qt::AlignCenter);
    panel->setMinimumWidth(fontMetrics().horizontalAdvance(widest + QStringLiteral("  ")));
    addWidget(panel);
    return panel;
}

void StatusBarMain::SetComStatus(bool isOnline)
{
    comStatus_->setText(isOnline ? QStringLiteral("OnLine") : QStringLiteral("OffLine"));
    comStatus_->setAccessibleDescription(comStatus_->text());
}

void StatusBarMain::SetDriveStatus(const QString &text, Condition condition, const QString &faults)
{
    ShowIn(driveStatus_, text);
    driveFault_->setText(faults);
    SetSpokenText(driveFault_, faults);
    if (std::exchange(condition_, condition) == condition)
        return;
    driveFault_->setVisible(condition == Condition::Tripped);
    driveStatus_->setAutoFillBackground(condition != Condition::Calm);
    driveStatus_->setCursor(condition == Condition::Tripped ? Qt::PointingHandCursor : Qt::ArrowCursor);
    driveStatus_->setToolTip(condition == Condition::Tripped ? driveFault_->toolTip() : QString());
    QPalette colors = palette();
    if (condition != Condition::Calm) {
        const QColor ground = condition == Condition::Tripped ? tripColor : stoppingColor;
        for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Button})
            colors.setColor(role, ground);
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText})
            colors.setColor(role, ContrastingText(ground));
    }
    driveStatus_->setPalette(colors);
    driveFault_->setPalette(colors);
}

bool StatusBarMain::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == driveStatus_ && event->type() == QEvent::MouseButtonRelease &&
        condition_ == Condition::Tripped)
        driveFault_->click();
    return QStatusBar::eventFilter(watched, event);
}

void StatusBarMain::SetDriveModel(const QString &text)
{
    ShowIn(driveModel_, text);
}

void StatusBarMain::ShowClock()
{
    const QDateTime now = QDateTime::currentDateTime();
    ShowIn(date_, QLocale().toString(now.date(), QLocale::ShortFormat));
    ShowIn(time_, QLocale().toString(now.time(), QLocale::ShortFormat));
}

} // namespace quorvik
