#pragma once

#include "desktop/Form.h"

namespace quorvik
{

class Progress;

/** Shows an operation under way and ends with it. Cancel, Escape and the window's frame cancel it. */
class FormProgressBar : public DialogForm
{
    Q_OBJECT

public:
    FormProgressBar(Desk &desk, QWidget *owner, Progress &progress);

    void reject() override;

private:
    Progress &progress_;
};

} // namespace quorvik
