#pragma once

#include "link/DriveFinder.h"
#include "platform/Ports.h"

#include <QFutureWatcher>
#include <QTimer>
#include <QWidget>
#include <map>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace quorvik
{

inline constexpr int LookForPortsMs = 1000; ///< an adapter that is plugged in shows within this time

/**
 * What is behind each port number, and a button that looks for the port where a drive answers. A row that is
 * clicked or reached by the keys is chosen; a device without a number gets one by a click or Enter.
 */
class PortList : public QWidget
{
    Q_OBJECT

public:
    PortList(const ParameterTable &table, const Ports &ports, const LinkTimings &timings, QWidget *parent);

    /** Marks the row of the number that is chosen now; 0 for none. */
    void SetNumber(int number);
    /** Whether a port may be chosen; otherwise the list only shows. */
    void SetMayChoose(bool may);
    /** Leaves out what is not plugged in, but for the number that is chosen, and the serial numbers. */
    void ShowOnlyPresent();
    /** Looks at the ports at once, and not within a second. */
    void RefreshSoon();
    /** Whether the user, or the drive that was found, has chosen this number here. */
    bool HasChosen(int number) const { return number > 0 && chosen_ == number; }
    /** Lets go of the port that is being asked. */
    void StopFinding();

Q_SIGNALS:
    /** The number stands for the device that was chosen. */
    void Chosen(int number);

protected:
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void Refresh();
    void LookAgain();
    void Show(QList<PortStatus> ports);
    void FillRow(QTreeWidgetItem &row, const PortStatus &port) const;
    void Mark(bool isGoingThere);
    void ChooseRow(QTreeWidgetItem *row, bool isClear);
    void Choose(const PortStatus &port);
    void CommandFindDrive_Click();
    void ShowFinding();
    void TakeAnswer(const PortStatus &port, const DriveProbe::Answer &answer);
    void EndFinding(const QList<PortStatus> &drives);

    Ports ports_;
    DriveFinder finder_;
    QTreeWidget *treePorts_;
    QPushButton *commandFindDrive_;
    QLabel *labelFound_;
    QTimer timerUpdateScreen_;
    QFutureWatcher<QList<PortStatus>> looking_;
    QList<PortStatus> shown_;
    std::map<QString, DriveProbe::Answer> answers_; ///< by device, of the last search
    QString told_;                                  ///< what the port that was asked last has answered
    int number_ = 0;
    int chosen_ = 0;
    bool mayChoose_ = true;
    bool onlyPresent_ = false;
};

} // namespace quorvik
