#pragma once

#include "history/JournalEntry.h"
#include "model/ParameterTable.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <map>
#include <optional>

namespace quorvik
{

class Document;
class DriveLink;
class Journal;
class VerifiedWrite;

/**
 * Puts what is done into the journal. It only watches: the table tells the intents and the changes, the link
 * and the verified writes tell what became of them. What the drive tells by itself and what the emulator
 * computes never gets there.
 */
class Recorder : public QObject
{
    Q_OBJECT

public:
    Recorder(ParameterTable &table, Document &document, DriveLink &link, VerifiedWrite &writing,
             Journal &journal);
    ~Recorder() override;

    /** Hands over what was gathered, at once. */
    void HandOver();

private:
    /** A write that the drive has not answered for good. */
    struct Pending {
        int sequence = 0;
        int action = 0;
        std::int32_t rawValue = 0;
    };
    /** A slider on its way. */
    struct Movement {
        int sequence = 0;
        int action = 0;
        QElapsedTimer rests = {}; ///< since it moved last
    };

    void OnChanged(const ParamChange &change);
    void OnWriteTaken(int p);
    void OnUnsent(int p, EntryResult result);
    void OnConfirmed(int p, std::int32_t rawValue);
    void OnComStatusChanged();
    void OnWritingBegins();
    void OnWritingFinished();
    void LearnDrive(int p);
    /** What the drive is known to hold; nothing where it has not told. */
    std::optional<std::int32_t> Heard(int p) const;

    JournalRow &AddRow(int action, int p, std::optional<std::int32_t> rawBefore, std::int32_t rawAfter,
                       EntryResult result);
    void AddResult(int sequence, EntryResult result, std::optional<int> p = {},
                   std::optional<std::int32_t> raw = {});
    bool JoinMovement(const ParamChange &change);
    void EndPending(int p, EntryResult result);
    void SettleLeftOver();
    /** Of what is being done; begins it in the journal where that is still to be done. */
    int ActionNumber();
    int BeginAction(Origin origin, const QString &title);
    void AskForIdentity(bool wanted);
    void Gather();

    ParameterTable &table_;
    Document &document_;
    DriveLink &link_;
    VerifiedWrite &writing_;
    Journal &journal_;
    JournalBatch batch_;
    QTimer gather_;
    int lastAction_ = 0;
    int lastSequence_ = 0;
    int lastLink_ = 0;
    int connection_ = 0;                ///< number of the connection that is up; 0 off line
    int intentAction_ = 0;              ///< of the intent under way; 0 before it changed anything
    int takenAction_ = 0;               ///< whose write the drive has taken last
    std::map<int, Pending> pending_;    ///< by parameter: sent or to be sent
    std::map<int, Pending> unverified_; ///< by parameter: taken, not read since
    std::map<int, Movement> movements_; ///< by parameter
    std::map<int, int> written_;        ///< sequences of the rows of a verified write, by parameter
    std::map<int, std::int32_t> heard_; ///< what the drive has told or taken on this connection
    bool isBroken_ = false;
    bool isDriveKnown_ = false; ///< of this connection
    bool asksForIdentity_ = false;
};

} // namespace quorvik
