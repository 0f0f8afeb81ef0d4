#include "trend/forms/CaptureBar.h"

#include "desktop/Form.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QDateTime>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

namespace quorvik
{

CaptureBar::CaptureBar(QWidget *parent)
    : QWidget(parent)
    , row_(new QHBoxLayout)
    , labelNone_(new QLabel(QStringLiteral("None yet. Each one is kept under Recordings by itself."), this))
    , commandOverlayAll_(new QPushButton(QStringLiteral("Overlay All"), this))
{
    auto *label = new QLabel(QStringLiteral("Captures:"), this);
    label->setObjectName(QStringLiteral("LabelCaptures"));
    labelNone_->setObjectName(QStringLiteral("LabelNoCaptures"));
    commandOverlayAll_->setObjectName(QStringLiteral("CommandOverlayAll"));
    commandOverlayAll_->setToolTip(
        QStringLiteral("Lays all captures over what is shown, trigger on trigger"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(label);
    layout->addWidget(labelNone_);
    row_->setSpacing(2);
    layout->addLayout(row_);
    layout->addStretch(1);
    layout->addWidget(commandOverlayAll_);
    On(commandOverlayAll_, &QPushButton::clicked, this, [this] { Q_EMIT OverlayAllWanted(); });
    Rebuild();
}

void CaptureBar::Add(TrendDataPtr capture, const QString &path)
{
    ++taken_;
    const qint64 utcMs = capture->UtcMsAt(capture->triggerUs.value_or(capture->head.beganUs));
    const QString time = QDateTime::fromMSecsSinceEpoch(utcMs).toString(QStringLiteral("hh:mm:ss.zzz"));
    captures_.push_back({std::move(capture), path, QStringLiteral("Capture %1 of %2").arg(taken_).arg(time)});
    if (captures_.size() > Most)
        captures_.erase(captures_.begin());
    Rebuild();
}

void CaptureBar::SetShown(const TrendData *shown)
{
    shown_ = shown;
    for (std::size_t index = 0; index < commands_.size(); ++index)
        commands_[index]->setChecked(captures_[index].data.get() == shown_);
}

QToolButton *CaptureBar::MakeCommand(int index)
{
    const KeptCapture &capture = captures_[std::size_t(index)];
    auto *command = new QToolButton(this);
    command->setObjectName(ControlName("CommandCapture", index));
    command->setText(capture.title.section(u' ', 1, 1));
    command->setAccessibleName(capture.title);
    command->setToolTip(capture.title + QStringLiteral(": shows it. Its menu lays it over what is shown."));
    command->setCheckable(true);
    command->setFocusPolicy(Qt::StrongFocus);
    command->setPopupMode(QToolButton::MenuButtonPopup);
    auto *menu = new QMenu(command);
    QAction *show = menu->addAction(QStringLiteral("&Show"));
    QAction *overlay = menu->addAction(QStringLiteral("&Lay Over What Is Shown"));
    command->setMenu(menu);
    const auto tell = [this, capture](auto signal) {
        return [this, capture, signal] {
            (this->*signal)(capture);
            SetShown(shown_);
        };
    };
    On(command, &QToolButton::clicked, this, tell(&CaptureBar::ShowWanted));
    On(show, &QAction::triggered, this, tell(&CaptureBar::ShowWanted));
    On(overlay, &QAction::triggered, this, tell(&CaptureBar::OverlayWanted));
    return command;
}

void CaptureBar::Rebuild()
{
    for (QToolButton *command : commands_) {
        // Its menu may be open.
        command->hide();
        command->setObjectName({});
        command->deleteLater();
    }
    commands_.clear();
    for (int index = 0; index < int(captures_.size()); ++index) {
        commands_.push_back(MakeCommand(index));
        row_->addWidget(commands_.back());
    }
    SetShown(shown_);
    labelNone_->setVisible(captures_.empty());
    commandOverlayAll_->setVisible(captures_.size() > 1);
}

} // namespace quorvik
