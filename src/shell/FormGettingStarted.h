#pragma once

#include "desktop/Form.h"

namespace quorvik
{

/** "Getting Started": greets the user at start-up. */
class FormGettingStarted : public Form
{
    Q_OBJECT

public:
    /**
     * Opens centred on the main window, which owns it.
     * @param showTips the check mark of "Show Tips on Startup".
     */
    FormGettingStarted(Desk &desk, QWidget *mainWindow, bool showTips);

Q_SIGNALS:
    /** The box was clicked: the menu's check mark is to follow. */
    void ShowTipsChanged(bool showTips);
};

} // namespace quorvik
