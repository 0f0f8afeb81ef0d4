#pragma once

#include <QString>
#include <functional>

namespace quorvik
{

class ParameterTable;

/** The longest text that a parameter can show within its present and its factory limits. */
QString LongestValueText(const ParameterTable &table, int p);

/** The widest of these over the whole table: what a row needs that can show any parameter.
 * @param widthOf tells the width of a text in any unit. */
QString LongestValueTextOfAll(const ParameterTable &table,
                              const std::function<double(const QString &)> &widthOf);

} // namespace quorvik
