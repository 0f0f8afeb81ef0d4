#include "desktop/FormModifyParameterValue.h"

#include "desktop/FactsHead.h"
#include "desktop/InlineMessage.h"
#include "desktop/PlaceBeside.h"
#include "desktop/PlainText.h"
#include "desktop/TextBoxFunctions.h"
#include "desktop/TitleRoom.h"
#include "desktop/TypeToChoose.h"
#include "desktop/ValueBox.h"
#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "operations/EntryRules.h"
#include "platform/Arithmetic.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <algorithm>

namespace quorvik
{

namespace
{

enum TextRow { MaxRow, MinRow, NewRow };

constexpr int UpdateScreenMs = 500;
/** Units of the last place that Page Up and Page Down step by. */
constexpr int PageUnits = 10;

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
    , head_(new FactsHead(desk, p, this))
    , message_(new InlineMessage(QStringLiteral("LabelMessage"), this))
    , box_(qobject_cast<ValueBox *>(QApplication::focusWidget()))
    , param_(p)
    , rawValue_(rawValue)
{
    MakeControls();
    Load();
    PlaceBesideBox();
    auto *timer = new QTimer(this);
    timer->setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(timer, &QTimer::timeout, this, [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    timer->start(UpdateScreenMs);
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
        SelectAllOnFocus(textValue_[i]);
        if (i == NewRow) {
            On(textValue_[i], &QLineEdit::textChanged, this,
               [this](const QString &text) { EntryChanged(text); });
        } else {
            textValue_[i]->setReadOnly(true);
            textValue_[i]->setFocusPolicy(Qt::NoFocus);
        }
    }
    for (int i = 0; i < int(option1_.size()); ++i) {
        option1_[i] = new QRadioButton(this);
        option1_[i]->setObjectName(ControlName("Option1", i));
        On(option1_[i], &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                EntryChanged(QString::number(i));
        });
    }
    comboParameterSelect_ = new QComboBox(this);
    comboParameterSelect_->setObjectName(QStringLiteral("ComboParameterSelect"));
    comboParameterSelect_->setAccessibleName(QStringLiteral("Parameter"));
    comboParameterSelect_->setMaxVisibleItems(20);
    comboParameterSelect_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);

