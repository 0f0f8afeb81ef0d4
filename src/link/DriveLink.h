#pragma once

#include "link/LinkTimings.h"
#include "link/ReplyTime.h"
#include "link/StoreList.h"
#include "link/WholeRead.h"
#include "platform/MSComm.h"
#include "platform/RuntimeFailure.h"

#include <QObject>
#include <QTimer>
#include <map>
#include <optional>
#include <set>

namespace quorvik
{

class ParameterTable;

/** A pass over the whole table, or a list of values beside it. */
enum class WholeScan : std::uint8_t { None, Reading, Writing, Fetching, Storing };

/** What such a scan came to. */
struct ScanResult {
    enum class End { Complete, Cancelled, LinkLost };

    WholeScan kind = WholeScan::None;
    End end = End::Complete;
    std::set<int> missing = {}; ///< parameters that could not be read, or that the drive refused
    int taken = 0;              ///< writes that the drive has taken
    bool hasRead = false;       ///< at least one value of the drive's has arrived
    bool isInDoubt = false;     ///< the answers were out of step with the questions to the end
};

/** A failure that is counted; three in a row take the link down. */
enum class LinkFault { DamagedReply, WrongLength, NoReply };

/** Values of parameter 408. */
enum class Restart : std::uint8_t { None = 0, ReInitialize = 1, Reset = 2 };

/**
 * The serial engine: keeps the parameter table equal to the drive's.
 *
 * There is no thread and no queue: SerialCommTimer, SerialCommTimeout and the port's OnComm form one chain of
 * callbacks, and the work list is the flags of the table. In a healthy link exactly one of the two timers is
 * armed. It asks and tells nobody: what it has to say are signals, emitted from within the chain, so that a
 * listener must not wait in its slot.
 *
 * A RuntimeFailure in the chain ends the handler that ran into it; the user is told once, and the next scan
 * begins afresh.
 */
class DriveLink : public QObject
{
    Q_OBJECT

public:
    /** The table follows it in whether the port is open. */
    explicit DriveLink(ParameterTable &table, LinkTimings timings = {});
    ~DriveLink() override;

    bool PortOpen() const { return MSComm1.PortOpen(); }
    /**
     * Opens the port, and begins by asking for the table's size. A Jog that the drive still holds from before
     * is taken back as soon as it is seen.
     * @return empty, or the sentence that says why the port does not open.
     */
    QString Open();
    /** From Open() until the drive has told the size of its table, or the port is closed. */
    bool IsAskingForSize() const { return PortOpen() && PropMax == 0 && ReadPropsIndex != 0; }
    /** Takes over the size that the drive has told. @return False for one that no drive has. */
    bool TakeSize();
    void Close();

    /**
     * Begins to read or to write the whole table; ScanFinished() tells the end. A reading raises the read
     * interest in every parameter and gives it back; what is to be written must be flagged so. A reply that
     * is still awaited is given up.
     */
    void StartScan(WholeScan kind);
    /**
     * Begins to read rows beside the table: Fetched() tells each value, ScanFinished() the end. The table
     * gets only what it would have been given by polling. Begins at once where the line is idle, and may be
     * called by a listener of ScanFinished().
     */
    void StartFetch(const std::set<int> &params);
    /**
     * Begins to send values beside the table, in their order; the same holds for its begin and end. What the
     * drive refuses is sent again after the others, as long as it takes any, and three times at least.
     * Stored() tells what became of each.
     */
    void StartStore(std::vector<ParamValue> values);
    bool IsScanning() const { return isScanning_; }
    /** Ends it at once, values beside the table after the answer that is awaited; of a writing, nothing more
     * of the table is sent. */
    void CancelScan();

    /**
     * From now on p is read as often as the line allows, in the pauses and between the rows of a scan, until
     * RemoveSampling() was called as often; see SampleInterest. What it tells goes the way of all reading:
     * Asked(), Confirmed(), ValueRead(). A parameter that the drive does not have is left out.
     */
    void AddSampling(int p);
    void RemoveSampling(int p);
    /** When the value was asked for that Confirmed() is about, and when its answer was complete; on
     * MicrosecondsUp(). */
    qint64 AskedUs() const { return askedUs_; }
    qint64 AnsweredUs() const { return answeredUs_; }

