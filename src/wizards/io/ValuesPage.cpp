#include "wizards/io/ValuesPage.h"

#include "desktop/Form.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"
#include "wizards/frame/EntryBox.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

QString Named(const char *kind, const QString &infix, const char *ending, int index)
{
    const QString name = QString::fromLatin1(kind) + infix + QString::fromLatin1(ending);
    return QStringLiteral("%1(%2)").arg(name).arg(index);
}

} // namespace

ValuesPage::ValuesPage(QWidget *parent, WizardPicture *picture, const QString &infix, int rangeIndex,
                       ValuePair &values)
    : WizardPage(parent, picture)
    , values_(values)
    , intro_(AddHeading({}, QStringLiteral("Label") + infix + QStringLiteral("Intro")))
{
    MakeValue(infix, 0);
    MakeValue(infix, 1);
    range_ = AddText({}, Named("Label", infix, "", rangeIndex));
    CloseContent();
}

void ValuesPage::MakeValue(const QString &infix, int index)
{
    constexpr int textLength = 7;
    ValueRow &row = rows_[std::size_t(index)];
    row.instruction = AddText({}, Named("Label", infix, "Instr", index));
    auto *line = new QHBoxLayout;
    row.caption = MakeLabel(this, {}, Named("Label", infix, "", index));
    row.caption->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Closed Value")) +
                                 fontMetrics().height());
    row.text = new EntryBox(this, Named("Text", infix, "", index), textLength);
    row.combo = new QComboBox(this);
    row.combo->setObjectName(Named("Combo", infix, "", index));
    row.combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    row.combo->setMinimumContentsLength(8);
    row.combo->hide();
    row.unit = MakeLabel(this, {}, Named("Label", infix, "Units", index));
    line->addWidget(row.caption);
    line->addWidget(row.text);
    line->addWidget(row.combo);
    line->addWidget(row.unit);
    line->addStretch(1);
    Content()->addLayout(line);

    const auto place = std::size_t(index);
    On(row.text, &EntryBox::textChanged, this, [this, place](const QString &text) {
        values_.texts[place] = text;
        Picture()->update();
    });
    On(row.text, &EntryBox::Left, this, [this, index] { TextBiasGain_LostFocus(index); });
    On(row.combo, &QComboBox::currentIndexChanged, this, [this, place](int pick) {
        values_.picks[place] = pick;
        Picture()->update();
    });
}

void ValuesPage::Show(const ValuesView &view)
{
    intro_->setText(view.intro);
    range_->setText(view.range);
    const bool listed = view.IsListed();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const ValueRow &row = rows_[i];
        const bool shown = i > 0 || view.hasFirst;
        row.instruction->setText(view.instructions[i]);
        row.instruction->setVisible(shown);
        row.caption->setText(view.captions[i]);
        row.caption->setVisible(shown);
        row.text->setAccessibleName(view.captions[i]);
        row.text->setVisible(shown && !listed);
        row.combo->setAccessibleName(view.captions[i]);
        row.combo->setVisible(shown && listed);
        row.unit->setText(view.unit);
        row.unit->setVisible(shown);
        if (listed) {
            row.combo->clear();
            row.combo->addItems(view.items);
            row.combo->setCurrentIndex(NoChoice);
        }
    }
    Picture()->update();
}

void ValuesPage::TextBiasGain_LostFocus(int index)
{
    EntryBox *box = rows_[std::size_t(index)].text;
    if (Reformat && IsNumeric(box->text()))
        box->setText(Reformat(box->text()));
}

} // namespace quorvik
