#include "link/forms/FormSelectCommMode.h"

#include "desktop/TitleRoom.h"
#include "link/DriveLink.h"
#include "link/forms/PortList.h"
#include "model/ModelList.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int Online = 0;
constexpr int Offline = 1;
constexpr int ModelRowTwips = 600;
constexpr int TwipsPerPixel = 15;

/** The longer one of the two titles. */
const QString &OfflineTitle()
{
    static const QString title = QStringLiteral("Select Comm Mode & Model");
    return title;
}

} // namespace

FormSelectCommMode::FormSelectCommMode(Desk &desk, QWidget *owner, DriveLink &link, Ports::Source present)
    : DialogForm(desk, owner, QStringLiteral("FormSelectCommMode"), QStringLiteral("Select Com Mode"),
                 QStringLiteral("Select Comm Mode.htm"))
    , link_(link)
    , ports_(desk.settings, std::move(present))
    , modelRow_(new QWidget(this))
    , comboModels_(new QComboBox(modelRow_))
{
    const QString captions[] = {QStringLiteral("&Online"), QStringLiteral("O&ffline")};
    auto *layout = new QVBoxLayout(this);
    layout->addStrut(RoomForTitle(*this, OfflineTitle()));
    for (const int index : {Online, Offline}) {
        auto *option = new QRadioButton(captions[index], this);
        option->setObjectName(ControlName("OptionSerialCommMode", index));
        option->setChecked(index == Online);
        On(option, &QRadioButton::toggled, this, [this, index](bool chosen) {
            if (chosen)
                ModeChosen(index);
        });
        optionSerialCommMode_[index] = option;
        layout->addWidget(option);
    }

    auto *labelInstructions = new QLabel(QStringLiteral("Offline is when no drive is connected."), this);
    labelInstructions->setObjectName(QStringLiteral("LabelInstructions"));
    layout->addWidget(labelInstructions);
    // Lines broken by hand: a window that fits itself to what it shows has no width to wrap at.
    auto *labelMeaning = new QLabel(
        QStringLiteral("Online reads all parameters of the drive; what you enter then goes to it at once.\n"
                       "Offline prepares a set for the model that you choose; no drive is touched."),
        this);
    labelMeaning->setObjectName(QStringLiteral("LabelMeaning"));
    layout->addWidget(labelMeaning);

    portList_ = new PortList(desk.table, ports_, link.Timings(), this);
    portList_->SetNumber(link_.MSComm1.CommPort());
    On(portList_, &PortList::Chosen, this, [this](int number) { link_.MSComm1.SetCommPort(number); });
    layout->addWidget(portList_);

    comboModels_->setObjectName(QStringLiteral("ComboModels"));
    comboModels_->setAccessibleName(QStringLiteral("Drive model"));
    comboModels_->addItems(ModelListItems());
    comboModels_->setCurrentIndex(ModelListIndex(desk.table.Value(Param::DriveModel)));
    auto *row = new QHBoxLayout(modelRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(comboModels_);
    modelRow_->setFixedHeight(
        std::max(comboModels_->sizeHint().height(), ModelRowTwips / TwipsPerPixel - layout->spacing()));
    modelRow_->hide();
    layout->addWidget(modelRow_);

    auto *buttons = new QDialogButtonBox(this);
    auto *commandOK = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    commandOK->setObjectName(QStringLiteral("CommandOK"));
    commandOK->setDefault(true);
    buttons->addButton(MakeCommandHelp(), QDialogButtonBox::HelpRole);
    On(commandOK, &QPushButton::clicked, this, [this] { CommandOK_Click(); });
    layout->addWidget(buttons);
    // The window is as high as what it shows: it grows and shrinks with the model list.
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

bool FormSelectCommMode::OnlineChosen() const
{
    return result() == Accepted && optionSerialCommMode_[Online]->isChecked();
}

void FormSelectCommMode::ModeChosen(int index)
{
    modelRow_->setVisible(index != Online);
    // It keeps its place, so that the window grows by the list of models and by nothing else.
    portList_->StopFinding();
    portList_->setEnabled(index == Online);
    setWindowTitle(index == Online ? QStringLiteral("Select Comm Mode") : OfflineTitle());
}

void FormSelectCommMode::done(int result)
{
    Guarded([this] {
        portList_->StopFinding();
        const int number = link_.MSComm1.CommPort();
        ports_.FollowAdapter(number, portList_->HasChosen(number));
    });
    DialogForm::done(result);
}

void FormSelectCommMode::CommandOK_Click()
{
    if (optionSerialCommMode_[Offline]->isChecked()) {
        ParameterTable &table = desk().table;
        const Intent intent(table, Origin::EditDialog, QStringLiteral("Select Drive Model"));
        table.SetValue(Param::DriveModel, ModelOfListItem(comboModels_->currentText()), ChangeCause::Entered);
        table.RefreshDependentParams(Param::DriveModel);
    }
    accept();
}

} // namespace quorvik
