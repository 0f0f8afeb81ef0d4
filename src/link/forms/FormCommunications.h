#pragma once

#include "desktop/Form.h"
#include "platform/Ports.h"

#include <QTimer>

class QComboBox;
class QLabel;

namespace quorvik
{

class DriveLink;
class PortList;

/**
 * Picks the serial port by number, or from the list of what is there, and the device that a number stands
 * for. However the window closes, the choice holds. On line it only shows what is in use.
 */
class FormCommunications : public DialogForm
{
    Q_OBJECT

public:
    /** @param present the devices of this computer. */
    FormCommunications(Desk &desk, QWidget *owner, DriveLink &link, Ports::Source present = &Ports::Present);

    void done(int result) override;

private:
    void FillDevices();
    void ShowDevice();
    void ShowPluggedIn();
    void KeepDevice();
    int Number() const; ///< 1 to 16, or 0 when none is chosen

    DriveLink &link_;
    Ports ports_;
    int shownNumber_ = 0; ///< the port whose device is shown
    QComboBox *comboCommPort_;
    QComboBox *comboDevice_;
    QLabel *labelPluggedIn_;
    PortList *portList_;
    QTimer timerUpdateScreen_;
};

} // namespace quorvik
