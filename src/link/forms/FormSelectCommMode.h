#pragma once

#include "desktop/Form.h"
#include "platform/Ports.h"

class QComboBox;
class QRadioButton;

namespace quorvik
{

class DriveLink;
class PortList;

/** Asks at start-up whether a drive is attached, and on which port; where none can be asked, for the drive
 * model.
 */
class FormSelectCommMode : public DialogForm
{
    Q_OBJECT

public:
    /** @param present the devices of this computer. */
    FormSelectCommMode(Desk &desk, QWidget *owner, DriveLink &link, Ports::Source present = &Ports::Present);

    void done(int result) override;

    /** Whether the window was left with OK and "&Online". */
    bool OnlineChosen() const;

private:
    void ModeChosen(int index);
    void CommandOK_Click();

    DriveLink &link_;
    Ports ports_;
    PortList *portList_;
    QRadioButton *optionSerialCommMode_[2];
    QWidget *modelRow_;
    QComboBox *comboModels_;
};

} // namespace quorvik
