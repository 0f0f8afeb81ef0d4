#include "wizards/frame/OptionGroup.h"

#include "desktop/Form.h"

namespace quorvik
{

OptionGroup::OptionGroup(QWidget *parent, const char *name, const QStringList &captions)
    : QObject(parent)
    , group_(new QButtonGroup(this))
{
    for (int i = 0; i < captions.size(); ++i) {
        auto *option = new QRadioButton(captions.at(i), parent);
        option->setObjectName(ControlName(name, i));
        group_->addButton(option, i);
        options_.append(option);
        connect(option, &QRadioButton::toggled, this, [this, i](bool chosen) {
            if (chosen)
                Q_EMIT Click(i);
        });
    }
}

void OptionGroup::Choose(int index)
{
    if (index >= 0 && index < Count())
        options_.at(index)->setChecked(true);
}

void OptionGroup::ChooseFirst()
{
    if (Chosen() < 0)
        Choose(0);
}

void OptionGroup::ClearChoice()
{
    group_->setExclusive(false);
    for (QRadioButton *option : std::as_const(options_))
        option->setChecked(false);
    group_->setExclusive(true);
}

void OptionGroup::Enable(int first, int last, bool enable)
{
    for (int i = first; i <= last; ++i)
        options_.at(i)->setEnabled(enable);
}

} // namespace quorvik
