#include "trend/forms/PlotColours.h"

#include "desktop/BoxColors.h"

#include <array>

namespace quorvik
{

namespace
{

using Colours = std::array<QRgb, PlotColourCount>;

// Chosen for the greatest difference of any two to people who see no red or no green. A curve keeps its hue
// when the desktop turns dark.
constexpr Colours OnLight = {0x1E7AD2, 0xD55E00, 0x663C96, 0x669420, 0x291D30, 0x1D94AA, 0x7D2309, 0x4B7E74};
constexpr Colours OnDark = {0x58C0FD, 0xF27908, 0xA97FB8, 0x8FE7A8, 0xE8FDFF, 0x2083FF, 0xC76545, 0xFFFF1F};

constexpr double MixStep = 0.1;
constexpr double OverlayShare = 0.35;

bool IsLight(const QColor &ground)
{
    return ContrastingText(ground) == QColor(Qt::black);
}

} // namespace

QColor PlotColour(int colour, const QColor &ground)
{
    const Colours &colours = IsLight(ground) ? OnLight : OnDark;
    const QColor chosen(colours[std::size_t(colour % PlotColourCount)]);
    QColor result = chosen;
    // On a ground that is neither light nor dark.
    for (double share = MixStep; share < 1 && Contrast(result, ground) < LeastCurveContrast; share += MixStep)
        result = Mixed(chosen, ContrastingText(ground), share);
    return result;
}

QPen PlotPen(int colour, const QColor &ground)
{
    QPen pen(PlotColour(colour, ground), 0);
    switch (colour / PlotColourCount) {
    case 0:
        break;
    case 1:
        pen.setDashPattern({10, 4});
        break;
    case 2:
        pen.setDashPattern({10, 4, 2, 4});
        break;
    default:
        pen.setDashPattern({6, 3, 2, 3, 2, 3});
        break;
    }
    return pen;
}

QPen PlotOverlayPen(int colour, const QColor &ground)
{
    QPen pen(Mixed(PlotColour(colour, ground), ground, OverlayShare), 0);
    pen.setDashPattern({4, 3});
    return pen;
}

} // namespace quorvik
