#pragma once

#include "wizards/basic/BasicChecks.h"
#include "wizards/basic/BasicRows.h"
#include "wizards/frame/MentorForm.h"

namespace quorvik
{

class AccelDecelPage;
class CurrentLimitsPage;
class FeedbackPage;
class MaxSpeedPage;
class ModelPage;
class MotorDataPage;
class OperatingModePage;
class ReferencesPage;
class StartStopPage;

/** The Basic Setup Mentor: leads through a first set-up of drive and motor. */
class FormWizardBasic : public MentorForm<BasicSetup, BasicChecks>
{
    Q_OBJECT

public:
    FormWizardBasic(Desk &desk, QWidget *owner);

    /** CommandChangeModel: shows the modal choice of a drive model. Filled in by whoever opens the window. */
    std::function<void()> ChangeModel;

protected:
    int NextStep(int step) override;
    WritePlan WriteSetup() override { return setup_.WriteBasicSetup(); }
    void ShowReminder() override;

private:
    void ConnectChoices();
    void ChooseDefaults();
    void OptionOperatingMode_Click(int index);
    void OptionFieldType_Click(int index);
    void OptionFeedback_Click(int index);
    void OptionMaxSpeed_Click(int index);
    void OptionStartStopLogic_Click(int index);
    void CommandChangeModel_Click();
    void Entry_Change(Entry entry);
    void UpdateFieldRows();
    void EnableJog(bool enable);
    void ApplyDriveType();

    BasicRows rows_;
    ModelPage *modelPage_;
    OperatingModePage *modePage_;
    MotorDataPage *motorPage_;
    FeedbackPage *feedbackPage_;
    MaxSpeedPage *maxSpeedPage_;
    ReferencesPage *referencesPage_;
    AccelDecelPage *accelDecelPage_;
    StartStopPage *startStopPage_;
    CurrentLimitsPage *limitsPage_;
};

} // namespace quorvik
