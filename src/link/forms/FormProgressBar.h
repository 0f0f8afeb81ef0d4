#pragma once

#include "desktop/Form.h"

#include <QTimer>

class QProgressBar;

namespace quorvik
{

class DriveLink;

/**
 * Shows a whole-table read or write (DriveLink::ScanKind at its opening) and ends with it, with the link, or
 * with Cancel. The bar may run back: a time-out or a refused write starts the scan over.
 */
class FormProgressBar : public DialogForm
{
    Q_OBJECT

public:
    /** Puts the scan cursor to the start. */
    FormProgressBar(Desk &desk, QWidget *owner, DriveLink &link);

    void done(int result) override;
    void reject() override; ///< CommandCancel, Escape and the window's frame

private:
    void TimerUpdateScreen_Timer();

    DriveLink &link_;
    int tag_;       ///< ScanKind at the opening
    int lastParam_; ///< up to which the reading raised the read interest
    bool gone_ = false;
    QProgressBar *progressBarRead_;
    QTimer timerUpdateScreen_;
};

} // namespace quorvik
