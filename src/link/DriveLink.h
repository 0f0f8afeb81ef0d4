#pragma once

#include "link/LinkTimings.h"
#include "link/WholeRead.h"
#include "platform/Asker.h"
#include "platform/MSComm.h"
#include "platform/RuntimeFailure.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <optional>

namespace quorvik
{

class EntryRules;
class Model;

/**
 * The serial engine: keeps Model::ParamTable equal to the drive's table.
 *
 * There is no thread and no queue: SerialCommTimer, SerialCommTimeout and the port's OnComm form one chain of
 * callbacks, and the work list is the flags of the table. In a healthy link exactly one of the two timers is
 * armed. Nothing that the engine has to say is said from within the chain: the next timer is armed first, and
 * the chain goes on while a message stands.
 *
 * A RuntimeFailure in the chain ends the handler that ran into it; the user is told once, and the next scan
 * begins afresh.
 */
class DriveLink : public QObject
{
    Q_OBJECT

public:
    /** Fills in Model::PortOpen for as long as it lives. */
    DriveLink(Model &model, EntryRules &rules, Asker &asker, LinkTimings timings = {});
    ~DriveLink() override;

    /** Shows the modal progress window of a whole-table scan, by ScanKind; filled in by the shell. The window
     * begins the scan and ends it. */
    std::function<void()> ShowProgressBar;
    /** Asks to save a modified file; filled in by the shell. @return False when the user cancelled. */
    std::function<bool()> PromptSaveChanges;

    bool PortOpen() const { return MSComm1.PortOpen(); }
    /**
     * Opens the port and learns the table's size; waits for the drive in the event loop. Test PortOpen()
     * after. Does nothing while an earlier call is still waiting or the link is being taken down. A Jog that
     * the drive still holds from before is taken back as soon as it is seen.
     */
    void GoOnLine();
    /** Does nothing off line.
     * @param reason 0 the user, 1 the end of a whole-table command, 2 an error or a drive command. */
    void GoOffLine(int reason);
    /** The user's switch. Ends the wait of GoOnLine(), too. */
    void ToggleComStatus();
    void SaveDriveParameters(); ///< command 406
    void LoadDriveParameters(); ///< command 407
    /** @param command 1 re-initialise, 2 reset; served at the next tick. */
    void SetDriveCommand(std::uint8_t command) { DriveCommand = command; }

    /** As Model::SetAllReadFlags(), telling the user of a wrong delta. */
    void SetAllReadFlags(int delta);

    /**
     * Puts the scan cursor to 0. A reply that is still awaited is given up, since it could not be told whose
     * it is: the next scan begins after the pause.
     */
    void BeginScanAnew();

    /**
     * Reads or writes the whole table under the progress window, once it is flagged so. What could not be
     * read is named, and a set that is read by half is marked so (Model::HalfRead).
     * @param kind 1 reading, 2 writing.
     */
    void RunWholeScan(int kind);
    // What the progress window does, by ScanKind.
    void BeginWholeScan();
    bool IsWholeScanOver() const;
    void EndWholeScan() { wholeRead_.End(); }

    const LinkTimings &Timings() const { return timings_; }

    MSComm MSComm1;
    QTimer SerialCommTimer;
    QTimer SerialCommTimeout;
    int CurrentParam = 0;      ///< scan cursor: the parameter now being asked for
    std::uint8_t ScanKind = 0; ///< 1 reading all, 2 writing all; also carries the list window's choice
    std::uint8_t DriveCommand = 0;
    bool OffLineRequested = false;
    std::uint8_t NoResponseCount = 0;
    std::uint8_t PacketSizeErrorCount = 0;
    std::uint8_t BCCErrorCount = 0;
    std::uint8_t WriteRetryCount = 0; ///< refusals in a row of the parameter written last
    std::int16_t ReadPropsIndex = 0;  ///< parameter whose properties are wanted, 0 for none
    std::int32_t PropMin = 0;
    std::int32_t PropMax = 0;
    std::int32_t PropAttrib = 0;
    std::int32_t PropPreset = 0;
    std::int32_t PropValue = 0;

Q_SIGNALS:
    /** The port was opened or closed; PortOpen() tells which. */
    void ComStatusChanged();
    /** A value of the drive has arrived. */
    void ValueRead(int p);
    /** The drive has taken the value that the table holds. */
    void WriteTaken(int p);
    /** The drive refused a write for good. A listener that tells the user of it sets told. */
    void WriteRefused(int p, std::int32_t rawValue, bool *told);
    /** A fault of the program that ends it; the user has been told. */
    void FatalError();

private:
    void RunHandler(void (DriveLink::*handler)());
    void Report(const RuntimeFailure &failure);
    void Later(const std::function<void()> &work);
    void Announce(const QString &sentence, MsgIcon icon, const QString &title);
    void SerialCommTimer_Timer();
    void SerialCommTimeout_Timer();
    void MSComm1_OnComm();
    void TimerDelay_Timer();

    void BeginReadScan();
    void ReadNext();
    bool IsWanted(int p) const;
    void TakeValue(std::int32_t rawValue);
    void WriteNext();
    void GoOnScanning();
    std::optional<int> FirstWrite() const;
    void SendWrite(int p, bool isFirst);
    void ReadProps(std::int16_t paramNumber);
    void ParsePacket(const QByteArray &buffer);
    void ParseReadPacket(const QByteArray &packet);
    void ParseAckNak(const QByteArray &packet);
    void TakeWrite();
    void RefuseWrite();
    void ParseReadPropPacket(const QByteArray &packet);
    void ServeDriveCommand();

    void HandleBCCErrors();
    void HandlePacketSizeErrors();
    void HandleNoResponses();
    void CountFailure(std::uint8_t &count, const QString &title, const QString &sentence);
    bool MayBeMoving() const;

    void CloseLink();
    void SettleWholeRead();
    void MemoryCommandFailed(int command);
    void OnComStatusChange();
    void ArmSerialCommTimer();
    void SendRequest(const QByteArray &request, int replyLength);
    void DiscardInput();
    bool IsUnsigned(int paramNumber) const;

    Model &model_;
    EntryRules &rules_;
    Asker &asker_;
    LinkTimings timings_;
    QTimer timerDelay_;
    WholeRead wholeRead_;
    int paramSent_ = 0;                    ///< of the write that is awaiting its answer
    std::int32_t rawValueSent_ = 0;        ///< of the same
    bool isFirstSent_ = false;             ///< it went before its turn: the cursor is another's
    bool isReadScan_ = false;              ///< of the scan under way
    std::map<int, std::uint8_t> refusals_; ///< in a row, by parameter
    bool wasModified_ = false;             ///< Model::DriveModified before the drive was told to load
    bool isJogUnsettled_ = false;          ///< nothing was heard or said of Jog since the link is up
    bool isFailing_ = false;
    bool isFailureTold_ = false;
    bool waitingForDrive_ = false;
    bool leaving_ = false;
};

} // namespace quorvik