    /** The drive is told so at the next tick, without a reply, and the link goes down. */
    void SetDriveCommand(Restart command) { DriveCommand = command; }
    /** Whether a Run, Stop or Jog still waits to be sent. */
    bool HasFirstWrite() const { return FirstWrite().has_value(); }

    /** Those in force: over a network they follow its replies. */
    const LinkTimings &Timings() const { return timings_; }
    /** How long replies take; of a wire nothing is known. */
    const ReplyTime &TheReplyTime() const { return replyTime_; }

    /** After how many different refusals of stop-only parameters a writing gives up the rest of them; 0 for
     * never. */
    int StopOnlyRefusals = 0;

    MSComm MSComm1;
    QTimer SerialCommTimer;
    QTimer SerialCommTimeout;
    int CurrentParam = 0;                 ///< scan cursor: the parameter now being asked for
    WholeScan ScanKind = WholeScan::None; ///< the last one begun
    Restart DriveCommand = Restart::None;
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
    /** Bytes leave for the drive. */
    void Sent(const QByteArray &bytes);
    /** Bytes have come from the drive.
     * @param isAwaited false for what nobody waited for, which reaches nothing. */
    void Received(const QByteArray &bytes, bool isAwaited);
    /** More has come than was asked for: each answer since PassBegins() may have been the one to another
     * question. */
    void OutOfStep();
    /** After a pause: what is asked for now is no answer to anything from before. */
    void PassBegins();
    /** One exchange failed; Broken() tells when it was one too many. */
    void Failed(LinkFault fault);
    /** The drive was asked for a value. */
    void Asked(int p);
    /** A good answer has told what the drive holds, whether or not the table takes it. */
    void Confirmed(int p, std::int32_t rawValue);
    /** A value of the drive has arrived. */
    void ValueRead(int p);
    /** The drive has taken the value that the table holds. */
    void WriteTaken(int p);
    /**
     * The drive refused a write for good; the table still holds the value. A listener that tells the user of
     * it sets isTold.
     */
    void WriteRefused(int p, std::int32_t rawValue, bool *isTold);
    /** The same, once every listener of WriteRefused() had its turn. */
    void WriteGivenUp(int p, std::int32_t rawValue, bool isTold);
    /** The rest of the stop-only parameters is not sent any more; see StopOnlyRefusals. */
    void StopOnlyGivenUp(const std::vector<int> &params);
    /** A value read beside the table. */
    void Fetched(int p, std::int32_t rawValue);
    /** A value beside the table has left for the drive; may come again for the same one. */
    void StoreSent(int p);
    /** The drive has taken it, or refused it for good. */
    void Stored(int p, bool isTaken);
    /** A whole-table scan stands at this parameter; beside the table, so many values are through. It may go
     * back: a time-out or a refusal starts it over.
     */
    void ScanProgress(int p);
    void ScanFinished(const ScanResult &result);
    /** A fault has come up often enough: the link goes down at the next tick. */
    void Broken(LinkFault fault, bool mayBeMoving);
    /** The link is about to close by itself. */
    void BreakingOff();
    /** A fault of the program that ends it. */
    void FatalError(const QString &sentence);

private:
    void RunHandler(void (DriveLink::*handler)());
    void Report(const RuntimeFailure &failure);
    void SerialCommTimer_Timer();
    void SerialCommTimeout_Timer();
    void MSComm1_OnComm();
    void TimerDelay_Timer();

