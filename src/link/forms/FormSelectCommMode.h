#pragma once

#include "desktop/Form.h"

class QComboBox;
class QRadioButton;

namespace quorvik
{

/** Asks at start-up whether a drive is attached and, where none can be asked, for the drive model. */
class FormSelectCommMode : public DialogForm
{
    Q_OBJECT

public:
    FormSelectCommMode(Desk &desk, QWidget *owner);

    /** Whether the window was left with OK and "&Online". */
    bool OnlineChosen() const;

private:
    void ModeChosen(int index);
    void CommandOK_Click();

    QRadioButton *optionSerialCommMode_[2];
    QWidget *modelRow_;
    QComboBox *comboModels_;
};

} // namespace quorvik
