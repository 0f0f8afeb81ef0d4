#include "ValueLegend.h"

#include "desktop/BoxColors.h"
#include "desktop/ValueBox.h"
#include "model/ParameterTable.h"

#include <QGridLayout>
#include <QLabel>

namespace quorvik
{

namespace
{

struct Sample {
    ValueState state;
    const char *value;
    int accessClass;
    const char *tip;
};

constexpr Sample Samples[] = {
    {ValueState::Live, "12.00 %", Access::ReadWrite, "read 0.4 s ago"},
    {ValueState::Set, "12.00 %", Access::ReadWrite, ""},
    {ValueState::Old, "12.00 %", Access::ReadWrite, "read 41 s ago, not asked for since"},
    {ValueState::Never, "0.00 %", Access::ReadWrite, "not read from this drive yet"},
    {ValueState::Queued, "12.00 %", Access::ReadWrite, "waits to be written: 12.00 %"},
    {ValueState::Refused, "10.00 %", Access::ReadWrite, "the drive refused 12.00 %, it keeps 10.00 %"},
    {ValueState::Emulated, "12.00 %", Access::ReadOnly, "computed by the emulator"},
    {ValueState::Lost, "940 RPM", Access::ReadOnly, "last seen 14:03:12, the drive does not answer"},
};

} // namespace

ValueLegend::ValueLegend(const AccessColors &colors)
{
    setWindowTitle(QStringLiteral("Value States"));
    auto *layout = new QGridLayout(this);
    layout->setHorizontalSpacing(fontMetrics().height());
    for (const Sample &sample : Samples) {
        const int row = layout->rowCount();
        auto *word = new QLabel(NameOf(sample.state), this);
        QFont bold = word->font();
        bold.setBold(true);
        word->setFont(bold);
        auto *box = new ValueBox(QString(), this);
        box->SetBackColor(ColorOf(colors.Colors.at(std::size_t(sample.accessClass))));
        box->SetText(QString::fromLatin1(sample.value));
        box->SetState(sample.state);
        // Its ring would pass for a mark.
        box->setFocusPolicy(Qt::NoFocus);
        box->setMinimumWidth(box->WidthFor(QStringLiteral("-100.00 %")) * 4 / 3);
        layout->addWidget(word, row, 0);
        layout->addWidget(box, row, 1);
        layout->addWidget(new QLabel(QString::fromLatin1(sample.tip), this), row, 2);
    }
}

} // namespace quorvik
