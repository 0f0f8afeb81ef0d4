#include "wizards/basic/DrivePages.h"

#include "desktop/Form.h"
#include "model/TextTables.h"
#include "platform/Guard.h"
#include "wizards/basic/BasicPictures.h"
#include "wizards/frame/EntryBox.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

QStringList EnumTexts(int typeCode)
{
    QStringList texts;
    for (int value = 0; value < EnumCount(typeCode); ++value)
        texts.append(EnumText(value, typeCode));
    return texts;
}

QGridLayout *MakeRowGrid(QWidget *frame)
{
    auto *grid = new QGridLayout(frame);
    grid->setColumnStretch(0, 1);
    return grid;
}

} // namespace

ModelPage::ModelPage(QWidget *parent, const BasicSetup &setup)
    : WizardPage(parent,
                 MakePicture(QStringLiteral("The drive and its model number"), setup, DriveModelPicture))
    , setup_(setup)
{
    AddHeading(QStringLiteral("Verify drive model."));
    for (int i = 0; i < 3; ++i)
        labelDriveData_[std::size_t(i)] = AddText({}, ControlName("LabelDriveData", i));
    auto *change = new QPushButton(QStringLiteral("Change..."), this);
    change->setObjectName(QStringLiteral("CommandChangeModel"));
    On(change, &QPushButton::clicked, this, [this] { Q_EMIT ChangeModel(); });
    Content()->addWidget(change, 0, Qt::AlignLeft);
    CloseContent();
}

void ModelPage::SetDriveData()
{
    const Model &model = setup_.Table();
    const std::int32_t code = model.Value(Param::DriveModel);
    labelDriveData_[0]->setText(QStringLiteral("Model: ") + ModelText(code));
    labelDriveData_[1]->setText(QStringLiteral("Type: ") + DriveTypeText(model.IsRegenerative() ? 0 : 1));
    labelDriveData_[2]->setText(QStringLiteral("Armature Amps: ") + QString::number(RatedAmps(code & 15)));
    Picture()->update();
}

OperatingModePage::OperatingModePage(QWidget *parent, const BasicSetup &setup)
    : WizardPage(parent,
                 MakePicture(QStringLiteral("Torque and power over speed"), setup, OperatingModePicture))
    , OptionOperatingMode(new OptionGroup(this, "OptionOperatingMode",
                                          {QStringLiteral("Standard &Velocity"),
                                           QStringLiteral("&Constant HP Velocity (Field Crossover)"),
                                           QStringLiteral("&Torque (Current)")}))
{
    AddHeading(QStringLiteral("Select the basic operating mode."));
    for (int i = 0; i < OptionOperatingMode->Count(); ++i)
        Content()->addWidget(OptionOperatingMode->Option(i));
    CloseContent();
}

MotorDataPage::MotorDataPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows)
    : WizardPage(parent, MakePicture(QStringLiteral("The nameplate of the motor"), setup, NameplatePicture))
{
    AddHeading(QStringLiteral("Enter motor data."));
    AddText(QStringLiteral(
        "Typically this information will be located on the motor nameplate. Also note that many motors have "
        "dual field windings and thus have two Field Current ratings. Be sure to enter the correct Field "
        "Current rating for the type of field connection that you are using!"));
    QGroupBox *armature = AddFrame(QStringLiteral("Armature"));
    QGridLayout *grid = MakeRowGrid(armature);
    rows.Make(armature, grid, 0, Entry::ArmatureCurrent);
    rows.Make(armature, grid, 1, Entry::ArmatureVoltage);

    QGroupBox *speed = AddFrame(QStringLiteral("Speed"));
    rows.Make(speed, MakeRowGrid(speed), 0, Entry::RatedSpeed);

    QGroupBox *field = AddFrame(QStringLiteral("Field"));
    grid = MakeRowGrid(field);
    OptionFieldType = new OptionGroup(field, "OptionFieldType",
                                      {QStringLiteral("&Shunt"), QStringLiteral("&Permanent Magnet")});
    auto *kinds = new QHBoxLayout;
    kinds->addWidget(OptionFieldType->Option(0));
    kinds->addWidget(OptionFieldType->Option(1));
    kinds->addStretch(1);
    grid->addLayout(kinds, 0, 0, 1, 3);
    rows.Make(field, grid, 1, Entry::BaseFieldCurrent);
    rows.Make(field, grid, 2, Entry::TopFieldCurrent);
    CloseContent();
}

