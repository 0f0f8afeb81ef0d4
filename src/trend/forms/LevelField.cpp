#include "trend/forms/LevelField.h"

#include "model/Conversions.h"
#include "model/TextTables.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int Characters = 8;

bool HasTexts(const ParamRecord &record)
{
    return IsEnumerated(TypeCode(record.Attributes));
}

} // namespace

LevelField::LevelField(const QString &name, const QString &spoken, QWidget *parent)
    : QWidget(parent)
    , text_(new QLineEdit(this))
    , list_(new QComboBox(this))
    , unit_(new QLabel(this))
{
    setObjectName(name + QStringLiteral("Field"));
    unit_->setObjectName(name + QStringLiteral("Unit"));
    text_->setObjectName(name);
    text_->setAccessibleName(spoken);
    text_->setMinimumWidth(Characters * fontMetrics().averageCharWidth());
    text_->setMaximumWidth(2 * Characters * fontMetrics().averageCharWidth());
    list_->setObjectName(name + QStringLiteral("List"));
    list_->setAccessibleName(spoken);
    list_->hide();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(text_, 1);
    layout->addWidget(list_, 1);
    layout->addWidget(unit_);
    setFocusProxy(text_);
    On(text_, &QLineEdit::textEdited, this, [this] { Q_EMIT Edited(); });
    On(list_, &QComboBox::activated, this, [this] { Q_EMIT Edited(); });
}

void LevelField::SetRecord(const ParamRecord &record, bool isDistance)
{
    record_ = record;
    isDistance_ = isDistance;
    const bool isList = HasTexts(record);
    text_->setVisible(!isList);
    list_->setVisible(isList);
    unit_->setText(isList ? QString() : UnitText(record.Attributes));
    setFocusProxy(isList ? static_cast<QWidget *>(list_) : text_);
    list_->clear();
    const QStringList texts = TextsOf(TypeCode(record.Attributes));
    for (int option = std::max(record.Min, 0); isList && option < texts.size() && option <= record.Max;
         ++option)
        list_->addItem(texts[option], option);
    text_->setToolTip(LimitsSentence());
}

QString LevelField::LimitsSentence() const
{
    if (isDistance_)
        return QStringLiteral("0 %1 or more").arg(UnitText(record_.Attributes)).simplified();
    return LimitsText(record_);
}

void LevelField::SetRaw(std::int32_t rawValue)
{
    text_->setText(NumberText(rawValue, record_.Attributes));
    list_->setCurrentIndex(std::max(list_->findData(rawValue), 0));
}

std::optional<std::int32_t> LevelField::Raw() const
{
    if (HasTexts(record_))
        return list_->currentIndex() < 0 ? std::nullopt : std::optional(list_->currentData().toInt());
    try {
        const std::int32_t raw = EntryToRaw(text_->text().trimmed(), record_.Attributes);
        const bool isWithin = isDistance_ ? raw >= 0 : raw >= record_.Min && raw <= record_.Max;
        return isWithin ? std::optional(raw) : std::nullopt;
    } catch (const RuntimeFailure &) {
        // No number, or one that no raw value can hold.
        return std::nullopt;
    }
}

} // namespace quorvik
