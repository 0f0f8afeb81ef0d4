#include "desktop/FactsHead.h"

#include "desktop/Desk.h"
#include "model/ParameterTable.h"

#include <QHBoxLayout>
#include <QLabel>

namespace quorvik
{

namespace
{

/** What a line holds before it wraps. */
const QString &UsualLine()
{
    static const QString line =
        QStringLiteral("now -100.00 % (read 9.9 s ago), factory 0.00, in the file 0.00");
    return line;
}

} // namespace

FactsHead::FactsHead(const Desk &desk, int p, QWidget *parent)
    : QWidget(parent)
    , facts_(desk, p)
{
    auto *parameter = MakeLabel("LabelParameter", desk.table.FullName(p));
    QFont bold = parameter->font();
    bold.setBold(true);
    parameter->setFont(bold);
    auto *block = MakeLabel("LabelBlock", facts_.Block());
    labelValues_ = MakeLabel("LabelValues", facts_.Values());
    labelLimits_ = MakeLabel("LabelLimits", facts_.Limits());
    auto *firstLine = new QHBoxLayout;
    firstLine->addWidget(parameter);
    firstLine->addStretch();
    firstLine->addSpacing(fontMetrics().height());
    firstLine->addWidget(block);

    for (QLabel *label : {labelValues_, labelLimits_})
        label->setWordWrap(true);
    labelValues_->setMinimumWidth(fontMetrics().horizontalAdvance(UsualLine()));
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
