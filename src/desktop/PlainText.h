#pragma once

class QString;
class QWidget;

namespace quorvik
{

/** Sets a tool tip that shows its text as it stands, also where the text would pass for markup. Does nothing
 * when the widget shows that text already. */
void SetPlainToolTip(QWidget *widget, const QString &text);

/** Sets what a screen reader says of a widget beside its name. Does nothing when it says that already. */
void SetSpokenText(QWidget *widget, const QString &text);

} // namespace quorvik
