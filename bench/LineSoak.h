#pragma once

#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "link/PatientAsker.h"
#include "link/ValueStates.h"
#include "model/Document.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "platform/Guard.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QStringList>
#include <algorithm>
#include <array>
#include <bitset>
#include <deque>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace quorvik::testing
{

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
    std::int64_t liveClaims = 0;  ///< values that were shown as live, at each turn of the event loop
    std::int64_t falseClaims = 0; ///< of these, without an answer of the drive's about that value in the time
                                  ///< in which it may be called live
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
    /** Before the time-out, within the pause after it, and near the end of that pause. */
    static std::vector<int> LateWithinPromise() { return {100, 200, 240, 300, 400, 500}; }

    /** @param haste by how much the tool's own intervals are shortened. */
    LineSoak(const QString &presets, std::uint32_t seed, int haste = 20)
        : haste_(haste)
        , dice_(seed)
    {
        for (ParameterTable *table : {&driveParameters_, &table_})
            Note(LoadFactoryTable(presets, *table));
        SetFailureReporter([this](const RuntimeFailure &failure) { Note(failure.Sentence()); });
        inDrive_ = std::make_unique<drive::DriveTable>(driveParameters_);
        commands_ = std::make_unique<drive::DriveCommands>(*inDrive_, drive::CommandTimings{2, 5});
        Note(terminal_.Open());
        server_ = std::make_unique<drive::DriveServer>(*inDrive_, *commands_, faults_, terminal_, 0);

        table_.ResetToDefaults();
        rows_.resize(std::size_t(table_.LastParam + 1));
        QObject::connect(server_.get(), &drive::DriveServer::Answered, server_.get(),
                         [this](int p, std::int32_t rawValue) {
                             rows_[std::size_t(p)].told.push_back({drive::SteadyNow(), rawValue});
                         });
        // As a box is repainted.
        QObject::connect(&states_, &ValueStates::StateChanged, &states_, [this](int p) {
            Row &row = rows_[std::size_t(p)];
            row.isShownLive = states_.Of(p) == ValueState::Live;
            row.rawShown = table_.Value(p);
        });
        for (int p = 0; p <= table_.LastParam; ++p) {
            // Where nothing else depends on the value, it tells whose it is.
            if (IsPlain(p))
                inDrive_->Put(p, MarkedValue(p, 0));
            Row &row = rows_[std::size_t(p)];
            row.Know(row.inDrive = inDrive_->Get(p));
            row.Know(row.here = table_.Value(p));
            const ParamRecord &record = table_.Row(p);
            if (IsPlain(p) && !table_.AttrBit(Attr::ReadOnly, p) && record.Max > record.Min)
                editable_.push_back(p);
        }
        link_.MSComm1.DeviceOf = [this](int) { return terminal_.DevicePath(); };
        QObject::connect(&impatience_, &QTimer::timeout, &impatience_, [this] {
            // A wrong check character in the answer about the table's size leaves the engine standing still
            // by design.
            if (link_.PortOpen() && !link_.SerialCommTimer.isActive() &&
                !link_.SerialCommTimeout.isActive() && link_.PropMax == 0) {
                ++figures_.standStills;
                operations_.GoOffLine(OffLineReason::User);
            }
        });
        impatience_.start(50);
    }
    ~LineSoak()
    {
        SetFailureReporter([](const RuntimeFailure &) {});
    }
    Q_DISABLE_COPY_MOVE(LineSoak)

    /**
     * @param rate of spoiled transactions, 0 to 1, over all kinds of faults.
     * @param lateMs how late the late replies are, with the tool's own intervals.
     * @return the figures of this run alone; problems are those of all runs.
     */
    SoakFigures Run(double rate, std::int64_t transactions,
                    const std::vector<int> &lateMs = LateWithinPromise())
    {
        figures_ = {.problems = std::move(figures_.problems)};
        const std::int64_t first = Transactions();
        faults_ = {};
        LetFail(rate, lateMs);
        Toggle(mainWindow_);
        std::int64_t served = first;
        while (Transactions() < first + transactions) {
            if (!link_.PortOpen()) {
                ++figures_.wentOffLine;
                operations_.GoOnLine();
            }
            Turn();
            for (; served < Transactions(); ++served)
                LiveOn();
        }
        figures_.transactions = Transactions() - first;
        for (int kind = 0; kind < drive::FaultKindCount; ++kind)
            figures_.faults += faults_.Injected(FaultKind(kind));
        figures_.lateReplies = faults_.Injected(FaultKind::Late);
        if (!Settle())
            Note(QStringLiteral("the link did not come to rest"));
        Compare();
        return figures_;
    }

private:
    using FaultKind = drive::FaultKind;

    static constexpr int BoxesOfAWindow = 12;
    static constexpr int SettleMs = 20000;

    static LinkTimings Hastened(int haste)
    {
        constexpr LinkTimings real;
        return {.scanPause = real.scanPause / haste,
                .replyTimeout = real.replyTimeout / haste,
                .sizeErrorPause = real.sizeErrorPause / haste,
                .liveLimit = real.liveLimit / haste,
                .stateUpdate = real.stateUpdate / haste};
    }

    /** One of twenty values that tell whose they are. */
    static std::int32_t MarkedValue(int p, int which) { return 12000 + which * 1000 + p; }

    struct Row {
        std::int32_t here;
        std::int32_t inDrive;
        std::bitset<65536> known; ///< what the drive held or the user entered
        struct Told {
            std::int64_t atNs;
            std::int32_t rawValue;
        };
        std::deque<Told> told; ///< what the drive said of it lately
        bool isShownLive = false;
        std::int32_t rawShown = 0;

        void Know(std::int32_t rawValue) { known.set(std::uint16_t(rawValue)); }
    };

    void Note(const QString &problem)
    {
        if (!problem.isEmpty())
            figures_.problems << problem;
    }

    bool IsPlain(int p) const
    {
        const bool isSpecial = (p >= Param::ClockFirst && p <= Param::ClockLast) ||
                               p == Param::DriveCurrent || p == Param::MotorCurrent ||
                               (p >= Param::SaveParameters && p <= Param::DriveModel) ||
                               p == Param::ClearFault || p == Param::DriveState;
        return !isSpecial && (driveParameters_.PresetTable[p].Attributes & Attr::RefreshAfterLoad) == 0;
    }

    void LetFail(double rate, const std::vector<int> &lateMs)
    {
        const auto add = [this](FaultKind kind, double share, int realMs) {
            const QString words = QStringLiteral("%1,rate=%2,seed=%3,ms=%4")
                                      .arg(drive::FaultKindName(kind))
                                      .arg(share)
                                      .arg(Pick(1'000'000) + 1)
                                      .arg(realMs / haste_);
            Note(faults_.Add(words, drive::SteadyNow()));
        };
        const double share = rate / drive::FaultKindCount;
        for (const FaultKind kind :
             {FaultKind::BadBcc, FaultKind::Short, FaultKind::Long, FaultKind::Silent, FaultKind::Refuse})
            add(kind, share, haste_);
        for (const int ms : lateMs)
            add(FaultKind::Late, share / double(lateMs.size()), ms);
        // Too short to be noticed three times in a row, and long enough to be.
        add(FaultKind::Drop, share * 0.9, 300);
        add(FaultKind::Drop, share * 0.1, 2000);
    }

    std::int64_t Transactions() const
    {
        const drive::ServiceCounts &counts = server_->Counts();
        return counts.reads + counts.runReads + counts.writes + counts.refusals + counts.properties +
               counts.unanswered;
    }

    /** Opens the window where there is none, and closes it where there is one. */
    void Toggle(std::vector<int> &window)
    {
        if (!window.empty()) {
            for (const int p : std::exchange(window, {}))
                table_.RemoveReadInterest(p);
            return;
        }
        const bool isWhole = Pick(2) == 0;
        const int count = isWhole ? table_.LastParam + 1 : BoxesOfAWindow;
        for (int i = 0; i < count; ++i) {
            window.push_back(isWhole ? i : Pick(table_.LastParam + 1));
            table_.AddReadInterest(window.back());
        }
    }

    /** What the drive and the user do between two transactions. */
    void LiveOn()
    {
        if (const int p = Pick(table_.LastParam + 1); Pick(10) == 0 && IsPlain(p))
            inDrive_->Put(p, MarkedValue(p, Pick(20)));
        if (Pick(50) == 0) {
            const int p = editable_[std::size_t(Pick(int(editable_.size())))];
            const ParamRecord &record = table_.Row(p);
            const std::int32_t value = record.Min + Pick(record.Max - record.Min + 1);
            rows_[std::size_t(p)].Know(value);
            ++figures_.entries;
            table_.SetParamValue(p, value, true, false);
        }
        if (Pick(200) == 0)
            Toggle(windows_[std::size_t(Pick(int(windows_.size())))]);
    }

    void CheckTables()
    {
        for (int p = 0; p <= inDrive_->LastParam(); ++p) {
            Row &row = rows_[std::size_t(p)];
            if (const std::int32_t value = inDrive_->Get(p); value != row.inDrive)
                row.Know(row.inDrive = value);
            const std::int32_t value = table_.Value(p);
            CheckClaim(row);
            if (value == row.here)
                continue;
            row.here = value;
            ++figures_.rowChanges;
            figures_.foreignRows += row.known.test(std::uint16_t(value)) ? 0 : 1;
            row.Know(value);
        }
    }

    void CheckClaim(Row &row)
    {
        const std::int64_t since =
            drive::SteadyNow() - std::int64_t(link_.Timings().liveLimit) * drive::NsPerMs;
        while (!row.told.empty() && row.told.front().atNs < since)
            row.told.pop_front();
        if (!row.isShownLive)
            return;
        ++figures_.liveClaims;
        const bool isTrue = std::ranges::any_of(row.told, [&](const auto &told) {
            return std::uint16_t(told.rawValue) == std::uint16_t(row.rawShown);
        });
        figures_.falseClaims += isTrue ? 0 : 1;
    }

    void Turn()
    {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        CheckTables();
    }

    bool Settle()
    {
        const QDeadlineTimer limit(SettleMs);
        faults_.Clear();
        Toggle(mainWindow_);
        for (std::vector<int> &window : windows_)
            if (!window.empty())
                Toggle(window);
        // What was still under way when the faults ended may yet take the link down.
        for (int rounds = 0; rounds < 2;) {
            if (!link_.PortOpen()) {
                rounds = 0;
                operations_.GoOnLine();
            }
            bool isFinished = false;
            QObject here;
            QObject::connect(&link_, &DriveLink::ScanFinished, &here, [&isFinished] { isFinished = true; });
            link_.StartScan(WholeScan::Reading);
            while (link_.PortOpen() && (table_.WritePending || !isFinished)) {
                Turn();
                if (limit.hasExpired())
                    return false;
            }
            rounds += link_.PortOpen() ? 1 : 0;
        }
        return true;
    }

    void Compare()
    {
        for (int p = 0; p <= table_.LastParam; ++p) {
            const ParamRecord &record = table_.Row(p);
            if (record.Value != inDrive_->Get(p) || record.ReadFlag != 0 ||
                record.WriteFlag != WriteState::None)
                Note(QStringLiteral("parameter %1: %2 here, %3 in the drive, read flag %4, write flag %5")
                         .arg(p)
                         .arg(record.Value)
                         .arg(inDrive_->Get(p))
                         .arg(record.ReadFlag)
                         .arg(record.WriteFlag));
        }
        if (link_.BCCErrorCount + link_.NoResponseCount + link_.PacketSizeErrorCount +
                link_.WriteRetryCount !=
            0)
            Note(QStringLiteral("an error counter is not back at zero"));
    }

    int Pick(int count) { return int(dice_() % std::uint32_t(count)); }

    int haste_;
    std::mt19937 dice_;
    ParameterTable driveParameters_;
    std::unique_ptr<drive::DriveTable> inDrive_;
    std::unique_ptr<drive::DriveCommands> commands_;
    drive::FaultInjector faults_;
    drive::PseudoTerminal terminal_;
    std::unique_ptr<drive::DriveServer> server_;

    ParameterTable table_;
    Document document_{table_};
    PatientAsker asker_;
    EntryRules rules_{table_, asker_};
    DriveLink link_{table_, Hastened(haste_)};
    ValueStates states_{table_, link_};
    SettingsFile file_{table_, document_};
    SaveCommands saving_{document_, asker_, file_, QString()};
    Snapshots snapshots_{table_, link_, asker_};
    Guards guards_{table_, document_, asker_};
    DriveOperations operations_{table_, document_, link_, rules_, saving_, asker_, snapshots_, guards_};
    QTimer impatience_;

    std::vector<int> editable_;
    std::vector<int> mainWindow_; ///< open all through a run, so that there is something to read
    std::array<std::vector<int>, 3> windows_;
    std::vector<Row> rows_;
    SoakFigures figures_;
};

} // namespace quorvik::testing