    for (QWidget *control : findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        control->setVisible(control == head_);

    commandFactory_ = MakeButton("CommandFactory", QStringLiteral("&Factory value"));
    On(commandFactory_, &QPushButton::clicked, this, [this] { Fill(head_->Facts().FactoryValue()); });
    commandFile_ = MakeButton("CommandFile", QStringLiteral("F&ile value"));
    commandFile_->setVisible(head_->Facts().FileValue().has_value());
    On(commandFile_, &QPushButton::clicked, this, [this] {
        if (const std::optional<std::int32_t> rawValue = head_->Facts().FileValue())
            Fill(*rawValue);
    });
    commandOK_ = MakeButton("CommandOK", QStringLiteral("OK"));
    commandOK_->setDefault(true);
    On(commandOK_, &QPushButton::clicked, this, [this] { CommandOK_Click(); });
    commandCancel_ = MakeButton("CommandCancel", QStringLiteral("Cancel"));
    On(commandCancel_, &QPushButton::clicked, this, [this] { reject(); });
}

QPushButton *FormModifyParameterValue::MakeButton(const char *name, const QString &caption)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

void FormModifyParameterValue::Load()
{
    const ParameterTable &table = desk().table;
    const int typeCode = TypeCode(table[param_].Attributes);
    const ValueType &type = TypeOf(typeCode);
    form_ = type.form;
    setWindowTitle(QString::fromLatin1(type.prompt));
    auto *whole = new QVBoxLayout(this);
    whole->addWidget(head_);
    whole->addSpacing(fontMetrics().height() / 2);
    auto *entry = new QGridLayout;
    whole->addLayout(entry);
    whole->addWidget(message_);
    whole->addStretch();
    whole->addLayout(LayOutButtons());
    if (type.form == ValueType::Form::Parameter)
        LayOutCombo(entry);
    else if (type.form == ValueType::Form::List)
        LayOutOptions(entry, EnumCount(typeCode));
    else
        LayOutNumber(entry);
    EnableButtons();
}

QBoxLayout *FormModifyParameterValue::LayOutButtons()
{
    auto *line = new QHBoxLayout;
    line->addWidget(commandFactory_);
    line->addWidget(commandFile_);
    line->addStretch();
    // Options have them at their side.
    if (form_ != ValueType::Form::List) {
        line->addWidget(commandOK_);
        line->addWidget(commandCancel_);
    }
    return line;
}

void FormModifyParameterValue::LayOutCombo(QGridLayout *layout)
{
    const ParamChoices choices = desk().rules.FillParamCombo(param_);
    comboParameterSelect_->addItems(choices.items);
    comboParameterSelect_->setMinimumContentsLength(LettersOfTheWidest(choices.items, fontMetrics()));
    comboParameterSelect_->setCurrentIndex(-1);
    On(comboParameterSelect_, &QComboBox::currentTextChanged, this,
       [this](const QString &item) { EntryChanged(item.left(item.indexOf(u' '))); });
    comboParameterSelect_->setCurrentIndex(choices.selected);

    layout->addWidget(comboParameterSelect_, 0, 0);
    TypeToChoose(comboParameterSelect_);
    comboParameterSelect_->show();
    comboParameterSelect_->setFocus();
    ResizeTo(4080, 1800);
}

void FormModifyParameterValue::LayOutOptions(QGridLayout *layout, int count)
{
    const int typeCode = TypeCode(desk().table[param_].Attributes);
    for (int i = 0; i < int(option1_.size()); ++i)
        option1_[i]->setText(EnumText(i, typeCode));

    for (int i = 0; i < count; ++i) {
        layout->addWidget(option1_[i], i, 0);
        option1_[i]->setVisible(head_->Facts().HasOption(i));
    }
    layout->addWidget(commandOK_, 0, 1);
    layout->addWidget(commandCancel_, count - 1, 1);
    layout->setColumnStretch(0, 1);
    TypeToChoose(QList<QAbstractButton *>(option1_.begin(), option1_.end()));
    // A value without an option leaves nothing chosen, and OK then asks for a choice.
    if (rawValue_ >= 0 && rawValue_ < int(option1_.size())) {
        option1_[rawValue_]->setChecked(true);
        option1_[rawValue_]->setFocus();
    }
    ResizeTo(count == 2 ? 2760 : 3000, 2000);
}

void FormModifyParameterValue::LayOutNumber(QGridLayout *layout)
{
    const std::int32_t attributes = desk().table[param_].Attributes;
    ShowLimits();
    textValue_[NewRow]->setText(NumberText(rawValue_, attributes));
    for (int i = 0; i < 3; ++i) {
        labelUnits_[i]->setText(UnitText(attributes));
        layout->addWidget(labelValue_[i], i, 0);
        layout->addWidget(textValue_[i], i, 1);
        layout->addWidget(labelUnits_[i], i, 2);
        labelValue_[i]->show();
        textValue_[i]->show();
        labelUnits_[i]->show();
    }
    layout->setColumnStretch(3, 1);
    // What is refused now and then must not move the buttons.
    QSizePolicy policy = message_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    message_->setSizePolicy(policy);
    textValue_[NewRow]->installEventFilter(this);
    textValue_[NewRow]->setFocus();
    ResizeTo(4080, 2460);
}

void FormModifyParameterValue::ResizeTo(int widthTwips, int heightTwips)
{
    const double scale = std::max(1.0, fontMetrics().height() / DesignTextHeight) / TwipsPerPixel;
    const int width = std::max(int(widthTwips * scale), RoomForTitle(*this, windowTitle()));
    resize(QSize(width, int(heightTwips * scale)).expandedTo(sizeHint()));
    Grow();
}

void FormModifyParameterValue::Grow()
{
    const int needed = layout()->totalHeightForWidth(width());
    if (needed <= height())
        return;
    resize(width(), needed);
    PlaceBesideBox();
}

void FormModifyParameterValue::PlaceBesideBox()
{
    if (box_)
        PlaceWindowBeside(QRect(box_->mapToGlobal(QPoint()), box_->size()), *this);
}

void FormModifyParameterValue::TimerUpdateScreen_Timer()
{
    head_->Refresh();
    ShowLimits();
    EnableButtons();
    Grow();
}

void FormModifyParameterValue::ShowLimits()
{
    const ParamRecord &record = desk().table[param_];
    textValue_[MaxRow]->setText(NumberText(record.Max, record.Attributes));
    textValue_[MinRow]->setText(NumberText(record.Min, record.Attributes));
}

void FormModifyParameterValue::EnableButtons()
{
    const std::optional<std::int32_t> inFile = head_->Facts().FileValue();
    commandFile_->setEnabled(inFile && CanFill(*inFile));
    commandFactory_->setEnabled(CanFill(head_->Facts().FactoryValue()));
}

bool FormModifyParameterValue::CanFill(std::int32_t rawValue) const
{
    switch (form_) {
    case ValueType::Form::Parameter:
        return comboParameterSelect_->findText(QStringLiteral("%1 ").arg(rawValue), Qt::MatchStartsWith) >= 0;
    case ValueType::Form::List:
        return rawValue >= 0 && head_->Facts().HasOption(rawValue);
    default:
        return true;
    }
}

void FormModifyParameterValue::Fill(std::int32_t rawValue)
{
    const std::int32_t attributes = desk().table[param_].Attributes;
    switch (form_) {
    case ValueType::Form::Parameter:
        comboParameterSelect_->setCurrentIndex(
            comboParameterSelect_->findText(QStringLiteral("%1 ").arg(rawValue), Qt::MatchStartsWith));
        comboParameterSelect_->setFocus();
        break;
    case ValueType::Form::List:
        option1_.at(std::size_t(rawValue))->setChecked(true);
        option1_.at(std::size_t(rawValue))->setFocus();
        break;
    default:
        textValue_[NewRow]->setText(NumberText(rawValue, attributes));
        AskAgain();
    }
}

bool FormModifyParameterValue::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == textValue_[NewRow] && event->type() == QEvent::KeyPress) {
        bool isStep = false;
        Guarded([&] { isStep = Step(static_cast<const QKeyEvent *>(event)->key()); });
        if (isStep)
            return true;
    }
    return DialogForm::eventFilter(watched, event);
}