    void ServeTick();
    void BeginReadScan();
    void ReadNext();
    bool IsWanted(int p) const;
    void TakeValue(int p, std::int32_t rawValue);
    void WriteNext();
    void GoOnScanning();
    void EndWriting();
    std::optional<int> FirstWrite() const;
    std::optional<int> WriteBeforeRead() const;
    void SendWrite(int p, bool isFirst);
    void ReadProps(std::int16_t paramNumber);
    void ParsePacket(const QByteArray &buffer);
    void ParseReadPacket(const QByteArray &packet);
    void ParseAckNak(const QByteArray &packet);
    void TakeWrite();
    void RefuseWrite();
    void GiveUpStopOnly();
    void StoreNext();
    void TakeStoreAnswer(bool isTaken);
    bool IsIdle() const;
    void BeginSoon(bool isIdle);
    void Scanned(int p);
    /** What goes on when a round over the sampled parameters is over. */
    enum class AfterSamples : std::uint8_t { Pause, Reading, Writing, Storing };
    void Pause();
    bool IsRoundDue() const;
    void BeginRound(AfterSamples after);
    void AskForSample(int p, bool isNeighbour);
    void GoOnSampling();
    void LeaveSampling(qint64 now);
    bool IsSamplingInPause() const;
    bool MustServe() const;
    std::optional<int> NextSample() const;
    void BeginQuiet();
    void ParseReadPropPacket(const QByteArray &packet);
    void ServeDriveCommand();

    void ReadBrokeOff();
    void HandleBCCErrors();
    void HandlePacketSizeErrors();
    void HandleNoResponses();
    void CountFailure(std::uint8_t &count, LinkFault fault);
    bool MayBeMoving() const;

    void BreakOff();
    void BeginScanAnew();
    void EndScan(ScanResult::End end);
    void OnComStatusChange();
    void ArmSerialCommTimer();
    void ArmSerialCommTimer(int milliseconds);
    /** The pause after which what was still awaited has come. */
    void PauseForLate();
    void FollowReplyTime();
    void SendRequest(const QByteArray &request, int replyLength);
    void AskFor(int p, const QByteArray &request);
    void Send(const QByteArray &bytes);
    QByteArray TakeInput(bool isAwaited);
    void DiscardInput();
    bool IsUnsigned(int paramNumber) const;

    ParameterTable &table_;
    LinkTimings onWire_;
    LinkTimings timings_;
    ReplyTime replyTime_;
    qint64 sentUs_ = 0; ///< when the last request left
    QTimer timerDelay_;
    WholeRead wholeRead_;
    std::map<int, int> sampled_; ///< how many want it, by parameter
    AfterSamples afterSamples_ = AfterSamples::Pause;
    bool endsRun_ = false;        ///< what is sent next has an EOT before it
    bool isSampleSent_ = false;   ///< what awaits its answer is a sample
    int paramAsked_ = 0;          ///< of the read that is awaiting its answer
    int sampledLast_ = -1;        ///< the parameter sampled last: the next one goes on from it
    int samplesLeft_ = 0;         ///< of the round under way
    bool isRetryPending_ = false; ///< a refused write is for the next tick, not for a gap before it
    int quietLeft_ = 0;           ///< milliseconds of a pause that shows sampling to be in step
    qint64 tickDueUs_ = 0;        ///< of a pause that is filled with samples
    qint64 earlierTickUs_ = 0;    ///< the tick that a write before its turn must not put off, or 0
    qint64 roundDueUs_ = 0;       ///< when a round is due within a scan
    qint64 inStepUs_ = 0;         ///< the last pause in which nothing was on the line
    qint64 askedUs_ = 0;
    qint64 answeredUs_ = 0;
    int paramSent_ = 0;                    ///< of the write that is awaiting its answer
    std::int32_t rawValueSent_ = 0;        ///< of the same
    bool isFirstSent_ = false;             ///< it went before its turn: the cursor is another's
    bool isReadScan_ = false;              ///< of the scan under way
    std::map<int, std::uint8_t> refusals_; ///< in a row, by parameter
    bool isJogUnsettled_ = false;          ///< nothing was heard or said of Jog since the link is up
    bool isFailing_ = false;
    bool isFailureTold_ = false;
    bool isSizeUnknown_ = false; ///< nothing was said of the machine yet
    bool isScanning_ = false;
    StoreList stores_;
    bool isStoring_ = false;   ///< of the scan under way
    bool isStoreSent_ = false; ///< what awaits its answer is a value beside the table
    int scanTaken_ = 0;
    int stopOnlyRefused_ = 0;
    int scanLast_ = -1;         ///< up to which a reading raised the read interest
    std::set<int> scanRefused_; ///< by the drive, in this writing
};

} // namespace quorvik
