#include "shell/NoticeStrip.h"

#include "platform/Guard.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <utility>

namespace quorvik
{

NoticeStrip::NoticeStrip(QWidget *parent)
    : QFrame(parent)
    , message_(new QLabel(this))
    , command_(new QPushButton(this))
{
    setObjectName(QStringLiteral("NoticeStrip"));
    setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Plain));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    message_->setObjectName(QStringLiteral("Message"));
    message_->setTextFormat(Qt::PlainText);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    message_->setWordWrap(true);
    message_->setForegroundRole(QPalette::ToolTipText);
    command_->setObjectName(QStringLiteral("CommandNotice"));
    On(command_, &QPushButton::clicked, this, [this] {
        hide();
        // May show another sentence, and so replace what is being run.
        const std::function<void()> run = run_;
        run();
    });
    auto *commandClose = new QPushButton(tr("Close"), this);
    commandClose->setObjectName(QStringLiteral("CommandCloseNotice"));
    commandClose->setAccessibleName(tr("Close the notice"));
    On(commandClose, &QPushButton::clicked, this, [this] { hide(); });

    auto *layout = new QHBoxLayout(this);
    layout->addWidget(message_, 1);
    layout->addWidget(command_, 0, Qt::AlignVCenter);
    layout->addWidget(commandClose, 0, Qt::AlignVCenter);
    hide();
}

void NoticeStrip::Tell(const QString &sentence)
{
    Tell(sentence, {}, {});
}

void NoticeStrip::Withdraw(const QString &sentence)
{
    if (message_->text() == sentence)
        hide();
}

void NoticeStrip::HideWhatIsSaved()
{
    if (!run_)
        hide();
}

void NoticeStrip::Tell(const QString &sentence, const QString &caption, std::function<void()> run)
{
    run_ = std::move(run);
    command_->setText(caption);
    command_->setVisible(bool(run_));
    message_->setText(sentence);
    show();
    QAccessibleEvent event(message_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvik
