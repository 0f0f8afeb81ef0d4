#include "shell/StatusBarMain.h"

#include "desktop/PlainText.h"
#include "platform/Guard.h"

#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

namespace quorvik
{

namespace
{

constexpr int clockMs = 1000;

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

void StatusBarMain::SetDriveStatus(const QString &text)
{
    ShowIn(driveStatus_, text);
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
