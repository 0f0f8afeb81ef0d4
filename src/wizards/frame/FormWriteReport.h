#pragma once

#include "desktop/Form.h"

namespace quorvik
{

class WriteWatch;

/**
 * Tells what became of a Mentor's writes where not all of them have reached the drive. Stands beside the
 * other windows and keeps none of them from being used.
 */
class FormWriteReport : public DialogForm
{
    Q_OBJECT

public:
    /** @param helpTopic of the Mentor's last page. */
    FormWriteReport(Desk &desk, QWidget *owner, const QString &helpTopic, const WriteWatch &watch);
};

} // namespace quorvik
