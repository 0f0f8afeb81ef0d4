#pragma once

#include <QString>

class QFontMetrics;

namespace quorvik
{

class ParameterTable;

/** The longest text that a parameter can show within its present and its factory limits. */
QString LongestValueText(const ParameterTable &table, int p);

/** The widest of these over the whole table: what a row needs that can show any parameter. */
QString LongestValueTextOfAll(const ParameterTable &table, const QFontMetrics &metrics);

} // namespace quorvik
