#include "wizards/basic/BasicRows.h"

#include "desktop/Form.h"
#include "model/Conversions.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"
#include "wizards/frame/EntryBox.h"
#include "wizards/frame/WizardPage.h"

#include <QGridLayout>
#include <QLabel>

namespace quorvik
{

void EntryRow::Enable(bool enable) const
{
    label->setEnabled(enable);
    box->setEnabled(enable);
    unit->setEnabled(enable);
}

BasicRows::BasicRows(BasicSetup &setup)
    : setup_(setup)
{
}

void BasicRows::Make(QWidget *parent, QGridLayout *grid, int row, Entry entry, int column)
{
    const EntryInfo &info = BasicSetup::Info(entry);
    EntryRow &made = rows_[std::size_t(entry)];
    const QString caption = QString::fromLatin1(info.caption);
    made.label = MakeLabel(parent, caption, info.NameOf("Label"));
    made.box = new EntryBox(parent, info.NameOf("Text"), info.maxLength);
    made.box->setText(setup_.Text(entry));
    made.box->setAccessibleName(caption);
    made.unit = MakeLabel(parent, QString::fromLatin1(info.unit),
                          info.unitLabel == nullptr ? info.NameOf("Label", "Units")
                                                    : ControlName(info.unitLabel, info.index));
    grid->addWidget(made.label, row, column);
    grid->addWidget(made.box, row, column + 1);
    grid->addWidget(made.unit, row, column + 2);

    On(made.box, &EntryBox::textChanged, this, [this, entry](const QString &text) {
        setup_.SetText(entry, text);
        Q_EMIT Changed(entry);
    });
    On(made.box, &EntryBox::Entered, this, [this, entry] { Q_EMIT Entered(entry); });
    On(made.box, &EntryBox::Left, this, [this, entry] { Reformat(entry); });
}

void BasicRows::Enable(Entry first, int count, bool enable)
{
    for (int i = 0; i < count; ++i)
        At(EntryAt(first, i)).Enable(enable);
}

void BasicRows::SetText(Entry entry, const QString &text)
{
    At(entry).box->setText(text);
}

void BasicRows::Reformat(Entry entry)
{
    const EntryInfo &info = BasicSetup::Info(entry);
    const QString &text = setup_.Text(entry);
    if (*info.preset != 0 && IsNumeric(text))
        SetText(entry, FormatEntry(text, setup_.Table()[info.param].Attributes));
}

} // namespace quorvik
