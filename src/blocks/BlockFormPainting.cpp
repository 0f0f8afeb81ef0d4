// What a block window shows of the table, at its tick and whenever the state of a value changes.

#include "blocks/BlockForm.h"

#include "blocks/SignalFollower.h"
#include "desktop/BoxColors.h"
#include "desktop/PlainText.h"
#include "desktop/ValueBox.h"
#include "model/Conversions.h"

#include <QLabel>

namespace quorvik
{

namespace
{

constexpr int LinkedCaptionLength = 10;

} // namespace

void BlockForm::TimerUpdateScreen_Timer()
{
    const bool isLinked = !boxes_.isEmpty() && sheet_->Rows().last().IsLinked();
    if (isLinked)
        SetRowParam(LinkedRow, desk().table.Value(sheet_->Rows().first().param));
    for (int i = 0; i < boxes_.size(); ++i)
        PaintRow(i);
    if (isLinked)
        PaintLinkedCaption();
    for (const GuardedArea &guarded : areas_)
        guarded.area->SetRefused(!MayWrite(guarded.rows));
    Tick();
    sheet_->Follow();
    follower_->Tick();
}

void BlockForm::PaintRowsOf(int p)
{
    for (int i = 0; i < boxes_.size(); ++i)
        if (SheetRowAt(i).param == p)
            PaintRow(i);
}

void BlockForm::PaintRow(int index)
{
    const SheetRow &row = SheetRowAt(index);
    if (row.isFree && !InTable(row.param))
        PaintEmptyRow(index);
    else if (PaintValue(index) && sheet_->Rows().last().IsLinked() && index == 0)
        Text1_Change();
}

bool BlockForm::PaintValue(int index)
{
    const int p = SheetRowAt(index).param;
    RowControls &row = boxes_[index];
    const ParameterTable &table = desk().table;
    const ParamRecord &record = table[p];
    const int accessClass = table.AccessClass(p);
    const Shown shown{.param = p,
                      .rawValue = record.Value,
                      .attributes = record.Attributes,
                      .accessClass = accessClass,
                      .source = accessClass == Access::LinkedDestination ? table.FindLinkSource(p) : 0,
                      .state = desk().states.Of(p),
                      .color = desk().colors.Colors.at(std::size_t(accessClass))};
    // Most values stand still, and there are hundreds of boxes.
    if (shown == row.shown)
        return false;
    const bool changed = row.box->SetText(ValueText(record.Value, record.Attributes));
    SetTag(row.box, QString::number(accessClass));
    const QString access = table.AccessDescription(p, accessClass);
    SetPlainToolTip(row.box, access);
    row.box->SetState(shown.state);
    // The name that a screen reader says is the caption's; the value would go unsaid.
    SetSpokenText(row.box,
                  QStringList{row.box->text(), NameOf(shown.state), access}.join(QStringLiteral(", ")));
    row.box->SetEditable(accessClass == Access::ReadWrite || accessClass == Access::IcrReadWrite);
    row.box->SetBackColor(ColorOf(shown.color));
    row.shown = shown;
    return changed;
}

void BlockForm::PaintEmptyRow(int index)
{
    RowControls &row = boxes_[index];
    row.shown = {};
    row.box->SetText({});
    row.box->SetState(ValueState::Set);
    SetTag(row.box, QString::number(Access::Empty));
    SetPlainToolTip(row.box, {});
    SetSpokenText(row.box, {});
    row.box->SetEditable(false);
    row.box->SetBackColor(ColorOf(desk().colors.Colors.at(std::size_t(Access::Empty))));
}

void BlockForm::PaintLinkedCaption()
{
    const RowControls &row = boxes_.last();
    const QString full =
        NumberAndName(boxes_.first().box->text(), desk().table[sheet_->Rows().last().param].Name);
    SetPlainToolTip(row.label, full);
    row.label->setText(Shortened(full, LinkedCaptionLength));
}

void BlockForm::Text1_Change()
{
    trackedParam_.Set({desk().table.Value(sheet_->Rows().first().param)});
}

} // namespace quorvik
