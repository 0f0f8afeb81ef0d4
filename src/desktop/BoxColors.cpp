#include "desktop/BoxColors.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

double Luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

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
    return Contrast(Qt::black, background) > Contrast(Qt::white, background) ? QColor(Qt::black)
                                                                             : QColor(Qt::white);
}

double Contrast(const QColor &first, const QColor &second)
{
    const auto [darker, lighter] = std::minmax({Luminance(first), Luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor FaintText(const QColor &background)
{
    // Whatever the background, black or white alone contrasts enough.
    const QColor ink = ContrastingText(background);
    constexpr int Half = 32;
    for (int part = Half; part > 0; --part) {
        const QColor faint = Mixed(ink, background, 0.5 * part / Half);
        if (Contrast(faint, background) >= LeastContrast)
            return faint;
    }
    return ink;
}

} // namespace quorvik
