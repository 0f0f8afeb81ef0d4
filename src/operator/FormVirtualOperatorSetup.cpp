#include "operator/FormVirtualOperatorSetup.h"

#include "desktop/TypeToChoose.h"
#include "model/Conversions.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "operations/EntryRules.h"
#include "operator/FormVirtualOperator.h"
#include "platform/Arithmetic.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

namespace quorvik
{

FormVirtualOperatorSetup::FormVirtualOperatorSetup(Desk &desk, FormVirtualOperator &panel, int selection)
    : DialogForm(desk, &panel, QStringLiteral("FormVirtualOperatorSetup"),
                 QStringLiteral("Visual Operator Setup"), QStringLiteral("Virtual Operator Setup.htm"))
    , panel_(panel)
    , comboInput_(new QComboBox(this))
    , comboDestination_(new QComboBox(this))
{
    BuildControls();
    for (int index = 0; index < FormVirtualOperator::Records; ++index) {
        const bool isSignal = index < FormVirtualOperator::Signals;
        comboInput_->addItem((isSignal ? QStringLiteral("Signal ") : QStringLiteral("Digital ")) +
                             QChar(u'A' + index % FormVirtualOperator::Signals));
    }
    comboInput_->setCurrentIndex(selection);
    On(comboInput_, &QComboBox::currentIndexChanged, this, [this] { ComboInput_Click(); });
    On(comboDestination_, &QComboBox::currentIndexChanged, this, [this] { ComboDestination_Click(); });
    ComboInput_Click();
    commandApply_->setEnabled(false);
}

void FormVirtualOperatorSetup::BuildControls()
{
    auto *grid = new QGridLayout;
    const auto addLabel = [&](const QString &name, const QString &caption, int row, QWidget *buddy) {
        auto *label = new QLabel(caption, this);
        label->setObjectName(name);
        label->setBuddy(buddy);
        grid->addWidget(label, row, 0);
        return label;
    };
    comboInput_->setObjectName(QStringLiteral("ComboInput"));
    comboInput_->setAccessibleName(QStringLiteral("Virtual Input"));
    comboInput_->setMaxVisibleItems(FormVirtualOperator::Records);
    comboDestination_->setObjectName(QStringLiteral("ComboDestination"));
    comboDestination_->setAccessibleName(QStringLiteral("Destination"));
    comboDestination_->setMaxVisibleItems(20);
    TypeToChoose(comboDestination_);
    comboDestination_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    comboDestination_->setMinimumContentsLength(46);
    addLabel(QStringLiteral("LabelInput"), QStringLiteral("Virtual Input"), 0, comboInput_);
    grid->addWidget(comboInput_, 0, 1, 1, 2);
    addLabel(QStringLiteral("LabelDestination"), QStringLiteral("Destination"), 1, comboDestination_);
    grid->addWidget(comboDestination_, 1, 1, 1, 2);

    for (int index = 0; index < 2; ++index) {
        const auto end = std::size_t(index);
        auto *text = new QLineEdit(this);
        text->setObjectName(ControlName("TextBiasGain", index));
        text->installEventFilter(this);
        auto *combo = new QComboBox(this);
        combo->setObjectName(ControlName("ComboBiasGain", index));
        combo->hide();
        auto *units = new QLabel(this);
        units->setObjectName(ControlName("LabelUnits", index));
        units->setMinimumWidth(fontMetrics().averageCharWidth() * 8);
        labelBiasGain_[end] = addLabel(ControlName("LabelBiasGain", index), QString(), 2 + index, text);
        grid->addWidget(text, 2 + index, 1);
        grid->addWidget(combo, 2 + index, 1);
        grid->addWidget(units, 2 + index, 2);
        On(text, &QLineEdit::textChanged, this, [this] { commandApply_->setEnabled(true); });
        On(combo, &QComboBox::activated, this, [this] { commandApply_->setEnabled(true); });
        textBiasGain_[end] = text;
        comboBiasGain_[end] = combo;
        labelUnits_[end] = units;
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnMinimumWidth(0, fontMetrics().averageCharWidth() * 16);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addStretch();
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addWidget(MakeCommands());
}

QWidget *FormVirtualOperatorSetup::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    layout->addStretch();
    const auto addButton = [&](const QString &name, const QString &caption) {
        auto *button = new QPushButton(caption, commands);
        button->setObjectName(name);
        layout->addWidget(button);
        return button;
    };
    QPushButton *commandOk = addButton(QStringLiteral("CommandOK"), QStringLiteral("OK"));
    commandOk->setDefault(true);
    QPushButton *commandCancel = addButton(QStringLiteral("CommandCancel"), QStringLiteral("Cancel"));
    commandApply_ = addButton(QStringLiteral("CommandApply"), QStringLiteral("Apply"));
    layout->addWidget(MakeCommandHelp());
    On(commandOk, &QPushButton::clicked, this, [this] {
        if (ApplyVirtualInput())
            accept();
    });
    On(commandCancel, &QPushButton::clicked, this, [this] { reject(); });
    On(commandApply_, &QPushButton::clicked, this, [this] { ApplyVirtualInput(); });
    return commands;
}

void FormVirtualOperatorSetup::ComboInput_Click()
{
    const int index = comboInput_->currentIndex();
    const bool isSignal = index < FormVirtualOperator::Signals;
    labelBiasGain_[0]->setText(isSignal ? QStringLiteral("Bias") : QStringLiteral("Open Value"));
    labelBiasGain_[1]->setText(isSignal ? QStringLiteral("Gain") : QStringLiteral("Closed Value"));
    for (std::size_t end = 0; end < 2; ++end) {
        textBiasGain_[end]->setAccessibleName(labelBiasGain_[end]->text());
        comboBiasGain_[end]->setAccessibleName(labelBiasGain_[end]->text());
    }
    FillDestinationList(desk().document.VirtualSettings.at(std::size_t(index)).Destination);
}

void FormVirtualOperatorSetup::FillDestinationList(int current)
{
    const ParameterTable &table = desk().table;
    QStringList items;
    int selected = -1;
    for (int p = 0; p <= table.LastParam; ++p) {
        if (table.AttrBit(Attr::ReadOnly, p))
            continue;
        if (p == current)
            selected = int(items.size());
        items.append(QString::number(p) + u' ' + table[p].Name);
    }
    {
        const QSignalBlocker blocked(comboDestination_);
        comboDestination_->clear();
        comboDestination_->addItems(items);
        comboDestination_->setCurrentIndex(selected);
    }
    ComboDestination_Click();
}

int FormVirtualOperatorSetup::Destination() const
{
    return ParamOfChoice(comboDestination_->currentText());
}

std::int32_t FormVirtualOperatorSetup::AttributesOfDestination() const
{
    return desk().table[Destination()].Attributes;
}

bool FormVirtualOperatorSetup::HasListOfValues() const
{
    return IsEnumerated(TypeCode(AttributesOfDestination()));
}

void FormVirtualOperatorSetup::ComboDestination_Click()
{
    if (!comboDestination_->currentText().contains(u' '))
        return;
    const VirtualSetting &setting =
        desk().document.VirtualSettings.at(std::size_t(comboInput_->currentIndex()));
    const int destination = Destination();
    const std::int32_t attributes = AttributesOfDestination();
    const bool hasList = HasListOfValues();
    const EndValues rawEnds = {ClampToRange(setting.BiasOpen, destination),
                               ClampToRange(setting.GainClosed, destination)};
    for (std::size_t end = 0; end < 2; ++end) {
        labelUnits_[end]->setText(UnitText(attributes));
        textBiasGain_[end]->setVisible(!hasList);
        comboBiasGain_[end]->setVisible(hasList);
        labelBiasGain_[end]->setBuddy(hasList ? static_cast<QWidget *>(comboBiasGain_[end])
                                              : static_cast<QWidget *>(textBiasGain_[end]));
        if (!hasList) {
            textBiasGain_[end]->setText(NumberText(rawEnds[end], attributes));
            continue;
        }
        const int typeCode = TypeCode(attributes);
        comboBiasGain_[end]->clear();
        for (int value = 0; value < EnumCount(typeCode); ++value)
            comboBiasGain_[end]->addItem(EnumText(value, typeCode));
        comboBiasGain_[end]->setCurrentIndex(rawEnds[end]);
    }
    commandApply_->setEnabled(true);
}

bool FormVirtualOperatorSetup::eventFilter(QObject *watched, QEvent *event)
{
    Guarded([&] {
        for (int index = 0; index < 2; ++index) {
            if (watched != textBiasGain_[std::size_t(index)])
                continue;
            if (event->type() == QEvent::FocusIn)
                textBiasGain_[std::size_t(index)]->selectAll();
            else if (event->type() == QEvent::FocusOut)
                TextBiasGain_LostFocus(index);
        }
    });
    return DialogForm::eventFilter(watched, event);
}

void FormVirtualOperatorSetup::TextBiasGain_LostFocus(int index)
{
    QLineEdit *text = textBiasGain_.at(std::size_t(index));
    // What is no number stays for correction; Apply tells.
    if (IsNumeric(text->text()))
        text->setText(FormatEntry(text->text(), AttributesOfDestination()));
}

std::int32_t FormVirtualOperatorSetup::ClampToRange(std::int32_t value, int parameter) const
{
    const ParamRecord &record = desk().table[parameter];
    if (value < record.Min)
        return record.Min;
    return std::min(value, record.Max);
}

int FormVirtualOperatorSetup::FindVirtualConflict(int index, int destination) const
{
    if (destination == 0)
        return 0;
    for (int other = 0; other < comboInput_->count(); ++other)
        if (other != index &&
            desk().document.VirtualSettings.at(std::size_t(other)).Destination == destination)
            return other; // A clash with Signal A gives 0 too and goes unnoticed.
    return 0;
}

std::optional<FormVirtualOperatorSetup::EndValues> FormVirtualOperatorSetup::EnteredEnds(int destination)
{
    const std::int32_t attributes = AttributesOfDestination();
    EndValues rawEnds{};
    const bool hasList = HasListOfValues();
    if (!hasList)
        for (std::size_t end = 0; end < 2; ++end) {
            QLineEdit *text = textBiasGain_[end];
            if (desk().rules.ValidateEntry(text->text(), labelBiasGain_[end]->text(), destination))
                continue;
            text->setFocus();
            return std::nullopt;
        }
    for (std::size_t end = 0; end < 2; ++end)
        rawEnds[end] = EntryToRaw(hasList ? QString::number(comboBiasGain_[end]->currentIndex())
                                          : textBiasGain_[end]->text(),
                                  attributes);
    return rawEnds;
}

bool FormVirtualOperatorSetup::ApplyVirtualInput()
{
    const int index = comboInput_->currentIndex();
    const int destination = Destination();
    if (FindVirtualConflict(index, destination) != 0) {
        desk().asker.MsgBox(QStringLiteral("Conflict"), MsgButtons::Ok, MsgIcon::None, QString());
        return false;
    }
    const std::optional<EndValues> rawEnds = EnteredEnds(destination);
    if (!rawEnds)
        return false;
    VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
    setting.Destination = ToInt16(destination);
    setting.BiasOpen = (*rawEnds)[0];
    setting.GainClosed = (*rawEnds)[1];
    if (index < FormVirtualOperator::Signals) {
        panel_.ApplyLimits(index);
        panel_.VScrollSignal_Change(index);
    }
    panel_.AssignCaption(index);
    return true;
}

} // namespace quorvik
