#include "wizards/frame/OptionGroup.h"

#include "desktop/Form.h"

#include <QRadioButton>

namespace quorvik
{

OptionGroup::OptionGroup(QWidget *parent, const char *name, const QStringList &captions)
    : QButtonGroup(parent)
{
    for (int i = 0; i < captions.size(); ++i) {
        auto *option = new QRadioButton(captions.at(i), parent);
        option->setObjectName(ControlName(name, i));
        addButton(option, i);
    }
    connect(this, &QButtonGroup::idToggled, this, [this](int index, bool chosen) {
        if (chosen)
            Q_EMIT Click(index);
    });
}

void OptionGroup::Choose(int index)
{
    if (QAbstractButton *option = button(index))
        option->setChecked(true);
}

void OptionGroup::ChooseFirst()
{
    if (Chosen() < 0)
        Choose(0);
}

void OptionGroup::ClearChoice()
{
    setExclusive(false);
    for (QAbstractButton *option : buttons())
        option->setChecked(false);
    setExclusive(true);
}

void OptionGroup::Enable(int first, int last, bool enable)
{
    for (int i = first; i <= last; ++i)
        button(i)->setEnabled(enable);
}

} // namespace quorvik
