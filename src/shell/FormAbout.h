#pragma once

#include "desktop/Form.h"

namespace quorvik
{

/** "About Quorvik": the program's identity. */
class FormAbout : public DialogForm
{
    Q_OBJECT

public:
    FormAbout(Desk &desk, QWidget *owner);

private:
    void StartSysInfo();
};

} // namespace quorvik
