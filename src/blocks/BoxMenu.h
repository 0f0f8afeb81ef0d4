#pragma once

#include <functional>

class QMenu;
class QWidget;

namespace quorvik
{

struct Desk;

/**
 * The context menu of a value box, of a wire that carries a parameter's value, or of its row on the map:
 * where the value comes from and what it feeds, with windows to go to, and what else can be done with the
 * parameter. It deletes itself once it is closed.
 * @param p a parameter of the table.
 * @param lightPath lights the path of the box; empty where a menu has no such entry.
 */
QMenu *MakeBoxMenu(Desk &desk, int p, QWidget *box, const std::function<void()> &lightPath);

} // namespace quorvik
