#pragma once

#include <QString>

class QWidget;

namespace quorvik
{

/** A text as tool tip that shows it as it stands, also where it would pass for markup. */
QString PlainToolTip(const QString &text);

/** A tool tip made so, and a second line under it; an empty text adds none. */
QString WithSecondLine(const QString &toolTip, const QString &text);

/** Sets a tool tip that shows its text as it stands, also where the text would pass for markup. Does nothing
 * when the widget shows that text already. */
void SetPlainToolTip(QWidget *widget, const QString &text);

/** Sets what a screen reader says of a widget beside its name. Does nothing when it says that already. */
void SetSpokenText(QWidget *widget, const QString &text);

} // namespace quorvik