FeedbackPage::FeedbackPage(QWidget *parent, BasicSetup &setup, BasicRows &rows)
    : WizardPage(parent, new WizardPicture(
                             nullptr, QStringLiteral("Motor, feedback device and the tachometer jumpers"),
                             [&setup, this] { return FeedbackPicture(setup, jumpers_); }))
    , setup_(setup)
{
    AddHeading(
        QStringLiteral("Select the type of velocity feedback desired, and any ratings if applicable."));
    OptionFeedback = new OptionGroup(
        this, "OptionFeedback",
        {QStringLiteral("&Armature"), QStringLiteral("&Tachometer"), QStringLiteral("&Encoder")});
    for (int i = 0; i < OptionFeedback->Count(); ++i)
        Content()->addWidget(OptionFeedback->Option(i));

    QGroupBox *tachFrame = AddFrame(QStringLiteral("Tachometer"), QStringLiteral("FrameTach"));
    QGridLayout *grid = MakeRowGrid(tachFrame);
    QLabel *typeLabel = MakeLabel(tachFrame, QStringLiteral("Tach Type"), QStringLiteral("LabelTachType"));
    auto *comboTachType = new QComboBox(tachFrame);
    comboTachType->setObjectName(QStringLiteral("ComboTachType"));
    comboTachType->setAccessibleName(typeLabel->text());
    comboTachType->addItems(EnumTexts(22));
    grid->addWidget(typeLabel, 0, 0);
    grid->addWidget(comboTachType, 0, 1);
    rows.Make(tachFrame, grid, 1, Entry::TachRating);
    labelTachJumper_[3] = MakeLabel(
        tachFrame,
        QStringLiteral("Tachometer Feedback jumpers on the Control Board need to be set as follows:"),
        ControlName("LabelTachJumper", 3));
    labelTachJumper_[3]->setWordWrap(true);
    grid->addWidget(labelTachJumper_[3], 2, 0, 1, 3);
    auto *jumperRow = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        labelTachJumper_[std::size_t(i)] = MakeLabel(tachFrame, {}, ControlName("LabelTachJumper", i));
        jumperRow->addWidget(labelTachJumper_[std::size_t(i)], 1);
    }
    grid->addLayout(jumperRow, 3, 0, 1, 3);
    const EntryRow &rating = rows.At(Entry::TachRating);
    tachControls_ = {tachFrame, typeLabel, comboTachType, rating.label, rating.unit, rating.box};
    for (QLabel *label : labelTachJumper_)
        tachControls_.append(label);

    QGroupBox *encoderFrame = AddFrame(QStringLiteral("Encoder"), QStringLiteral("FrameEncoder"));
    grid = MakeRowGrid(encoderFrame);
    QLabel *linesLabel =
        MakeLabel(encoderFrame, QStringLiteral("Encoder Lines"), QStringLiteral("LabelEncoderLines"));
    auto *comboEncoderLines = new QComboBox(encoderFrame);
    comboEncoderLines->setObjectName(QStringLiteral("ComboEncoderLines"));
    comboEncoderLines->setAccessibleName(linesLabel->text());
    comboEncoderLines->addItems(EnumTexts(24));
    grid->addWidget(linesLabel, 0, 0);
    grid->addWidget(comboEncoderLines, 0, 1);
    encoderControls_ = {encoderFrame, linesLabel, comboEncoderLines};
    CloseContent();

    comboTachType->setCurrentIndex(setup.tachType);
    comboEncoderLines->setCurrentIndex(setup.encoderLines);
    On(comboTachType, &QComboBox::currentIndexChanged, this, [&setup](int index) { setup.tachType = index; });
    On(comboEncoderLines, &QComboBox::currentIndexChanged, this,
       [&setup](int index) { setup.encoderLines = index; });
}

void FeedbackPage::EnableEncoder(bool enable)
{
    for (QWidget *control : std::as_const(encoderControls_))
        control->setEnabled(enable);
}

void FeedbackPage::EnableTach(bool enable)
{
    for (QWidget *control : std::as_const(tachControls_))
        control->setEnabled(enable);
}

void FeedbackPage::UpdateTachJumpers()
{
    jumpers_ = setup_.Jumpers();
    const struct {
        const char *name;
        int value;
    } shown[] = {{"J5 = ", jumpers_.j5}, {"J6 = ", jumpers_.j6}, {"J7 = ", jumpers_.j7}};
    for (std::size_t i = 0; i < std::size(shown); ++i)
        labelTachJumper_[i]->setText(QString::fromLatin1(shown[i].name) + QString::number(shown[i].value));
    Picture()->update();
}

QStringList FeedbackPage::JumperTexts() const
{
    return {labelTachJumper_[0]->text(), labelTachJumper_[1]->text(), labelTachJumper_[2]->text()};
}

} // namespace quorvik
