#pragma once

#include "desktop/Form.h"
#include "history/JournalReader.h"

class QComboBox;
class QDateTimeEdit;

namespace quorvik
{

/** "State at This Time": asks for which drive and which moment. */
class FormStateAt : public DialogForm
{
    Q_OBJECT

public:
    /** @param drives at least one. @param action where drive and moment stand first. */
    FormStateAt(Desk &desk, QWidget *owner, std::vector<JournalSighting> drives, const ShownAction *action);

    const JournalSighting &Drive() const;
    /** The last millisecond of the chosen second: what was changed in it is in. */
    qint64 UtcMs() const;

private:
    /** Of the drive that an action was with; the first where it was with none. */
    int IndexOf(const ShownAction *action) const;

    std::vector<JournalSighting> drives_;
    QComboBox *comboDrive_;
    QDateTimeEdit *editMoment_;
};

} // namespace quorvik
