#include "shell/NoticeStrip.h"

#include "platform/Guard.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace quorvik
{

NoticeStrip::NoticeStrip(QWidget *parent)
    : QFrame(parent)
    , message_(new QLabel(this))
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
    auto *commandClose = new QPushButton(tr("Close"), this);
    commandClose->setObjectName(QStringLiteral("CommandCloseNotice"));
    commandClose->setAccessibleName(tr("Close the notice"));
    On(commandClose, &QPushButton::clicked, this, [this] { hide(); });

    auto *layout = new QHBoxLayout(this);
    layout->addWidget(message_, 1);
    layout->addWidget(commandClose, 0, Qt::AlignVCenter);
    hide();
}

void NoticeStrip::Tell(const QString &sentence)
{
    message_->setText(sentence);
    show();
    QAccessibleEvent event(message_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvik
