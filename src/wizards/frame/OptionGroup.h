#pragma once

#include "platform/Guard.h"

#include <QButtonGroup>
#include <QStringList>

namespace quorvik
{

/** A group of option buttons, "Name(0)" and on, of which one or none is chosen. */
class OptionGroup : public QButtonGroup
{
    Q_OBJECT

public:
    OptionGroup(QWidget *parent, const char *name, const QStringList &captions);

    int Chosen() const { return checkedId(); } ///< -1 for none

    /** Chooses an option; an index beyond the group chooses nothing new. */
    void Choose(int index);
    /** Chooses the first option where none is chosen. */
    void ChooseFirst();
    void ClearChoice();
    /** Enables the options from first to last. */
    void Enable(int first, int last, bool enable);

    /** Has a handler of a form called with the index of each option that becomes chosen. */
    template<typename Form> void OnClick(Form *form, void (Form::*handler)(int))
    {
        On(this, &OptionGroup::Click, form, [form, handler](int index) { (form->*handler)(index); });
    }

Q_SIGNALS:
    /** An option became chosen, by the user or by the program. */
    void Click(int index);
};

} // namespace quorvik
