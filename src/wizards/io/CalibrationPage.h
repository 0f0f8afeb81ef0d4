#pragma once

#include "platform/Guard.h"
#include "wizards/frame/WizardPage.h"
#include "wizards/io/IOSetup.h"

#include <array>
#include <optional>

class QPushButton;
class QTimer;

namespace quorvik
{

class EntryBox;

/** Step 5: the raw counts at 0 and at 100 per cent, against a live reading. */
class CalibrationPage : public WizardPage
{
    Q_OBJECT

public:
    CalibrationPage(QWidget *parent, IOSetup &setup);
    ~CalibrationPage() override;

    void Enter(); ///< starts the live reading
    void Leave(); ///< gives the read interest back; does nothing a second time
    /** The link came or went. @param gone what the drive reads is not known any more. */
    void FollowLink(bool gone);
    /** Works the engineering values out anew, after the range changed. */
    void RefreshActuals();

private:
    void MakeFrame(int index);
    void EnableRecord();
    void UpdateCalibrationLabels();
    void SetStatusReading(bool on);
    void TimerUpdateScreen_Timer();
    void CommandRecord_Click(int index);
    void TextCal_Change(int index);
    void TextActual_Change(int index);
    void TextActual_LostFocus(int index);

    struct Side {
        QLabel *labelCal = nullptr;
        QLabel *labelActual = nullptr;
        EntryBox *textCal = nullptr;
        EntryBox *textActual = nullptr;
        QPushButton *commandRecord = nullptr;
    };

    IOSetup &setup_;
    ParameterTable &table_;
    QLabel *instruction_ = nullptr;
    QLabel *labelStatus_ = nullptr;
    std::array<Side, 2> sides_;
    QTimer *timerUpdateScreen_;
    TickGuard tickGuard_;
    std::optional<int> reading_; ///< the parameter whose read interest is held
    bool linkGone_ = false;
    bool calSyncFromText_ = true;
    bool calSyncToText_ = true;
};

} // namespace quorvik
