#pragma once

#include "circuit/Net.h"

#include <QPointF>
#include <QPolygonF>
#include <optional>

namespace quorvik
{

struct Element;

/**
 * What a shape shows of the values around it. Places are fractions of its box, x to the right and y
 * downwards, rounded to what can be seen, so that a look that compares equal need not be painted again.
 */
struct ShapeLook {
    QPolygonF line = {};               ///< of a curve: its characteristic
    QPointF origin = {};               ///< of a curve: where its axes cross
    std::optional<QPointF> point = {}; ///< the working point
    std::optional<double> full = {};   ///< of what counts up to a level: how far it is, from 0 to 1
    bool isActive = false;  ///< it limits, ramps, suppresses, stands at its clamp, or its relation holds
    bool isFlipped = false; ///< of a hysteresis that is on below its band

    bool operator==(const ShapeLook &other) const = default;
};

/** The look of an element at the values of its net; nothing of one that shows none. */
std::optional<ShapeLook> LookOf(const Element &element, const Net &net, const NetValues &values);

} // namespace quorvik
