#pragma once

#include "link/DriveLink.h"
#include "operations/Outcome.h"
#include "platform/Asker.h"

#include <QObject>
#include <functional>
#include <map>

namespace quorvik
{

class EntryRules;
class Document;
class Guards;
class ParameterTable;
class SaveCommands;
class Snapshots;
struct ParameterSet;

/** Why the link is taken down. */
enum class OffLineReason {
    User,
    CommandEnded, ///< of a command that went on line for itself
    BrokenOff,    ///< a fault, or a command after which the drive is gone; the line may be dead
};

/**
 * What can be done with the drive, from going on line to saving in its memory, and what the user is told of
 * the link. All of it asks and waits here, with the event loop running; the link below neither asks nor
 * waits.
 */
class DriveOperations : public QObject
{
    Q_OBJECT

public:
    DriveOperations(ParameterTable &table, Document &document, DriveLink &link, EntryRules &rules,
                    SaveCommands &saving, Asker &asker, Snapshots &snapshots, Guards &guards);

    /**
     * Opens the port and learns the table's size; waits for the drive in the event loop. Refused for a port
     * that does not open, and while an earlier call is still waiting or the link is being taken down.
     */
    OperationResult GoOnLine();
    /**
     * Goes on line with the open set left alone: nothing of it is sent, and nothing that the drive tells is
     * put over its settings, until they are read, written or entered.
     */
    OperationResult GoOnLineAside();
    /** Whether something of the open set is still held beside the drive. */
    bool IsAside() const;
    /** Ends the wait for a server in the network, and with it what waits; does nothing at any other time. */
    void GiveUpReaching();
    /** Does nothing off line. Blocks, pumping events, while the drive saves or a last command leaves. */
    void GoOffLine(OffLineReason reason);
    /** The user's switch. Ends the wait of GoOnLine(), too. */
    OperationResult ToggleComStatus();
    /** Goes on line and reads the drive over the open set, once unsaved changes are settled. */
    OperationResult ReadOverOpenSet();
    /** GoOnLineAside(), and the comparison is asked for. */
    OperationResult GoOnLineToCompare();
    /** The choice at the program's start: on line with the drive's table, or not. */
    OperationResult ChooseCommMode();

    /** Reads the whole table. A set that is read by half is marked so (Document::HalfRead), and the user is
     * told what is missing. */
    OperationResult ReadAll();
    /** Follows what is queued of the whole table until it is sent. */
    OperationResult SendAll();
    /**
     * Goes on line and queues the whole open set for SendAll(), once the guards have been answered so. After
     * a Cancel it is off line again; a drive that runs leaves the link open and the set as it was.
     */
    OperationResult QueueOpenSet();
    /** What is not to be sent, by parameter, with the drive's value where it is known. */
    using LeftOut = std::map<int, std::optional<std::int32_t>>;
    /** Whether the guards are to be asked, as the user wants it. */
    bool AsksFirst() const;
    /** Asks the guards whether a whole set may be sent to the drive that is on line. */
    OperationResult MaySendAll(const ParameterSet &set, LeftOut &leftOut);
    /** Takes such parameters out of what is queued: they stay what the drive has. */
    void LeaveOut(const LeftOut &leftOut);

    void SaveDriveParameters(); ///< command 406
    /** The same, and waits until the drive has done so; it is told where it has not. */
    OperationResult SaveInMemory();
    OperationResult LoadDriveParameters(); ///< command 407
    OperationResult RestartDrive(Restart command);

    /** How long the drive may take to save, in milliseconds. */
    int SaveLimitMs = 5000;

Q_SIGNALS:
    /** The link goes down by the user's wish, and still carries what a listener has to put in order; it may
     * wait for that. */
    void Leaving();
    /** A fault of the program that ends it; the user has been told. */
    void FatalError();
    /** The link is up beside the open set, which GoOnLineAside() left alone. */
    void WentOnLineAside();
    /** What became of a whole write, in a sentence that needs no answer. */
    void WholeWriteEnded(const QString &sentence);
    /** The user went on line to compare the open set with the drive. */
    void CompareWanted();

private:
    OperationResult RunScan(WholeScan kind);
    OperationResult ReadAnew();
    void SettleReading(const ScanResult &scan);
    QString WriteSentence(const ScanResult &scan) const;
    void BeforeLeaving(OffLineReason reason);
    void PromptSaveToDrive(OffLineReason reason);
    bool SaveInDrive();
    void MemoryCommandFailed(int command);
    void ShowNotSavedMessage();
    void OnBroken(LinkFault fault, bool mayBeMoving);
    void OnStopOnlyGivenUp(const std::vector<int> &params);
    void OnWriteGivenUp(int p, std::int32_t rawValue, bool isTold);
    QString NamesOf(const std::vector<int> &params) const; ///< a line each, the first dozen
    void Later(const std::function<void()> &work);
    void Announce(const QString &sentence, const QString &title);

    ParameterTable &table_;
    Document &document_;
    DriveLink &link_;
    EntryRules &rules_;
    SaveCommands &saving_;
    Asker &asker_;
    Snapshots &snapshots_;
    Guards &guards_;
    bool waitingForDrive_ = false;
    bool isGivenUp_ = false; ///< before the drive's port was reached
    bool leaving_ = false;
    bool wasModified_ = false; ///< Document::DriveModified before the drive was told to load
};

} // namespace quorvik
