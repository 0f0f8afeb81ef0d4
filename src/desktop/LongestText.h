#pragma once

#include <QString>

class QFontMetrics;

namespace quorvik
{

class Model;

/** The longest text that a parameter can show within its present and its factory limits. */
QString LongestValueText(const Model &model, int p);

/** The widest of these over the whole table: what a row needs that can show any parameter. */
QString LongestValueTextOfAll(const Model &model, const QFontMetrics &metrics);

} // namespace quorvik
