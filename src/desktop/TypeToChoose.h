#pragma once

#include <QList>

class QAbstractButton;
class QComboBox;

namespace quorvik
{

/**
 * Makes typing in a list of numbered items choose the item whose number was typed, or else the first whose
 * number or name begins so; where none does, what was chosen before the typing stands again. Gives the box a
 * view of its own, which is fit for thousands of items.
 */
void TypeToChoose(QComboBox *list);

/** Makes typing the first letters of an option choose it; the same letter again goes on to the next one that
 * begins with it. Options that are hidden are left out. */
void TypeToChoose(const QList<QAbstractButton *> &options);

} // namespace quorvik
