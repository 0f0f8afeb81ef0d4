#pragma once

#include <QColor>
#include <cstdint>

namespace quorvik
{

/** The colour of a stored number 0xBBGGRR. */
QColor ColorOf(std::int32_t blueGreenRed);
/** The stored number of a colour. */
std::int32_t BlueGreenRed(const QColor &color);

/** Two colours mixed; a share of 0 gives the first and of 1 the second. */
QColor Mixed(const QColor &first, const QColor &second, double share);

/** Black or white, whichever contrasts more with a background, by relative luminance. */
QColor ContrastingText(const QColor &background);

} // namespace quorvik
