#pragma once

#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "link/DriveLink.h"
#include "model/EntryRules.h"
#include "model/Model.h"
#include "platform/Asker.h"

#include <QElapsedTimer>
#include <QStringList>
#include <bitset>
#include <memory>
#include <random>
#include <vector>

namespace quorvik::testing
{

/** Answers every box as a patient user would, and counts them. */
class PatientAsker : public Asker
{
public:
    std::int64_t boxes = 0;

    MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) override;
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return std::nullopt; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return std::nullopt; }
};

/** What one run of the soak came to. */
struct SoakFigures {
    std::int64_t transactions = 0; ///< requests that reached the drive
    std::int64_t faults = 0;
    std::int64_t lateReplies = 0; ///< of the faults
    std::int64_t entries = 0;     ///< values that the user entered
    std::int64_t rowChanges = 0;  ///< of the tool's table, each of them checked
    std::int64_t foreignRows = 0; ///< rows that took a value which was neither sent for them nor entered
    std::int64_t wentOffLine = 0;
    std::int64_t standStills = 0; ///< waits that only the user's own switch could end
    QStringList problems;         ///< what did not hold at the end, a sentence each
};

/**
 * The real engine against the real simulated drive over a pseudo-terminal while the line fails, a user edits,
 * and windows come and go. Both ends live in one event loop, so that their timers keep their order on a busy
 * machine, and the drive's values are changed by the soak alone, so that all of them are known.
 */
class LineSoak
{
public:
    /** The tool's own intervals, so many times shorter; late replies are up to 500 ms late, as many times
     * shorter. */
    static constexpr int Haste = 20;

    LineSoak(const QString &presets, std::uint32_t seed);
    ~LineSoak();

    /** Before the time-out, within the pause after it, and near the end of that pause. */
    static std::vector<int> LateWithinPromise() { return {100, 200, 240, 300, 400, 500}; }

    /**
     * @param rate of spoiled transactions, 0 to 1, over all kinds of faults.
     * @param lateMs how late the late replies are, with the tool's own intervals.
     * @return the figures of this run alone; problems are those of all runs.
     */
    SoakFigures Run(double rate, std::int64_t transactions,
                    const std::vector<int> &lateMs = LateWithinPromise());

private:
    void LetFail(double rate, const std::vector<int> &lateMs);
    void BeDrive();
    void BeUser();
    void OpenWindow();
    void CloseWindow();
    void GoOnLine();
    void LoseNoPatience();
    void Turn();
    void CheckTables();
    bool Settle();
    void Compare();
    std::int64_t Transactions() const;
    std::int64_t Faults() const;
    bool IsPlain(int p) const;
    int Pick(int count) { return int(dice_() % std::uint32_t(count)); }

    Model driveModel_;
    std::unique_ptr<drive::DriveTable> table_;
    std::unique_ptr<drive::DriveCommands> commands_;
    drive::FaultInjector faults_;
    drive::PseudoTerminal terminal_;
    std::unique_ptr<drive::DriveServer> server_;

    Model model_;
    PatientAsker asker_;
    EntryRules rules_{model_, asker_};
    std::unique_ptr<DriveLink> link_;
    QTimer impatience_;

    std::mt19937 dice_;
    std::vector<int> editable_;
    std::vector<std::vector<int>> windows_;
    std::vector<std::int32_t> seen_;
    std::vector<std::int32_t> seenInDrive_;
    std::vector<std::bitset<65536>> known_; ///< by parameter: what the drive held or the user entered
    SoakFigures figures_;
};

} // namespace quorvik::testing
