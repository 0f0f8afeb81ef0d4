#include "trend/forms/GainFields.h"

#include "desktop/BoxColors.h"
#include "desktop/Desk.h"
#include "desktop/Form.h"
#include "desktop/LongestText.h"
#include "desktop/PlainText.h"
#include "desktop/ValueBox.h"
#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "operations/EntryRules.h"
#include "platform/Guard.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>

namespace quorvik
{

namespace
{

struct GainEffect {
    int param;
    const char *sentence;
};

constexpr GainEffect Effects[] = {
    {Param::PropGainA, "More: a shorter rise, too much: it hunts"},
    {Param::PropGainB, "More: a shorter rise, too much: it hunts"},
    {Param::IntegralTimeA, "Shorter: no error sooner, more overshoot"},
    {Param::IntegralTimeB, "Shorter: no error sooner, more overshoot"},
    {Param::OvershootGainA, "More: less overshoot, a softer start"},
    {Param::OvershootGainB, "More: less overshoot, a softer start"},
    {Param::IProportionalGain, "More: a faster rise, too much: it is rough"},
    {Param::IIntegralTime, "Shorter: no error sooner, more overshoot"},
};

QString EffectOf(int p)
{
    const auto *const found = std::ranges::find(Effects, p, &GainEffect::param);
    return found == std::end(Effects) ? QString() : QString::fromLatin1(found->sentence);
}

} // namespace

GainFields::GainFields(Desk &desk, QWidget *parent)
    : QWidget(parent)
    , desk_(desk)
{
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->setVerticalSpacing(2);
    layout->setColumnStretch(0, 1);
    for (int i = 0; i < Most; ++i) {
        Row row{.caption = new QLabel(this),
                .box = new ValueBox(ControlName("TextGain", i), this),
                .effect = new QLabel(this)};
        row.caption->setObjectName(ControlName("LabelGain", i));
        row.caption->setTextFormat(Qt::PlainText);
        row.effect->setObjectName(ControlName("LabelEffect", i));
        row.effect->setTextFormat(Qt::PlainText);
        row.effect->setWordWrap(true);
        QFont small = row.effect->font();
        small.setItalic(true);
        row.effect->setFont(small);
        layout->addWidget(row.caption, 2 * i, 0);
        layout->addWidget(row.box, 2 * i, 1);
        layout->addWidget(row.effect, 2 * i + 1, 0, 1, 2);
        rows_.push_back(row);
        On(row.box, &ValueBox::clicked, this, [this, i] { Text1_Click(std::size_t(i)); });
        row.box->SetDescription([this, i] {
            const int p = rows_[std::size_t(i)].param;
            return p < 0 ? QString() : desk_.states.Describe(p);
        });
    }
}

void GainFields::Show(const std::vector<int> &params)
{
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        Row &row = rows_[i];
        const int p = i < params.size() && params[i] <= desk_.table.LastParam ? params[i] : -1;
        if (p == row.param && p >= 0)
            continue;
        row.param = p;
        for (QWidget *control : {static_cast<QWidget *>(row.caption), static_cast<QWidget *>(row.box),
                                 static_cast<QWidget *>(row.effect)})
            control->setVisible(p >= 0);
        if (p < 0)
            continue;
        row.caption->setText(desk_.table.FullName(p));
        row.box->setAccessibleName(desk_.table.FullName(p));
        row.box->setMinimumWidth(row.box->WidthFor(LongestValueText(desk_.table, p)));
        row.effect->setText(EffectOf(p));
    }
    Tick();
}

void GainFields::Tick()
{
    for (Row &row : rows_)
        if (row.param >= 0)
            PaintRow(row);
}

void GainFields::PaintRow(Row &row)
{
    const ParameterTable &table = desk_.table;
    const ParamRecord &record = table[row.param];
    const int accessClass = table.AccessClass(row.param);
    const QString access = table.AccessDescription(row.param, accessClass);
    const ValueState state = desk_.states.Of(row.param);
    row.box->SetText(ValueText(record.Value, record.Attributes));
    row.box->SetState(state);
    row.box->SetEditable(accessClass == Access::ReadWrite || accessClass == Access::IcrReadWrite);
    row.box->SetBackColor(ColorOf(desk_.colors.Colors.at(std::size_t(accessClass))));
    SetPlainToolTip(row.box, access);
    SetSpokenText(row.box, QStringList{row.box->text(), NameOf(state), access}.join(QStringLiteral(", ")));
}

void GainFields::Text1_Click(std::size_t index)
{
    const int p = rows_[index].param;
    if (p < 0)
        return;
    desk_.rules.EditParameter(desk_.table.AccessClass(p), p);
    // Only now, for the dialog tells of a refusal.
    desk_.states.Touch(p);
    Tick();
}

} // namespace quorvik
