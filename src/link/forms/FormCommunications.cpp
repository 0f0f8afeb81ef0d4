#include "link/forms/FormCommunications.h"

#include "link/DriveLink.h"
#include "link/forms/PortList.h"
#include "platform/Guard.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int DeviceColumns = 34;

} // namespace

FormCommunications::FormCommunications(Desk &desk, QWidget *owner, DriveLink &link, Ports::Source present)
    : DialogForm(desk, owner, QStringLiteral("FormCommunications"), QStringLiteral("Select Comm Settings"),
                 QStringLiteral("Communications.htm"))
    , link_(link)
    , ports_(desk.settings, std::move(present))
    , comboCommPort_(new QComboBox(this))
    , comboDevice_(new QComboBox(this))
    , labelPluggedIn_(new QLabel(this))
    , portList_(new PortList(desk.table, ports_, link.Timings(), this))
{
    comboCommPort_->setObjectName(QStringLiteral("ComboCommPort"));
    comboCommPort_->setAccessibleName(QStringLiteral("Com port"));
    comboCommPort_->setMaxVisibleItems(Ports::Last);
    for (int number = Ports::First; number <= Ports::Last; ++number)
        comboCommPort_->addItem(QStringLiteral("Com%1").arg(number));
    // A stored number beyond the list shows as no choice, and stays unless one is made.
    comboCommPort_->setCurrentIndex(link_.MSComm1.CommPort() <= Ports::Last ? link_.MSComm1.CommPort() - 1
                                                                            : -1);

    comboDevice_->setObjectName(QStringLiteral("ComboDevice"));
    comboDevice_->setAccessibleName(QStringLiteral("Device behind the com port"));
    comboDevice_->setToolTip(QStringLiteral("The device that this com port stands for. Choose another, or "
                                            "type its path, or tcp://host:port or rfc2217://host:port "
                                            "for one behind the network."));
    comboDevice_->setEditable(true);
    comboDevice_->setInsertPolicy(QComboBox::NoInsert);
    // A path stands as it was typed, not as one in the list goes on.
    comboDevice_->setCompleter(nullptr);
    comboDevice_->lineEdit()->setAccessibleName(comboDevice_->accessibleName());
    comboDevice_->setMinimumContentsLength(DeviceColumns);

    labelPluggedIn_->setObjectName(QStringLiteral("LabelPluggedIn"));
    labelPluggedIn_->setTextFormat(Qt::PlainText);
    labelPluggedIn_->setWordWrap(true);
    // Room for a long name, or what is to be said of an address: the window does not jump while adapters come
    // and go, and a height that followed the width would count for nothing in how small it may become.
    labelPluggedIn_->setFixedHeight(2 * labelPluggedIn_->fontMetrics().lineSpacing());
    labelPluggedIn_->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto *labelCommPort = new QLabel(QStringLiteral("Com Port:"), this);
    labelCommPort->setObjectName(QStringLiteral("LabelCommPort"));
    auto *labelDevice = new QLabel(QStringLiteral("Device:"), this);
    labelDevice->setObjectName(QStringLiteral("LabelDevice"));
    auto *fields = new QFormLayout;
    fields->addRow(labelCommPort, comboCommPort_);
    fields->addRow(labelDevice, comboDevice_);
    fields->addRow(QString(), labelPluggedIn_);

    auto *labelMeaning =
        new QLabel(QStringLiteral("Choose the port of the drive's cable. Without a drive leave it as it is:\n"
                                  "Options, Communications changes it later, while off line."),
                   this);
    labelMeaning->setObjectName(QStringLiteral("LabelMeaning"));

    auto *buttons = new QDialogButtonBox(this);
    auto *commandOK = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    commandOK->setObjectName(QStringLiteral("CommandOK"));
    commandOK->setDefault(true);
    buttons->addButton(MakeCommandHelp(), QDialogButtonBox::HelpRole);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(labelMeaning);
    layout->addWidget(portList_);
    layout->addWidget(buttons);

    const bool mayChange = !link_.PortOpen();
    comboCommPort_->setEnabled(mayChange);
    comboDevice_->setEnabled(mayChange);
    portList_->SetMayChoose(mayChange);

    On(comboCommPort_, &QComboBox::currentIndexChanged, this, [this] {
        KeepDevice();
        ShowDevice();
    });
    On(portList_, &PortList::Chosen, this, [this](int number) {
        {
            // What stands in the box belongs to the number before, which the list may just have changed.
            const QSignalBlocker quiet(comboCommPort_);
            if (number != shownNumber_)
                KeepDevice();
            comboCommPort_->setCurrentIndex(number - 1);
        }
        ShowDevice();
    });
    On(comboDevice_, &QComboBox::textActivated, this, [this] { KeepDevice(); });
    On(comboDevice_, &QComboBox::editTextChanged, this, [this] { ShowPluggedIn(); });
    On(comboDevice_->lineEdit(), &QLineEdit::editingFinished, this, [this] { KeepDevice(); });
    On(commandOK, &QPushButton::clicked, this, [this] { accept(); });
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { ShowPluggedIn(); });
    timerUpdateScreen_.start(LookForPortsMs);
    ShowDevice();
}

int FormCommunications::Number() const
{
    return comboCommPort_->currentIndex() + 1;
}

void FormCommunications::FillDevices()
{
    comboDevice_->clear();
    const QList<SerialDevice> present = ports_.Devices();
    for (const SerialDevice &device : present) {
        comboDevice_->addItem(device.path);
        comboDevice_->setItemData(comboDevice_->count() - 1, device.description, Qt::ToolTipRole);
    }
    const QString fixed = Ports::DefaultDevice(Number());
    if (!fixed.isEmpty() && comboDevice_->findText(fixed) < 0)
        comboDevice_->addItem(fixed);
}

void FormCommunications::ShowDevice()
{
    const QSignalBlocker quiet(comboDevice_);
    shownNumber_ = Number();
    FillDevices();
    comboDevice_->setEditText(ports_.DeviceOf(Number()));
    portList_->SetNumber(Number());
    ShowPluggedIn();
}

void FormCommunications::ShowPluggedIn()
{
    labelPluggedIn_->setText(ports_.PluggedIn(comboDevice_->currentText().trimmed()));
}

void FormCommunications::KeepDevice()
{
    const QString path = comboDevice_->currentText().trimmed();
    if (shownNumber_ >= Ports::First && comboDevice_->isEnabled() && path != ports_.DeviceOf(shownNumber_)) {
        ports_.SetDevice(shownNumber_, path);
        portList_->RefreshSoon();
    }
    ShowPluggedIn();
}

void FormCommunications::done(int result)
{
    Guarded([this] {
        portList_->StopFinding();
        KeepDevice();
        if (link_.PortOpen() || Number() < Ports::First)
            return;
        link_.MSComm1.SetCommPort(Number());
        ports_.FollowAdapter(Number(), portList_->HasChosen(Number()));
    });
    DialogForm::done(result);
}

} // namespace quorvik
