#pragma once

#include "desktop/Form.h"

class QComboBox;

namespace quorvik
{

/** "Select Drive Model": puts a drive model into the table while no drive tells its own. */
class FormSelectDriveModel : public DialogForm
{
    Q_OBJECT

public:
    FormSelectDriveModel(Desk &desk, QWidget *owner);

private:
    void CommandOK_Click();

    QComboBox *comboModels_;
};

} // namespace quorvik
