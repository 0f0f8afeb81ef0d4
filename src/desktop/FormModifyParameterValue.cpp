#include "desktop/FormModifyParameterValue.h"

#include "desktop/TextBoxFunctions.h"
#include "desktop/TitleRoom.h"
#include "desktop/TypeToChoose.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "operations/EntryRules.h"
#include "platform/Arithmetic.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

namespace quorvik
{

namespace
{

enum TextRow { MaxRow, MinRow, NewRow };

constexpr int StopModeType = 21;
constexpr int QuickStop = 1;
/** From this code on the models cannot regenerate and have no quick stop. */
constexpr int FirstNonRegenerativeModel = 17;

constexpr int TwipsPerPixel = 15;
/** The height of a line of text for which the sizes in twips were made. */
constexpr double DesignTextHeight = 13;

/** How many letters X are as wide as the widest item. There may be thousands, and measuring is what costs, so
 * only the one that takes most places is measured; a full-width character takes two. */
int LettersOfTheWidest(const QStringList &items, const QFontMetrics &metrics)
{
    const auto places = [](const QString &text) {
        constexpr char16_t firstWide = 0x1100;
        return text.size() + std::ranges::count_if(text, [](QChar c) { return c.unicode() >= firstWide; });
    };
    const auto widest = std::ranges::max_element(items, {}, places);
    return widest == items.end() ? 0
                                 : metrics.horizontalAdvance(*widest) / metrics.horizontalAdvance(u'X') + 1;
}

} // namespace

FormModifyParameterValue::FormModifyParameterValue(Desk &desk, QWidget *owner, int p, std::int32_t rawValue)
    : DialogForm(desk, owner, QStringLiteral("FormModifyParameterValue"), {},
                 QStringLiteral("Change a Value.htm"))
    , param_(p)
    , rawValue_(rawValue)
{
    MakeControls();
    Load();
}

void FormModifyParameterValue::MakeControls()
{
    static const QString rowCaptions[] = {QStringLiteral("Max Value"), QStringLiteral("Min Value"),
                                          QStringLiteral("New Value")};
    for (int i = 0; i < 3; ++i) {
        labelValue_[i] = new QLabel(rowCaptions[i], this);
        labelValue_[i]->setObjectName(ControlName("LabelValue", i));
        textValue_[i] = new QLineEdit(this);
        textValue_[i]->setObjectName(ControlName("TextValue", i));
        textValue_[i]->setAccessibleName(rowCaptions[i]);
        textValue_[i]->setAlignment(Qt::AlignRight);
        labelUnits_[i] = new QLabel(this);
        labelUnits_[i]->setObjectName(ControlName("LabelUnits", i));
        labelUnits_[i]->setTextFormat(Qt::PlainText);
        On(textValue_[i], &QLineEdit::textChanged, this, [this](const QString &text) { newValue_ = text; });
        SelectAllOnFocus(textValue_[i]);
        if (i != NewRow) {
            textValue_[i]->setReadOnly(true);
            textValue_[i]->setFocusPolicy(Qt::NoFocus);
        }
    }
    for (int i = 0; i < int(option1_.size()); ++i) {
        option1_[i] = new QRadioButton(this);
        option1_[i]->setObjectName(ControlName("Option1", i));
        On(option1_[i], &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                newValue_ = QString::number(i);
        });
    }
    comboParameterSelect_ = new QComboBox(this);
    comboParameterSelect_->setObjectName(QStringLiteral("ComboParameterSelect"));
    comboParameterSelect_->setAccessibleName(QStringLiteral("Parameter"));
    comboParameterSelect_->setMaxVisibleItems(20);
    comboParameterSelect_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);

    commandOK_ = new QPushButton(QStringLiteral("OK"), this);
    commandOK_->setObjectName(QStringLiteral("CommandOK"));
    commandOK_->setDefault(true);
    On(commandOK_, &QPushButton::clicked, this, [this] { CommandOK_Click(); });
    commandCancel_ = new QPushButton(QStringLiteral("Cancel"), this);
    commandCancel_->setObjectName(QStringLiteral("CommandCancel"));
    On(commandCancel_, &QPushButton::clicked, this, [this] { reject(); });

    for (QWidget *control : findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        control->setVisible(control == commandOK_ || control == commandCancel_);
}

void FormModifyParameterValue::Load()
{
    const ParameterTable &table = desk().table;
    const int typeCode = TypeCode(table[param_].Attributes);
    const ValueType &type = TypeOf(typeCode);
    setWindowTitle(QString::fromLatin1(type.prompt));
    if (type.form == ValueType::Form::Parameter)
        LayOutCombo();
    else if (type.form == ValueType::Form::List)
        LayOutOptions(EnumCount(typeCode));
    else
        LayOutNumber();
}

