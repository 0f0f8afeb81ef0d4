#pragma once

#include <QObject>
#include <QTimer>
#include <set>

namespace quorvik
{

class MDIFormMain;
class Strip;
struct TripRecord;
struct Engines;

/** Keeps the news under the menu true: what they say of link, drive and open set is looked up in the engines,
 * and a line goes as soon as it holds no longer. */
class StatusLines : public QObject
{
    Q_OBJECT

public:
    StatusLines(MDIFormMain &main, Strip &strip);

    /** Shows the drive's state in its panel, and what the fault is beside it.
     * @param text empty where no state is known. */
    void ShowDriveState(const QString &text);
    /** "Com5 (/dev/ttyUSB0)". */
    QString Device() const;
    QString PortText() const;

private:
    void FollowEngines();
    void Refresh();
    void ShowLink();
    void ShowLost();
    void ShowVerifiedWrite();
    void ShowUnwritten();
    void ShowUnsaved();
    void ShowRanWhenSaved();
    void ShowTrip();
    const TripRecord *PresentTrip() const; ///< null where the drive stands in no trip
    QString Faults() const;                ///< of that trip, in short; empty where not known
    void ShowAside();

    MDIFormMain &main_;
    Engines &engines_;
    Strip &strip_;
    QTimer waiting_;         ///< an answer that comes at once is not worth a line
    std::set<int> unsaved_;  ///< parameters that the drive has taken since it saved last
    bool wasOnLine_ = false; ///< the open set was the drive's when the link was closed
};

} // namespace quorvik
