#pragma once

#include <QColor>
#include <array>
#include <cstdint>

namespace quorvik
{

/** The value boxes' colours by access class, each as 0xBBGGRR. */
struct AccessColors {
    std::array<std::int32_t, 6> DefaultColors{0, 65280, 255, 8355711, 16711680, 8355711};
    /** The sixth entry stays 0 until the colour settings' Default command. */
    std::array<std::int32_t, 6> Colors{};
};

/** The colour of a stored number 0xBBGGRR. */
QColor ColorOf(std::int32_t blueGreenRed);
/** The stored number of a colour. */
std::int32_t BlueGreenRed(const QColor &color);

/** Two colours mixed; a share of 0 gives the first and of 1 the second. */
QColor Mixed(const QColor &first, const QColor &second, double share);

/** Black or white, whichever contrasts more with a background, by relative luminance. */
QColor ContrastingText(const QColor &background);

/** The contrast of two colours by relative luminance, 1 for equal ones to 21 for black and white. */
double Contrast(const QColor &first, const QColor &second);

/** The least contrast at which text of the usual size is read well. */
inline constexpr double LeastContrast = 4.5;

/** Text at half strength: its colour mixed halfway into the background, or as far as it stays readable. */
QColor FaintText(const QColor &background);

} // namespace quorvik