void FormModifyParameterValue::LayOutCombo()
{
    const ParamChoices choices = desk().rules.FillParamCombo(param_);
    comboParameterSelect_->addItems(choices.items);
    comboParameterSelect_->setMinimumContentsLength(LettersOfTheWidest(choices.items, fontMetrics()));
    comboParameterSelect_->setCurrentIndex(-1);
    On(comboParameterSelect_, &QComboBox::currentTextChanged, this,
       [this](const QString &item) { newValue_ = item.left(item.indexOf(u' ')); });
    comboParameterSelect_->setCurrentIndex(choices.selected);

    auto *layout = new QGridLayout(this);
    layout->addWidget(comboParameterSelect_, 0, 0, 1, 3);
    layout->addWidget(commandOK_, 1, 1);
    layout->addWidget(commandCancel_, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(2, 1);
    TypeToChoose(comboParameterSelect_);
    comboParameterSelect_->show();
    comboParameterSelect_->setFocus();
    ResizeTo(4080, 1800);
}

void FormModifyParameterValue::LayOutOptions(int count)
{
    const ParameterTable &table = desk().table;
    const int typeCode = TypeCode(table[param_].Attributes);
    for (int i = 0; i < int(option1_.size()); ++i)
        option1_[i]->setText(EnumText(i, typeCode));

    auto *layout = new QGridLayout(this);
    for (int i = 0; i < count; ++i) {
        layout->addWidget(option1_[i], i, 0);
        option1_[i]->show();
    }
    layout->addWidget(commandOK_, 0, 1);
    layout->addWidget(commandCancel_, count - 1, 1);
    layout->setHorizontalSpacing(2 * fontMetrics().height());
    layout->setRowStretch(count, 1);

    if (typeCode == StopModeType && table.Value(Param::DriveModel) >= FirstNonRegenerativeModel)
        option1_[QuickStop]->hide();
    // A value without an option leaves nothing chosen, and OK then asks for a choice.
    if (rawValue_ >= 0 && rawValue_ < int(option1_.size())) {
        option1_[rawValue_]->setChecked(true);
        option1_[rawValue_]->setFocus();
    }
    ResizeTo(count == 2 ? 2760 : 3000, 2000);
}

void FormModifyParameterValue::LayOutNumber()
{
    const ParameterTable &table = desk().table;
    const ParamRecord &record = table[param_];
    const std::int32_t rawValues[] = {record.Max, record.Min, rawValue_};
    auto *layout = new QGridLayout(this);
    for (int i = 0; i < 3; ++i) {
        textValue_[i]->setText(NumberText(rawValues[i], record.Attributes));
        labelUnits_[i]->setText(UnitText(record.Attributes));
        layout->addWidget(labelValue_[i], i, 0);
        layout->addWidget(textValue_[i], i, 1, 1, 2);
        layout->addWidget(labelUnits_[i], i, 3);
        labelValue_[i]->show();
        textValue_[i]->show();
        labelUnits_[i]->show();
    }
    layout->addWidget(commandOK_, 3, 1);
    layout->addWidget(commandCancel_, 3, 2, 1, 2);
    textValue_[NewRow]->setFocus();
    ResizeTo(4080, 2460);
}

void FormModifyParameterValue::ResizeTo(int widthTwips, int heightTwips)
{
    const double scale = std::max(1.0, fontMetrics().height() / DesignTextHeight) / TwipsPerPixel;
    const int width = std::max(int(widthTwips * scale), RoomForTitle(*this, windowTitle()));
    resize(QSize(width, int(heightTwips * scale)).expandedTo(sizeHint()));
}

void FormModifyParameterValue::AskAgain()
{
    textValue_[NewRow]->setFocus();
    SelectAllText(textValue_[NewRow]);
}

bool FormModifyParameterValue::IsAcceptable()
{
    const ParameterTable &table = desk().table;
    const ParamRecord &record = table[param_];
    if (!IsNumeric(newValue_)) {
        desk().asker.MsgBox(QStringLiteral("Must be a numeric value. Please Re-enter."), MsgButtons::Ok,
                            MsgIcon::Exclamation, {});
        AskAgain();
        return false;
    }
    rawValue_ = desk().rules.EntryToRawOf(param_, newValue_);
    if (table.AttrBit(Attr::Destination, param_)) {
        if (desk().rules.ResolveDestinationConflict(param_, ToInt16(rawValue_)))
            return true;
        comboParameterSelect_->setFocus();
        return false;
    }
    if (rawValue_ >= record.Min && rawValue_ <= record.Max)
        return true;
    desk().asker.MsgBox(QStringLiteral("Please enter a value between ") +
                            ValueText(record.Min, record.Attributes) + QStringLiteral(" and ") +
                            ValueText(record.Max, record.Attributes),
                        MsgButtons::Ok, MsgIcon::None, {});
    AskAgain();
    return false;
}

void FormModifyParameterValue::CommandOK_Click()
{
    if (IsAcceptable())
        accept();
}

std::optional<std::int32_t> FormModifyParameterValue::EditedValue() const
{
    return result() == Accepted ? std::optional(rawValue_) : std::nullopt;
}

} // namespace quorvik
