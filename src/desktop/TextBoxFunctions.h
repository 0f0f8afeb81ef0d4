#pragma once

class QLineEdit;

namespace quorvik
{

/** Selects the whole text, so that typing replaces it. */
void SelectAllText(QLineEdit *textBox);

/** Runs SelectAllText() whenever the box gets the focus. */
void SelectAllOnFocus(QLineEdit *textBox);

} // namespace quorvik
