#include "desktop/FormsCollection.h"

namespace quorvik
{

void FormsCollection::Add(QWidget *form)
{
    forms_.append(form);
    connect(form, &QObject::destroyed, this, [this, form] { Remove(form); });
}

void FormsCollection::Remove(QWidget *form)
{
    forms_.removeOne(form);
}

int FormsCollection::FindOpenBlock(const QString &caption) const
{
    int found = 0;
    for (int position = 1; position < Count(); ++position)
        if (At(position)->windowTitle() == caption)
            found = position;
    return found;
}

} // namespace quorvik
