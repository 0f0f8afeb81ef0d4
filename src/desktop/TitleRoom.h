#pragma once

class QString;
class QWidget;

namespace quorvik
{

/** The width in pixels at which a window's frame shows a title whole, beside its icon and its buttons. */
int RoomForTitle(const QWidget &window, const QString &title);

} // namespace quorvik
