#include "wizards/basic/FormWizardBasic.h"

#include "platform/Asker.h"
#include "platform/Guard.h"
#include "wizards/basic/DrivePages.h"
#include "wizards/basic/RunPages.h"
#include "wizards/frame/EntryBox.h"
#include "wizards/frame/IntroPage.h"

#include <QLabel>

namespace quorvik
{

namespace
{

// On line the model comes from the drive; in torque mode neither feedback nor speeds are asked for.
constexpr PageRow<BasicSetup> NextRows[] = {{0, &BasicSetup::IsOnline, 2}, {3, &BasicSetup::IsTorque, 6}};
constexpr PageRow<BasicSetup> BackRows[] = {{2, &BasicSetup::IsOnline, 0}, {6, &BasicSetup::IsTorque, 3}};

struct ModeRow {
    bool armatureFeedback;
    bool jog;
    bool permanentMagnet;
    const char *references;
};

constexpr ModeRow ModeRows[] = {
    {true, true, true, "Set internal velocity references, if required."},
    {false, true, false, "Set internal velocity references, if required."},
    {true, false, true, "Set internal torque references, if required."},
};

QStringList IntroTexts()
{
    return {QStringLiteral("Introduction!"),
            QStringLiteral("This Mentor (Wizard) will help you setup the Sarvex in a basic configuration."),
            QStringLiteral("You can press Back at any time to change your selections."),
            QStringLiteral(
                "Note: It is recommended (but not necessary) that all parameters be reset to the factory "
                "setting before running this wizard. If the settings are unknown or in doubt, cancel this "
                "wizard and select New from the File menu (must be offline) to load the factory default "
                "configuration. Then re-start this wizard."),
            QStringLiteral("Please click Next to begin.")};
}

} // namespace

FormWizardBasic::FormWizardBasic(Desk &desk, QWidget *owner)
    : MentorForm(desk, owner, QStringLiteral("FormWizardBasic"), QStringLiteral("Quorvik Basic Setup Mentor"),
                 {"Basic Setup Mentor Introduction.htm", "Basic Setup Mentor Verify Drive Model.htm",
                  "Basic Setup Mentor Operating Mode.htm", "Basic Setup Mentor Motor Data.htm",
                  "Basic Setup Mentor Velocity Feedback.htm", "Basic Setup Mentor Max Speeds.htm",
                  "Basic Setup Mentor Internal References.htm", "Basic Setup Mentor Accel Decel.htm",
                  "Basic Setup Mentor Start Stop Options.htm", "Basic Setup Mentor Current Limits.htm",
                  "Basic Setup Mentor Finished.htm"},
                 NextRows, BackRows)
    , rows_(setup_)
    , modelPage_(new ModelPage(this, setup_))
    , modePage_(new OperatingModePage(this, setup_))
    , motorPage_(new MotorDataPage(this, setup_, rows_))
    , feedbackPage_(new FeedbackPage(this, setup_, rows_))
    , maxSpeedPage_(new MaxSpeedPage(this, setup_, rows_))
    , referencesPage_(new ReferencesPage(this, setup_, rows_))
    , accelDecelPage_(new AccelDecelPage(this, rows_))
    , startStopPage_(new StartStopPage(this, setup_))
    , limitsPage_(new CurrentLimitsPage(this, setup_, rows_))
{
    auto *introPage = new IntroPage(this,
                                    new WizardPicture(nullptr, QStringLiteral("A drive and its motor"),
                                                      [] { return PictureFile{"basic-intro"}; }),
                                    IntroTexts());
    ConnectChoices();
    ChooseDefaults();
    StackPages({introPage, modelPage_, modePage_, motorPage_, feedbackPage_, maxSpeedPage_, referencesPage_,
                accelDecelPage_, startStopPage_, limitsPage_},
               QStringLiteral("Save Parameters in Drive"));
}

void FormWizardBasic::ConnectChoices()
{
    modePage_->OptionOperatingMode->OnClick(this, &FormWizardBasic::OptionOperatingMode_Click);
    motorPage_->OptionFieldType->OnClick(this, &FormWizardBasic::OptionFieldType_Click);
    feedbackPage_->OptionFeedback->OnClick(this, &FormWizardBasic::OptionFeedback_Click);
    maxSpeedPage_->OptionMaxSpeed->OnClick(this, &FormWizardBasic::OptionMaxSpeed_Click);
    startStopPage_->OptionStartStopLogic->OnClick(this, &FormWizardBasic::OptionStartStopLogic_Click);
    On(startStopPage_->OptionStopMode, &OptionGroup::Click, this,
       [this](int index) { setup_.stopMode = index; });
    On(modelPage_, &ModelPage::ChangeModel, this, [this] { CommandChangeModel_Click(); });
    On(&rows_, &BasicRows::Changed, this, [this](Entry entry) { Entry_Change(entry); });
}

void FormWizardBasic::ChooseDefaults()
{
    modePage_->OptionOperatingMode->Choose(StandardVelocity);
    feedbackPage_->OptionFeedback->Choose(ArmatureFeedback);
    motorPage_->OptionFieldType->Choose(Shunt);
    maxSpeedPage_->OptionMaxSpeed->Choose(0);
    startStopPage_->OptionStartStopLogic->Choose(ThreeWire);
    startStopPage_->OptionStopMode->Choose(RampStop);
    limitsPage_->TextCurrentLimit_Change(0);
    limitsPage_->TextCurrentLimit_Change(1);
    feedbackPage_->UpdateTachJumpers();
    modelPage_->SetDriveData();
}

void FormWizardBasic::OptionOperatingMode_Click(int index)
{
    setup_.operatingMode = index;
    UpdateFieldRows();
    const ModeRow &row = ModeRows[index];
    if (!row.armatureFeedback && setup_.feedback == ArmatureFeedback) {
        feedbackPage_->OptionFeedback->ClearChoice();
        setup_.feedback = NoFeedback;
        feedbackPage_->Picture()->update();
    }
    feedbackPage_->OptionFeedback->Enable(ArmatureFeedback, ArmatureFeedback, row.armatureFeedback);
    EnableJog(row.jog);
    rows_.At(Entry::RatedSpeed).label->setText(setup_.RatedSpeedCaption());
    rows_.At(Entry::RatedSpeed).box->setAccessibleName(setup_.RatedSpeedCaption());
    motorPage_->OptionFieldType->Enable(PermanentMagnet, PermanentMagnet, row.permanentMagnet);
    if (!row.permanentMagnet)
        motorPage_->OptionFieldType->Choose(Shunt);
    referencesPage_->SetHeading(QString::fromLatin1(row.references));
    modePage_->Picture()->update();
}

void FormWizardBasic::OptionFieldType_Click(int index)
{
    setup_.fieldType = index;
    UpdateFieldRows();
}

void FormWizardBasic::UpdateFieldRows()
{
    rows_.Enable(Entry::BaseFieldCurrent, 1, setup_.UsesBaseFieldCurrent());
    rows_.Enable(Entry::TopFieldCurrent, 1, setup_.UsesTopFieldCurrent());
    motorPage_->Picture()->update();
}

void FormWizardBasic::OptionFeedback_Click(int index)
{
    setup_.feedback = index;
    feedbackPage_->EnableEncoder(index == EncoderFeedback);
    feedbackPage_->EnableTach(index == TachometerFeedback);
    feedbackPage_->Picture()->update();
}

void FormWizardBasic::OptionMaxSpeed_Click(int index)
{
    if (index == 0)
        maxSpeedPage_->SetRatedMaxSpeeds();
    maxSpeedPage_->EnableMaxSpeeds(index != 0);
}

void FormWizardBasic::OptionStartStopLogic_Click(int index)
{
    setup_.startStopLogic = index;
    startStopPage_->ShowLogic(index);
}

void FormWizardBasic::CommandChangeModel_Click()
{
    if (ChangeModel)
        ChangeModel();
    modelPage_->SetDriveData();
}

void FormWizardBasic::Entry_Change(Entry entry)
{
    switch (entry) {
    case Entry::ArmatureCurrent:
        limitsPage_->TextCurrentLimit_Change(0);
        limitsPage_->TextCurrentLimit_Change(1);
        break;
    case Entry::RatedSpeed:
        maxSpeedPage_->SetRatedMaxSpeeds();
        maxSpeedPage_->ShowRatedSpeed();
        feedbackPage_->UpdateTachJumpers();
        break;
    case Entry::TachRating:
        feedbackPage_->UpdateTachJumpers();
        break;
    case Entry::PositiveLimit:
    case Entry::NegativeLimit:
        limitsPage_->TextCurrentLimit_Change(int(entry) - int(Entry::PositiveLimit));
        break;
    default:
        break;
    }
    for (WizardPage *page : std::initializer_list<WizardPage *>{motorPage_, maxSpeedPage_, referencesPage_})
        page->Picture()->update();
}

void FormWizardBasic::EnableJog(bool enable)
{
    rows_.Enable(Entry::JogRef, 1, enable);
    accelDecelPage_->EnableJog(enable);
}

void FormWizardBasic::ApplyDriveType()
{
    const bool regenerative = desk().table.IsRegenerative();
    limitsPage_->EnableNegative(regenerative);
    OptionGroup *stopMode = startStopPage_->OptionStopMode;
    // Also on a regenerative drive, at each pass.
    if (stopMode->Chosen() == QuickStop)
        stopMode->Choose(RampStop);
    stopMode->Enable(QuickStop, QuickStop, regenerative);
    accelDecelPage_->ShowReverse(regenerative);
    maxSpeedPage_->EnableMaxSpeeds(maxSpeedPage_->OptionMaxSpeed->Chosen() != 0);
}

int FormWizardBasic::NextStep(int step)
{
    constexpr int motorData = 3;
    if (step == motorData)
        ApplyDriveType();
    return MentorForm::NextStep(step);
}

void FormWizardBasic::ShowReminder()
{
    if (setup_.feedback != TachometerFeedback)
        return;
    QString text = QStringLiteral("Tachometer feedback jumpers must be set as follows:\r\n");
    for (const QString &jumper : feedbackPage_->JumperTexts())
        text += QStringLiteral("   ") + jumper + QStringLiteral("\r\n");
    desk().asker.MsgBox(text, MsgButtons::Ok, MsgIcon::Information, QStringLiteral("Reminder"));
}

} // namespace quorvik
