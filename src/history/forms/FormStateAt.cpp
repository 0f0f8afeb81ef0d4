#include "history/forms/FormStateAt.h"

#include "platform/Guard.h"
#include "platform/TimeUnits.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace quorvik
{

namespace
{

constexpr int DriveCharacters = 48;

} // namespace

FormStateAt::FormStateAt(Desk &givenDesk, QWidget *owner, std::vector<JournalSighting> drives,
                         const ShownAction *action)
    : DialogForm(givenDesk, owner, QStringLiteral("FormStateAt"), QStringLiteral("State at This Time"),
                 QStringLiteral("History.htm"))
    , drives_(std::move(drives))
    , comboDrive_(new QComboBox(this))
    , editMoment_(new QDateTimeEdit(this))
{
    comboDrive_->setObjectName(QStringLiteral("ComboDrive"));
    comboDrive_->setAccessibleName(QStringLiteral("Drive"));
    comboDrive_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    comboDrive_->setMinimumContentsLength(DriveCharacters);
    for (const JournalSighting &drive : drives_)
        comboDrive_->addItem(drive.identity.Text());
    comboDrive_->setCurrentIndex(IndexOf(action));
    editMoment_->setObjectName(QStringLiteral("EditMoment"));
    editMoment_->setAccessibleName(QStringLiteral("Moment, in this computer's time"));
    editMoment_->findChild<QLineEdit *>()->setAccessibleName(editMoment_->accessibleName());
    editMoment_->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    editMoment_->setCalendarPopup(true);
    editMoment_->setDateTime(action ? QDateTime::fromMSecsSinceEpoch(action->action.time.utcMs)
                                    : desk().Now());
    auto *labelWhat = new QLabel(QStringLiteral("What the drive held at the end of this second is worked out "
                                                "from the history and the backups, and opened in Compare."),
                                 this);
    labelWhat->setObjectName(QStringLiteral("LabelWhat"));
    labelWhat->setWordWrap(true);
    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("&Drive:"), comboDrive_);
    fields->addRow(QStringLiteral("&Moment:"), editMoment_);
    auto *commandOk = new QPushButton(QStringLiteral("&Compare"), this);
    commandOk->setObjectName(QStringLiteral("CommandOK"));
    commandOk->setDefault(true);
    On(commandOk, &QPushButton::clicked, this, [this] { accept(); });
    auto *commandCancel = new QPushButton(QStringLiteral("Cancel"), this);
    commandCancel->setObjectName(QStringLiteral("CommandCancel"));
    On(commandCancel, &QPushButton::clicked, this, [this] { reject(); });
    auto *commands = new QHBoxLayout;
    commands->addStretch(1);
    for (QPushButton *command : {commandOk, commandCancel, MakeCommandHelp()})
        commands->addWidget(command);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(labelWhat);
    layout->addLayout(fields);
    layout->addLayout(commands);
    editMoment_->setFocus();
}

int FormStateAt::IndexOf(const ShownAction *action) const
{
    if (action && action->drive)
        for (std::size_t i = 0; i < drives_.size(); ++i) {
            const double hours = double(drives_[i].time.utcMs - action->action.time.utcMs) / MsPerHour;
            if (drives_[i].identity.IsSameAs(*action->drive, hours))
                return int(i);
        }
    return 0;
}

const JournalSighting &FormStateAt::Drive() const
{
    return drives_[std::size_t(comboDrive_->currentIndex())];
}

qint64 FormStateAt::UtcMs() const
{
    return editMoment_->dateTime().toSecsSinceEpoch() * MsPerSecond + MsPerSecond - 1;
}

} // namespace quorvik
