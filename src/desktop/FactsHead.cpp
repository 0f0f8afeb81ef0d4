#include "desktop/FactsHead.h"

#include "desktop/Desk.h"
#include "model/ParameterTable.h"

#include <QHBoxLayout>
#include <QLabel>

namespace quorvik
{

namespace
{

/** So many average letters a line is wide before it wraps. */
constexpr int LettersOfLine = 56;

} // namespace

FactsHead::FactsHead(const Desk &desk, int p, QWidget *parent)
    : QWidget(parent)
    , facts_(desk, p)
    , labelValues_(MakeLabel("LabelValues", facts_.Values()))
    , labelLimits_(MakeLabel("LabelLimits", facts_.Limits()))
{
    auto *parameter = MakeLabel("LabelParameter", desk.table.FullName(p));
    QFont bold = parameter->font();
    bold.setBold(true);
    parameter->setFont(bold);
    auto *block = MakeLabel("LabelBlock", facts_.Block());
    auto *firstLine = new QHBoxLayout;
    firstLine->addWidget(parameter);
    firstLine->addStretch();
    firstLine->addSpacing(fontMetrics().height());
    firstLine->addWidget(block);

    for (QLabel *label : {labelValues_, labelLimits_})
        label->setWordWrap(true);
    labelValues_->setMinimumWidth(LettersOfLine * fontMetrics().averageCharWidth());
    auto *lines = new QVBoxLayout(this);
    lines->setContentsMargins({});
    lines->addLayout(firstLine);
    lines->addWidget(labelValues_);
    lines->addWidget(labelLimits_);
}

QLabel *FactsHead::MakeLabel(const char *name, const QString &text)
{
    auto *label = new QLabel(text, this);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

void FactsHead::Refresh()
{
    labelValues_->setText(facts_.Values());
    labelLimits_->setText(facts_.Limits());
}

} // namespace quorvik
