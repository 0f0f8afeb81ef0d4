#include "desktop/BoxColors.h"

#include <cmath>

namespace quorvik
{

QColor ColorOf(std::int32_t blueGreenRed)
{
    return QColor(blueGreenRed & 0xFF, (blueGreenRed >> 8) & 0xFF, (blueGreenRed >> 16) & 0xFF);
}

std::int32_t BlueGreenRed(const QColor &color)
{
    return color.blue() << 16 | color.green() << 8 | color.red();
}

QColor Mixed(const QColor &first, const QColor &second, double share)
{
    const auto mix = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return QColor(mix(first.red(), second.red()), mix(first.green(), second.green()),
                  mix(first.blue(), second.blue()));
}

QColor ContrastingText(const QColor &background)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const double luminance = 0.2126 * linear(background.redF()) + 0.7152 * linear(background.greenF()) +
                             0.0722 * linear(background.blueF());
    // Contrast with white is 1.05 / (l + 0.05), with black (l + 0.05) / 0.05.
    return (luminance + 0.05) * (luminance + 0.05) > 1.05 * 0.05 ? QColor(Qt::black) : QColor(Qt::white);
}

} // namespace quorvik
