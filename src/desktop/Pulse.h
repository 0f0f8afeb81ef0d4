#pragma once

#include <functional>

class QObject;

namespace quorvik
{

/** Draws the eye to something: tells a strength that falls from 1 to 0 in a second and a half, while the
 * owner is there. */
void Pulse(QObject *owner, std::function<void(double strength)> show);

} // namespace quorvik
