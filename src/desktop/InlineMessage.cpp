#include "desktop/InlineMessage.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace quorvik
{

InlineMessage::InlineMessage(const QString &labelName, QWidget *parent)
    : QWidget(parent)
    , label_(new QLabel(this))
{
    auto *sign = new QLabel(this);
    sign->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(fontMetrics().height()));
    label_->setObjectName(labelName);
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins({});
    line->addWidget(sign, 0, Qt::AlignTop);
    line->addWidget(label_, 1, Qt::AlignTop);
    hide();
}

void InlineMessage::Tell(const QString &sentence)
{
    label_->setText(sentence);
    show();
    QAccessibleEvent event(label_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvik
