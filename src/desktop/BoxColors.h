#pragma once

#include <QColor>
#include <cstdint>

namespace quorvik
{

/** The colour of a stored number 0xBBGGRR. */
QColor ColorOf(std::int32_t blueGreenRed);
/** The stored number of a colour. */
std::int32_t BlueGreenRed(const QColor &color);

/** Black or white, whichever contrasts more with a background, by relative luminance. */
QColor ContrastingText(const QColor &background);

} // namespace quorvik
