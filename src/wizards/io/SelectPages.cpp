#include "wizards/io/SelectPages.h"

#include "desktop/Form.h"
#include "desktop/TypeToChoose.h"
#include "operations/EntryRules.h"
#include "platform/Guard.h"
#include "wizards/io/IOPictures.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

/** How many inputs or outputs a kind has. */
constexpr int InputCounts[] = {5, 7, 1};
constexpr int OutputCounts[] = {2, 1, 3};

void EnableMembers(OptionGroup *group, int members)
{
    if (group->Chosen() >= members || members == 1)
        group->Choose(0);
    group->Enable(0, members - 1, true);
    group->Enable(members, int(group->buttons().size()) - 1, false);
}

} // namespace

BranchPage::BranchPage(QWidget *parent, const IOSetup &setup)
    : WizardPage(parent,
                 MakePicture(QStringLiteral("A drive with its inputs and outputs"), setup, BranchPicture))
{
    AddHeading(QStringLiteral("Select I/O Type."));
    OptionInputsOutputs = AddOptions(Content(), QStringLiteral("I/O"), "OptionInputsOutputs",
                                     {QStringLiteral("&Inputs"), QStringLiteral("&Outputs")});
    CloseContent();
}

InputPage::InputPage(QWidget *parent, const IOSetup &setup)
    : WizardPage(parent, MakePicture(QStringLiteral("The input terminals"), setup, InputTerminalsPicture))
{
    AddHeading(QStringLiteral("Select input."));
    QBoxLayout *columns = AddColumns();
    OptionInputType =
        AddOptions(columns, QStringLiteral("Input Type"), "OptionInputType",
                   {QStringLiteral("&Analog"), QStringLiteral("&Digital"), QStringLiteral("F&requency")});
    QStringList inputs;
    for (int i = 1; i <= 7; ++i)
        inputs.append(QStringLiteral("Input &%1").arg(i));
    OptionInput = AddOptions(columns, QStringLiteral("Input"), "OptionInput", inputs);
    CloseContent();
}

void InputPage::FollowType(int inputType)
{
    EnableMembers(OptionInput, InputCounts[inputType]);
}

ParameterPage::ParameterPage(QWidget *parent, WizardPicture *picture, const QString &heading,
                             const QString &text, const QString &comboName)
    : WizardPage(parent, picture)
    , combo_(new QComboBox(this))
{
    AddHeading(heading);
    AddText(text);
    combo_->setObjectName(comboName);
    combo_->setAccessibleName(heading);
    combo_->setMaxVisibleItems(20);
    TypeToChoose(combo_);
    combo_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    constexpr int longestName = 34;
    combo_->setMinimumContentsLength(longestName);
    Content()->addWidget(combo_);
    CloseContent();
    On(combo_, &QComboBox::currentIndexChanged, this, [this] { Combo_Click(); });
}

void ParameterPage::Fill(const ParamChoices &choices)
{
    const bool wasBlocked = combo_->blockSignals(true);
    combo_->clear();
    combo_->addItems(choices.items);
    combo_->setCurrentIndex(choices.selected);
    // The opened list may be wider than the page leaves room for, so that no name is cut.
    combo_->view()->setMinimumWidth(combo_->view()->sizeHintForColumn(0) + fontMetrics().height() * 2);
    combo_->blockSignals(wasBlocked);
    Combo_Click();
}

void ParameterPage::Combo_Click()
{
    const bool none = combo_->currentIndex() < 0;
    Q_EMIT Chosen(none ? 0 : ParamOfChoice(combo_->currentText()));
    Picture()->update();
}

AnalogTypePage::AnalogTypePage(QWidget *parent, const IOSetup &setup)
    : WizardPage(parent,
                 MakePicture(QStringLiteral("The signal of the analog input"), setup, AnalogTypePicture))
    , setup_(setup)
{
    AddHeading(QStringLiteral("Select analog input type and polarity."),
               ControlName("LabelTypeAndPolarity", 0));
    QBoxLayout *columns = AddColumns();
    OptionAnalogType = AddOptions(columns, QStringLiteral("Type"), "OptionAnalogType",
                                  {QStringLiteral("&Current"), QStringLiteral("&Voltage")});
    frameInputType_ = OptionAnalogType->button(0)->parentWidget();
    frameInputType_->setObjectName(QStringLiteral("FrameInputType"));
    OptionPolarity = AddOptions(columns, QStringLiteral("Polarity"), "OptionPolarity",
                                {QStringLiteral("&Unipolar"), QStringLiteral("B&ipolar")});
    range_ = AddText({}, ControlName("LabelTypeAndPolarity", 1));
    CloseContent();
}

void AnalogTypePage::EnableType(bool enable)
{
    EnableFrame(frameInputType_, enable);
}

void AnalogTypePage::ShowRange()
{
    range_->setText(setup_.AnalogRangeText());
    Picture()->update();
}

OutputPage::OutputPage(QWidget *parent, const IOSetup &setup)
    : WizardPage(parent, MakePicture(QStringLiteral("The output terminals"), setup, OutputTerminalsPicture))
{
    AddHeading(QStringLiteral("Select output."));
    QBoxLayout *columns = AddColumns();
    OptionOutputType =
        AddOptions(columns, QStringLiteral("Output Type"), "OptionOutputType",
                   {QStringLiteral("&Analog"), QStringLiteral("Fr&eq/Digital"), QStringLiteral("&Relay")});
    OptionOutput =
        AddOptions(columns, QStringLiteral("Output"), "OptionOutput",
                   {QStringLiteral("Output &1"), QStringLiteral("Output &2"), QStringLiteral("Output &3")});
    OptionFreqDigMode = AddOptions(Content(), QStringLiteral("Freq/Digital Mode"), "OptionFreqDigMode",
                                   {QStringLiteral("Fre&quency"), QStringLiteral("&Digital")});
    frameFreqDigMode_ = OptionFreqDigMode->button(0)->parentWidget();
    frameFreqDigMode_->setObjectName(QStringLiteral("FrameFreqDigMode"));
    CloseContent();
}

void OutputPage::FollowType(int outputType)
{
    EnableMembers(OptionOutput, OutputCounts[outputType]);
    EnableFrame(frameFreqDigMode_, outputType == FreqDigOutput);
}

} // namespace quorvik