bool FormModifyParameterValue::Step(int key)
{
    const bool isUp = key == Qt::Key_Up || key == Qt::Key_PageUp;
    const bool isPage = key == Qt::Key_PageUp || key == Qt::Key_PageDown;
    if (!isUp && !isPage && key != Qt::Key_Down)
        return false;
    const int units = isPage ? PageUnits : 1;
    if (const auto stepped = desk().rules.SteppedEntry(param_, newValue_, isUp ? units : -units)) {
        textValue_[NewRow]->setText(*stepped);
        SelectAllText(textValue_[NewRow]);
    }
    return true;
}

void FormModifyParameterValue::EntryChanged(const QString &newValue)
{
    newValue_ = newValue;
    message_->hide();
    SetSpokenText(textValue_[NewRow], {});
}

void FormModifyParameterValue::TellRefusal(const QString &refusal)
{
    message_->Tell(refusal);
    SetSpokenText(textValue_[NewRow], refusal);
    Grow();
}

void FormModifyParameterValue::AskAgain()
{
    textValue_[NewRow]->setFocus();
    SelectAllText(textValue_[NewRow]);
}

bool FormModifyParameterValue::IsAcceptable()
{
    const TypedEntry entry = desk().rules.CheckEntry(param_, newValue_);
    if (!entry.refusal.isEmpty()) {
        TellRefusal(entry.refusal);
        AskAgain();
        return false;
    }
    rawValue_ = entry.rawValue;
    if (!desk().table.AttrBit(Attr::Destination, param_) ||
        desk().rules.ResolveDestinationConflict(param_, ToInt16(rawValue_)))
        return true;
    comboParameterSelect_->setFocus();
    return false;
}

void FormModifyParameterValue::CommandOK_Click()
{
    if (IsAcceptable())
        accept();
}

void FormModifyParameterValue::done(int result)
{
    // Whatever the drive has refused stood here.
    desk().states.Touch(param_);
    DialogForm::done(result);
}

std::optional<std::int32_t> FormModifyParameterValue::EditedValue() const
{
    return result() == Accepted ? std::optional(rawValue_) : std::nullopt;
}

} // namespace quorvik
