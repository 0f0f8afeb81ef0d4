#pragma once

#include <QString>
#include <QStringList>

namespace quorvik
{

/**
 * The first line of text: the text whole where it is not longer than width, else what stands before the last
 * blank within width.
 *
 * It does not return for a longer text whose last blank lies within width, and raises RuntimeFailure for one
 * whose first blank lies beyond it. WrapNotes() is the way to call it.
 */
QString LineWrap(const QString &text, int width);

/**
 * Any text in lines of at most width characters, in the order in which they are printed; at least one line.
 * The text's own line breaks are kept, and a word that fits no line is broken.
 * @param width 3 or more, or a character of two units with its blank would not fit.
 */
QStringList WrapNotes(const QString &text, int width);

} // namespace quorvik
