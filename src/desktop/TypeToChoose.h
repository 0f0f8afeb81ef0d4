#pragma once

class QComboBox;

namespace quorvik
{

/**
 * Makes typing in a list of numbered items choose the item whose number was typed, or else the first that
 * begins so; where none does, what was chosen before the typing stands again. Gives the box a view of its
 * own, which is fit for thousands of items.
 */
void TypeToChoose(QComboBox *list);

} // namespace quorvik
