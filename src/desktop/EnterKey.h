#pragma once

class QWidget;

namespace quorvik
{

/**
 * Makes Enter do the same on every desktop, whichever keys its theme gives to buttons: on a push button it
 * presses that button; on an option, a check box or a list it presses the window's default button, where
 * there is one. Other controls keep their own Enter. Reaches the controls that the window has when it is
 * shown.
 */
void MakeEnterPressButtons(QWidget *window);

} // namespace quorvik
