#pragma once

#include <QStringList>
#include <cstdint>

namespace quorvik
{

/** The items of a list of drive models: the ten non-regenerative ones, then the ten regenerative ones, each
 * as "SVN020-000 (36 Amps)". */
QStringList ModelListItems();

/**
 * Which item stands for a model: the first for an undefined one, and for a model that the list does not
 * offer.
 * @param modelCode 0 to 32; any other raises RuntimeFailure.
 */
int ModelListIndex(std::int32_t modelCode);

/** The lowest model code whose text an item begins with, 0 to 32. An item of another make raises
 * RuntimeFailure. */
std::int32_t ModelOfListItem(const QString &item);

} // namespace quorvik
