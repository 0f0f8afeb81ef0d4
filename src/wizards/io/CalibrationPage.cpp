#include "wizards/io/CalibrationPage.h"

#include "desktop/Form.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "wizards/frame/EntryBox.h"
#include "wizards/io/IOPictures.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

constexpr int UpdateScreenMs = 500;
constexpr int TextLength = 5;

} // namespace

CalibrationPage::CalibrationPage(QWidget *parent, IOSetup &setup)
    : WizardPage(parent, MakePicture(QStringLiteral("The scaling line with its 0 and 100 % marks"), setup,
                                     CalibrationPicture))
    , setup_(setup)
    , table_(setup.Table())
    , timerUpdateScreen_(new QTimer(this))
{
    AddHeading(QStringLiteral("Calibrate Input."), ControlName("LabelCalibrate", 0));
    instruction_ = AddText({}, ControlName("LabelCalibrate", 1));
    MakeFrame(0);
    MakeFrame(1);
    auto *statusRow = new QHBoxLayout;
    QLabel *caption = MakeLabel(this, QStringLiteral("Status:"), QStringLiteral("LabelStat"));
    labelStatus_ = MakeLabel(this, {}, QStringLiteral("LabelStatus"));
    QFont font = labelStatus_->font();
    font.setBold(true);
    labelStatus_->setFont(font);
    statusRow->addWidget(caption);
    statusRow->addWidget(labelStatus_, 1);
    Content()->addLayout(statusRow);
    CloseContent();

    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    timerUpdateScreen_->setInterval(UpdateScreenMs);
    connect(timerUpdateScreen_, &QTimer::timeout, this,
            [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
}

CalibrationPage::~CalibrationPage()
{
    Guarded([this] { Leave(); });
}

void CalibrationPage::MakeFrame(int index)
{
    const QString percent = index == 0 ? QStringLiteral("0%") : QStringLiteral("100%");
    QGroupBox *frame = AddFrame(percent + QStringLiteral(" Calibration"));
    auto *grid = new QGridLayout(frame);
    grid->setColumnStretch(4, 1);
    grid->setHorizontalSpacing(fontMetrics().height());
    Side &side = sides_[std::size_t(index)];
    side.labelCal = MakeLabel(frame, QStringLiteral("Calibration"), ControlName("LabelCal", index));
    side.textCal = new EntryBox(frame, ControlName("TextCal", index), TextLength);
    side.textCal->setAccessibleName(frame->title());
    side.labelActual = MakeLabel(frame, {}, ControlName("LabelActual", index));
    side.textActual = new EntryBox(frame, ControlName("TextActual", index), TextLength);
    side.textActual->setAccessibleName(frame->title());
    side.commandRecord = new QPushButton(percent + QStringLiteral(" Auto"), frame);
    side.commandRecord->setObjectName(ControlName("CommandRecord", index));
    grid->addWidget(side.labelCal, 0, 0);
    grid->addWidget(side.textCal, 0, 1);
    grid->addWidget(side.commandRecord, 0, 5);
    grid->addWidget(side.labelActual, 0, 2);
    grid->addWidget(side.textActual, 0, 3);

    On(side.textCal, &EntryBox::textChanged, this, [this, index] { TextCal_Change(index); });
    On(side.textActual, &EntryBox::textChanged, this, [this, index] { TextActual_Change(index); });
    On(side.textActual, &EntryBox::Left, this, [this, index] { TextActual_LostFocus(index); });
    On(side.commandRecord, &QPushButton::clicked, this, [this, index] { CommandRecord_Click(index); });
}

void CalibrationPage::Enter()
{
    UpdateCalibrationLabels();
    EnableRecord();
    SetStatusReading(true);
    TimerUpdateScreen_Timer();
    timerUpdateScreen_->start();
}

void CalibrationPage::FollowLink(bool gone)
{
    linkGone_ = gone;
    EnableRecord();
    UpdateCalibrationLabels();
    TimerUpdateScreen_Timer();
}

// There is nothing to record but what the drive reads.
void CalibrationPage::EnableRecord()
{
    for (const Side &side : sides_)
        side.commandRecord->setEnabled(table_.PortOpen());
}

void CalibrationPage::Leave()
{
    SetStatusReading(false);
    timerUpdateScreen_->stop();
}

void CalibrationPage::SetStatusReading(bool on)
{
    if (on && !reading_) {
        table_.AddReadInterest(setup_.StatusParam());
        reading_ = setup_.StatusParam();
    } else if (!on && reading_) {
        const int p = *reading_;
        reading_.reset();
        table_.RemoveReadInterest(p);
    }
}

void CalibrationPage::TimerUpdateScreen_Timer()
{
    labelStatus_->setText(linkGone_ ? QStringLiteral("not known")
                                    : QString::number(table_.Value(setup_.StatusParam())));
}

void CalibrationPage::CommandRecord_Click(int index)
{
    const std::int32_t reading = table_.Value(setup_.StatusParam());
    // The full-scale reading of a bipolar input is kept positive.
    sides_[std::size_t(index)].textCal->setText(QString::number(index == 0 ? reading : CheckedAbs(reading)));
}

void CalibrationPage::UpdateCalibrationLabels()
{
    instruction_->setText(setup_.CalibrateText());
    const QString unit = setup_.ActualUnit();
    for (const Side &side : sides_) {
        side.labelCal->setText(unit.isEmpty() ? QStringLiteral("Hertz") : QStringLiteral("Calibration"));
        side.labelActual->setText(unit);
        side.labelActual->setVisible(!unit.isEmpty());
        side.textActual->setVisible(!unit.isEmpty());
    }
    Picture()->update();
}

void CalibrationPage::RefreshActuals()
{
    TextCal_Change(0);
    TextCal_Change(1);
}

void CalibrationPage::TextCal_Change(int index)
{
    const Side &side = sides_[std::size_t(index)];
    const QString text = side.textCal->text();
    setup_.calTexts[std::size_t(index)] = text;
    Picture()->update();
    if (!IsNumeric(text) || !calSyncToText_)
        return;
    const QString actual = setup_.ActualText(text);
    calSyncFromText_ = false;
    side.textActual->setText(actual);
    calSyncFromText_ = true;
}

void CalibrationPage::TextActual_Change(int index)
{
    const Side &side = sides_[std::size_t(index)];
    const QString text = side.textActual->text();
    if (!IsNumeric(text) || !calSyncFromText_)
        return;
    const QString cal = setup_.CalText(text);
    calSyncToText_ = false;
    side.textCal->setText(cal);
    calSyncToText_ = true;
}

void CalibrationPage::TextActual_LostFocus(int index)
{
    EntryBox *box = sides_[std::size_t(index)].textActual;
    if (!IsNumeric(box->text()))
        return;
    // The counts follow a value that the user typed, not the rounding of one that follows the counts.
    calSyncFromText_ = box->isModified();
    box->setText(FormatFixed(CDbl(box->text()), 1));
    calSyncFromText_ = true;
}

} // namespace quorvik
