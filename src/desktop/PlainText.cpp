#include "desktop/PlainText.h"

#include <QTextDocument>
#include <QWidget>

namespace quorvik
{

void SetPlainToolTip(QWidget *widget, const QString &text)
{
    const QString shown =
        Qt::mightBeRichText(text) ? QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped()) : text;
    if (widget->toolTip() != shown)
        widget->setToolTip(shown);
}

void SetSpokenText(QWidget *widget, const QString &text)
{
    if (widget->accessibleDescription() != text)
        widget->setAccessibleDescription(text);
}

} // namespace quorvik
