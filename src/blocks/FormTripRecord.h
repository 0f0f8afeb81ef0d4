#pragma once

#include "desktop/Form.h"

#include <QTimer>
#include <functional>
#include <optional>

class QLabel;
class QListWidget;
class QPushButton;
class QTreeWidget;

namespace quorvik
{

struct TripRecord;

/** "At the Trip": the last trips of the drive, and what stood in its control path when each was seen. */
class FormTripRecord : public Form
{
    Q_OBJECT

public:
    explicit FormTripRecord(Desk &desk);

    static QString Caption() { return QStringLiteral("At the Trip"); }
    QSize sizeHint() const override;

    /** Lets the user choose the file to export to; the program shows a dialog. */
    std::function<std::optional<QString>(const QString &suggested)> ChooseExport;

private:
    QWidget *MakeCommands();
    /** Lists the trips anew; the one that was chosen stays so, or else the most recent is. */
    void ListTrips();
    void ShowTrip();
    const TripRecord *Chosen() const;
    void CommandExport_Click();
    /** What was recorded around the trip comes some seconds after it. */
    void FollowRecording();

    QListWidget *listTrips_;
    QLabel *labelSummary_;
    QTreeWidget *listValues_;
    QPushButton *commandExport_ = nullptr;
    QPushButton *commandRecording_ = nullptr;
    QTimer timerUpdateScreen_{this};
    int chosen_ = 0; ///< the number of the trip that is shown
};

/** Shows the one window of the trips as a child of the frame, made first where there is none. */
void OpenTripRecord(Desk &desk);

} // namespace quorvik
