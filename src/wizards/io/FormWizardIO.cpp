#include "wizards/io/FormWizardIO.h"

#include "operations/EntryRules.h"
#include "platform/Arithmetic.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"
#include "wizards/frame/IntroPage.h"
#include "wizards/io/CalibrationPage.h"
#include "wizards/io/IOPictures.h"
#include "wizards/io/SelectPages.h"
#include "wizards/io/ValuesPage.h"

namespace quorvik
{

namespace
{

constexpr PageRow<IOSetup> NextRows[] = {
    {1, &IOSetup::IsInputBranch, 2},
    {1, nullptr, 7},
    {3, &IOSetup::IsAnalogInput, 4},
    {3, &IOSetup::IsDigitalInput, 6},
    {3, nullptr, 5},
    {6, nullptr, 10},
    {9, nullptr, 10},
};
constexpr PageRow<IOSetup> BackRows[] = {
    {5, &IOSetup::IsFrequencyInput, 3},
    {5, nullptr, 4},
    {6, &IOSetup::IsDigitalInput, 3},
    {6, nullptr, 5},
    {7, nullptr, 1},
    {10, &IOSetup::IsInputBranch, 6},
    {10, nullptr, 9},
};

constexpr int CalibrationStep = 5;

} // namespace

FormWizardIO::FormWizardIO(Desk &desk, QWidget *owner)
    : MentorForm(desk, owner, QStringLiteral("FormWizardIO"), QStringLiteral("Quorvik I/O Mentor"),
                 {"IO Mentor Introduction.htm", "IO Mentor Select IO.htm", "IO Mentor Select Input.htm",
                  "IO Mentor Select Destination.htm", "IO Mentor Select Type and Polarity.htm",
                  "IO Mentor Calibrate Input.htm", "IO Mentor Set Input Bias and Gain.htm",
                  "IO Mentor Select Output.htm", "IO Mentor Select Source.htm",
                  "IO Mentor Set Output Bias and Gain.htm", "IO Mentor Finished.htm"},
                 NextRows, BackRows)
    , branchPage_(new BranchPage(this, setup_))
    , inputPage_(new InputPage(this, setup_))
    , destinationPage_(new ParameterPage(
          this, MakePicture(QStringLiteral("An input and its destination"), setup_, DestinationPicture),
          QStringLiteral("Select the destination parameter."),
          QStringLiteral("The destination parameter is the parameter that this input will control."),
          QStringLiteral("ComboDestination")))
    , typePage_(new AnalogTypePage(this, setup_))
    , calibrationPage_(new CalibrationPage(this, setup_))
    , inputValuesPage_(new ValuesPage(
          this, MakePicture(QStringLiteral("What the input comes to"), setup_, InputValuesPicture),
          QStringLiteral("BiasGain"), 3, setup_.inputValues))
    , outputPage_(new OutputPage(this, setup_))
    , sourcePage_(new ParameterPage(
          this, MakePicture(QStringLiteral("A source and its output"), setup_, SourcePicture),
          QStringLiteral("Select the source parameter."),
          QStringLiteral("The source parameter is the parameter that will control this output."),
          QStringLiteral("ComboSource")))
    , outputValuesPage_(new ValuesPage(
          this, MakePicture(QStringLiteral("What the source comes to"), setup_, OutputValuesPicture),
          QStringLiteral("OutputBiasGain"), 2, setup_.outputValues))
{
    auto *introPage =
        new IntroPage(this,
                      new WizardPicture(nullptr, QStringLiteral("A drive with its inputs and outputs"),
                                        [] { return PictureFile{"io-intro"}; }),
                      {QStringLiteral("Introduction!"),
                       QStringLiteral("This Mentor (Wizard) will help you setup the Sarvex I/O."),
                       QStringLiteral("You can press Back at any time to change your selections."), QString(),
                       QStringLiteral("Please click Next to begin.")});
    outputValuesPage_->Reformat = [this](const QString &text) {
        return FormatFixed(CDbl(text), setup_.outputType == AnalogOutput ? 2 : 0);
    };
    ConnectInputChoices();
    ConnectOutputChoices();
    ChooseDefaults();
    StackPages({introPage, branchPage_, inputPage_, destinationPage_, typePage_, calibrationPage_,
                inputValuesPage_, outputPage_, sourcePage_, outputValuesPage_},
               QStringLiteral("&Save Parameters in Drive"));
}

void FormWizardIO::ConnectInputChoices()
{
    branchPage_->OptionInputsOutputs->OnClick(this, &FormWizardIO::OptionInputsOutputs_Click);
    inputPage_->OptionInputType->OnClick(this, &FormWizardIO::OptionInputType_Click);
    inputPage_->OptionInput->OnClick(this, &FormWizardIO::OptionInput_Click);
    typePage_->OptionAnalogType->OnClick(this, &FormWizardIO::OptionAnalogType_Click);
    typePage_->OptionPolarity->OnClick(this, &FormWizardIO::OptionPolarity_Click);
    On(destinationPage_, &ParameterPage::Chosen, this, [this](int p) {
        setup_.Destination = ToInt16(p);
        UpdateBiasGainPage();
    });
}

void FormWizardIO::ConnectOutputChoices()
{
    outputPage_->OptionOutputType->OnClick(this, &FormWizardIO::OptionOutputType_Click);
    On(outputPage_->OptionOutput, &OptionGroup::Click, this, [this](int index) {
        setup_.output = index;
        UpdateOutputBiasGainTags();
    });
    On(outputPage_->OptionFreqDigMode, &OptionGroup::Click, this, [this](int index) {
        setup_.freqDigMode = index;
        UpdateOutputBiasGainTags();
    });
    On(sourcePage_, &ParameterPage::Chosen, this, [this](int p) {
        setup_.Source = ToInt16(p);
        UpdateOutputBiasGainPage();
    });
}

void FormWizardIO::ChooseDefaults()
{
    const WizardIOStartRecord &start = desk().WizardIOStart;
    branchPage_->OptionInputsOutputs->Choose(start.outputs);
    if (start.outputs == Inputs) {
        outputPage_->OptionOutputType->Choose(AnalogOutput);
        outputPage_->OptionOutput->Choose(0);
        outputPage_->OptionFreqDigMode->Choose(FrequencyMode);
        inputPage_->OptionInputType->Choose(start.kind);
        inputPage_->OptionInput->Choose(start.member);
        typePage_->OptionAnalogType->Choose(VoltageSignal);
        typePage_->OptionPolarity->Choose(Unipolar);
    } else {
        outputPage_->OptionOutputType->Choose(start.kind);
        outputPage_->OptionOutput->Choose(start.member);
        outputPage_->OptionFreqDigMode->Choose(start.freqDigMode);
    }
    typePage_->ShowRange();
    UpdateBiasGainPage();
    UpdateOutputBiasGainPage();
}

void FormWizardIO::OptionInputsOutputs_Click(int index)
{
    setup_.branch = index;
    branchPage_->Picture()->update();
    // Each answer of the branch has a value from here on. A kind goes before its member, which follows it.
    if (setup_.IsInputBranch()) {
        for (OptionGroup *group : {inputPage_->OptionInputType, inputPage_->OptionInput,
                                   typePage_->OptionAnalogType, typePage_->OptionPolarity})
            group->ChooseFirst();
    } else {
        for (OptionGroup *group :
             {outputPage_->OptionOutputType, outputPage_->OptionOutput, outputPage_->OptionFreqDigMode})
            group->ChooseFirst();
    }
}

void FormWizardIO::OptionInputType_Click(int index)
{
    setup_.inputType = index;
    inputPage_->FollowType(index);
    FollowInput();
    calibrationPage_->RefreshActuals();
    UpdateDestinationList();
    UpdateBiasGainPage();
}

void FormWizardIO::OptionInput_Click(int index)
{
    setup_.input = index;
    FollowInput();
    UpdateDestinationList();
}

void FormWizardIO::FollowInput()
{
    inputPage_->Picture()->update();
    if (!setup_.IsAnalogInput())
        return;
    if (setup_.IsVoltageOnly())
        typePage_->OptionAnalogType->Choose(VoltageSignal);
    typePage_->EnableType(!setup_.IsVoltageOnly());
}

void FormWizardIO::OptionAnalogType_Click(int index)
{
    setup_.analogType = index;
    UpdateAnalogRange();
}

void FormWizardIO::OptionPolarity_Click(int index)
{
    setup_.polarity = index;
    UpdateAnalogRange();
    UpdateBiasGainPage();
}

void FormWizardIO::UpdateAnalogRange()
{
    typePage_->ShowRange();
    calibrationPage_->RefreshActuals();
}

void FormWizardIO::UpdateDestinationList()
{
    FillLink(destinationPage_, setup_.DestinationParam());
}

void FormWizardIO::FillLink(ParameterPage *page, int selector)
{
    // While no kind of input or output is chosen there is nothing to link.
    page->Fill(selector == 0 ? ParamChoices{} : desk().rules.FillParamCombo(selector));
}

void FormWizardIO::UpdateBiasGainPage()
{
    inputValuesPage_->Show(setup_.InputValuesView());
}

void FormWizardIO::OptionOutputType_Click(int index)
{
    setup_.outputType = index;
    outputPage_->FollowType(index);
    UpdateOutputBiasGainTags();
}

void FormWizardIO::UpdateOutputBiasGainTags()
{
    outputPage_->Picture()->update();
    FillLink(sourcePage_, setup_.SourceParam());
    UpdateOutputBiasGainPage();
}

void FormWizardIO::UpdateOutputBiasGainPage()
{
    outputValuesPage_->Show(setup_.OutputValuesView());
}

void FormWizardIO::LeaveStep(int step)
{
    if (step == CalibrationStep)
        calibrationPage_->Leave();
}

void FormWizardIO::EnterStep(int step)
{
    if (step == CalibrationStep)
        calibrationPage_->Enter();
}

void FormWizardIO::FollowLink(bool gone)
{
    calibrationPage_->FollowLink(gone);
}

} // namespace quorvik
