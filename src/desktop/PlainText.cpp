#include "desktop/PlainText.h"

#include <QTextDocument>
#include <QWidget>

namespace quorvik
{

QString PlainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped()) : text;
}

QString WithSecondLine(const QString &toolTip, const QString &text)
{
    if (toolTip.isEmpty() || text.isEmpty())
        return toolTip.isEmpty() ? PlainToolTip(text) : toolTip;
    // The first line decides what the whole passes for.
    return Qt::mightBeRichText(toolTip) ? toolTip + QStringLiteral("<br>") + text.toHtmlEscaped()
                                        : toolTip + u'\n' + text;
}

void SetPlainToolTip(QWidget *widget, const QString &text)
{
    const QString shown = PlainToolTip(text);
    if (widget->toolTip() != shown)
        widget->setToolTip(shown);
}

void SetSpokenText(QWidget *widget, const QString &text)
{
    if (widget->accessibleDescription() != text)
        widget->setAccessibleDescription(text);
}

} // namespace quorvik
