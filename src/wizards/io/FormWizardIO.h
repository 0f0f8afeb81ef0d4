#pragma once

#include "wizards/frame/MentorForm.h"
#include "wizards/io/IOChecks.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

class AnalogTypePage;
class BranchPage;
class CalibrationPage;
class InputPage;
class OutputPage;
class ParameterPage;
class ValuesPage;

/** The I/O Mentor: sets up one input or one output, opening on the one that Desk::WizardIOStart
 * names. */
class FormWizardIO : public MentorForm<IOSetup, IOChecks>
{
    Q_OBJECT

public:
    FormWizardIO(Desk &desk, QWidget *owner);

protected:
    void LeaveStep(int step) override;
    void EnterStep(int step) override;
    void FollowLink(bool gone) override;
    WritePlan WriteSetup() override { return setup_.WriteIOSetup(); }

private:
    void ConnectInputChoices();
    void ConnectOutputChoices();
    void ChooseDefaults();
    void OptionInputsOutputs_Click(int index);
    void OptionInputType_Click(int index);
    void OptionInput_Click(int index);
    void OptionAnalogType_Click(int index);
    void OptionPolarity_Click(int index);
    void OptionOutputType_Click(int index);
    void FollowInput();
    void UpdateAnalogRange();
    void UpdateDestinationList();
    void FillLink(ParameterPage *page, int selector);
    void UpdateBiasGainPage();
    void UpdateOutputBiasGainTags();
    void UpdateOutputBiasGainPage();

    BranchPage *branchPage_;
    InputPage *inputPage_;
    ParameterPage *destinationPage_;
    AnalogTypePage *typePage_;
    CalibrationPage *calibrationPage_;
    ValuesPage *inputValuesPage_;
    OutputPage *outputPage_;
    ParameterPage *sourcePage_;
    ValuesPage *outputValuesPage_;
};

} // namespace quorvik
