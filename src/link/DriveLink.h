#pragma once

#include "link/LinkTimings.h"
#include "platform/MSComm.h"

#include <QObject>
#include <QTimer>
#include <array>
#include <functional>

namespace quorvik
{

class Asker;
class EntryRules;
class Model;

/**
 * The serial engine: keeps Model::ParamTable equal to the drive's table.
 *
 * There is no thread and no queue: SerialCommTimer, SerialCommTimeout and the port's OnComm form one chain of
 * callbacks, and the work list is the flags of the table. In a healthy link exactly one of the two timers is
 * armed.
 */
class DriveLink : public QObject
{
    Q_OBJECT

public:
    DriveLink(Model &model, EntryRules &rules, Asker &asker, LinkTimings timings = {});

    // --- Seams filled in by the shell ---
    /** Shows the modal progress window of a whole-table scan, by ScanKind. */
    std::function<void()> ShowProgressBar;
    /** Asks to save a modified file. @return False when the user cancelled. */
    std::function<bool()> PromptSaveChanges;

    // --- Link state (LinkState.cpp) ---
    bool PortOpen() const { return MSComm1.PortOpen(); }
    /** Opens the port and learns the table's size; waits for the drive in the event loop. Test PortOpen()
     * after. */
    void GoOnLine();
    /** @param reason 0 the user, 1 the end of a whole-table command, 2 an error or a drive command. */
    void GoOffLine(int reason);
    /** The user's switch. */
    void ToggleComStatus();
    void SaveDriveParameters(); ///< command 406
    void LoadDriveParameters(); ///< command 407
    /** @param command 1 re-initialise, 2 reset; served at the next tick. */
    void SetDriveCommand(std::uint8_t command) { DriveCommand = command; }

    /** As Model::SetAllReadFlags(), telling the user of a wrong delta. */
    void SetAllReadFlags(int delta);

    // --- Fields that the link's windows read ---
    MSComm MSComm1;
    QTimer SerialCommTimer;
    QTimer SerialCommTimeout;
    std::int16_t CurrentParam = 0;
    std::uint8_t ScanKind = 0; ///< 1 reading all, 2 writing all; also carries the list window's choice
    std::uint8_t DriveCommand = 0;
    bool OffLineRequested = false;
    std::uint8_t NoResponseCount = 0;
    std::uint8_t PacketSizeErrorCount = 0;
    std::uint8_t BCCErrorCount = 0;
    std::uint8_t WriteRetryCount = 0;
    std::int16_t ReadPropsIndex = 0; ///< parameter whose properties are wanted, 0 for none
    std::int32_t PropMin = 0;
    std::int32_t PropMax = 0;
    std::int32_t PropAttrib = 0;
    std::int32_t PropPreset = 0;
    std::int32_t PropValue = 0;

Q_SIGNALS:
    /** The port was opened or closed; PortOpen() tells which. */
    void ComStatusChanged();
    /** A fault of the program that ends it; the user has been told. */
    void FatalError();

private:
    // Handlers (DriveLink.cpp)
    void SerialCommTimer_Timer();
    void SerialCommTimeout_Timer();
    void MSComm1_OnComm();

    // Scans (Scans.cpp)
    void ReadNext();
    void WriteNext();
    void ReadProps(std::int16_t paramNumber);
    void ParsePacket(const QByteArray &buffer);
    void ParseReadPacket(const QByteArray &packet);
    void ParseAckNak(const QByteArray &packet);
    void ParseReadPropPacket(const QByteArray &packet);
    void ServeDriveCommand();

    // Error policy (ErrorPolicy.cpp)
    void HandleBCCErrors();
    void HandlePacketSizeErrors();
    void HandleNoResponses();

    void OnComStatusChange();
    void Delay(int milliseconds);

    Model &model_;
    EntryRules &rules_;
    Asker &asker_;
    LinkTimings timings_;
};

} // namespace quorvik
