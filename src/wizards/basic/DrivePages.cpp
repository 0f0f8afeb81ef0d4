#include "wizards/basic/DrivePages.h"

#include "desktop/Form.h"
#include "model/TextTables.h"
#include "platform/Guard.h"
#include "wizards/basic/BasicPictures.h"
#include "wizards/frame/EntryBox.h"

#include <QAbstractButton>
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
    const ParameterTable &table = setup_.Table();
    const std::int32_t code = table.Value(Param::DriveModel);
    labelDriveData_[0]->setText(QStringLiteral("Model: ") + ModelText(code));
    labelDriveData_[1]->setText(QStringLiteral("Type: ") + DriveTypeText(table.IsRegenerative() ? 0 : 1));
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
    for (QAbstractButton *option : OptionOperatingMode->buttons())
        Content()->addWidget(option);
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
    for (QAbstractButton *option : OptionFieldType->buttons())
        kinds->addWidget(option);
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
    for (QAbstractButton *option : OptionFeedback->buttons())
        Content()->addWidget(option);

    tachFrame_ = AddFrame(QStringLiteral("Tachometer"), QStringLiteral("FrameTach"));
    QGridLayout *grid = MakeRowGrid(tachFrame_);
    AddList(grid, "TachType", QStringLiteral("Tach Type"), 22, setup.tachType);
    rows.Make(tachFrame_, grid, 1, Entry::TachRating);
    labelTachJumper_[3] = MakeLabel(
        tachFrame_,
        QStringLiteral("Tachometer Feedback jumpers on the Control Board need to be set as follows:"),
        ControlName("LabelTachJumper", 3));
    labelTachJumper_[3]->setWordWrap(true);
    grid->addWidget(labelTachJumper_[3], 2, 0, 1, 3);
    auto *jumperRow = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        labelTachJumper_[std::size_t(i)] = MakeLabel(tachFrame_, {}, ControlName("LabelTachJumper", i));
        jumperRow->addWidget(labelTachJumper_[std::size_t(i)], 1);
    }
    grid->addLayout(jumperRow, 3, 0, 1, 3);

    encoderFrame_ = AddFrame(QStringLiteral("Encoder"), QStringLiteral("FrameEncoder"));
    AddList(MakeRowGrid(encoderFrame_), "EncoderLines", QStringLiteral("Encoder Lines"), 24,
            setup.encoderLines);
    CloseContent();
}

void FeedbackPage::AddList(QGridLayout *grid, const char *name, const QString &caption, int typeCode,
                           int &answer)
{
    QWidget *frame = grid->parentWidget();
    QLabel *label = MakeLabel(frame, caption, QStringLiteral("Label") + QLatin1String(name));
    auto *list = new QComboBox(frame);
    list->setObjectName(QStringLiteral("Combo") + QLatin1String(name));
    list->setAccessibleName(caption);
    for (int value = 0; value < EnumCount(typeCode); ++value)
        list->addItem(EnumText(value, typeCode));
    list->setCurrentIndex(answer);
    grid->addWidget(label, 0, 0);
    grid->addWidget(list, 0, 1);
    On(list, &QComboBox::currentIndexChanged, this, [&answer](int index) { answer = index; });
}

void FeedbackPage::EnableEncoder(bool enable)
{
    EnableFrame(encoderFrame_, enable);
}

void FeedbackPage::EnableTach(bool enable)
{
    EnableFrame(tachFrame_, enable);
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
