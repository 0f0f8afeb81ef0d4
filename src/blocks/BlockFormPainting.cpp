// What a block window shows of the table, at its tick and whenever the state of a value changes.

#include "blocks/BlockForm.h"

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
    const bool isLinked = rows_.last().IsLinked();
    if (isLinked)
        SetRowParam(LinkedRow, desk().table.Value(rows_.first().param));
    for (Row &row : rows_)
        PaintRow(row);
    if (isLinked)
        PaintLinkedCaption();
    for (const GuardedArea &guarded : areas_)
        guarded.area->SetRefused(!MayWrite(guarded.rows));
    Tick();
}

void BlockForm::PaintRowsOf(int p)
{
    for (Row &row : rows_)
        if (row.param == p)
            PaintRow(row);
}

void BlockForm::PaintRow(Row &row)
{
    if (row.free && !InTable(row.param))
        PaintEmptyRow(row);
    else if (PaintValue(row) && rows_.last().IsLinked() && &row == &rows_.first())
        Text1_Change();
}

bool BlockForm::PaintValue(Row &row)
{
    const ParameterTable &table = desk().table;
    const ParamRecord &record = table[row.param];
    const int accessClass = table.AccessClass(row.param);
    const Shown shown{.param = row.param,
                      .rawValue = record.Value,
                      .attributes = record.Attributes,
                      .accessClass = accessClass,
                      .source =
                          accessClass == Access::LinkedDestination ? table.FindLinkSource(row.param) : 0,
                      .state = desk().states.Of(row.param),
                      .color = desk().colors.Colors.at(std::size_t(accessClass))};
    // Most values stand still, and there are hundreds of boxes.
    if (shown == row.shown)
        return false;
    const bool changed = row.box->SetText(ValueText(record.Value, record.Attributes));
    SetTag(row.box, QString::number(accessClass));
    const QString access = table.AccessDescription(row.param, accessClass);
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

void BlockForm::PaintEmptyRow(Row &row)
{
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
    const Row &row = rows_.last();
    const QString full = NumberAndName(rows_.first().box->text(), desk().table[row.param].Name);
    SetPlainToolTip(row.label, full);
    row.label->setText(Shortened(full, LinkedCaptionLength));
}

void BlockForm::Text1_Change()
{
    const int selected = desk().table.Value(rows_.first().param);
    // A number outside the table fails here, before any count has moved.
    static_cast<void>(desk().table[selected]);
    if (trackedParam_ >= 0)
        desk().table.RemoveReadInterest(trackedParam_);
    trackedParam_ = -1;
    desk().table.AddReadInterest(selected);
    trackedParam_ = selected;
}

} // namespace quorvik
