#include "LineSoak.h"

#include "drive/SteadyClock.h"
#include "platform/Guard.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace quorvik::testing
{

namespace
{

using drive::FaultKind;

constexpr int MostWindows = 4;
constexpr int BoxesOfAWindow = 12;
constexpr int SettleMs = 20000;

QString Named(FaultKind kind, double rate, int ms, std::uint32_t seed)
{
    QString words = QStringLiteral("%1,rate=%2,seed=%3").arg(drive::FaultKindName(kind)).arg(rate).arg(seed);
    if (ms > 0)
        words += QStringLiteral(",ms=%1").arg(ms);
    return words;
}

/** One of twenty values that tell whose they are. */
std::int32_t MarkedValue(int p, int which)
{
    return 12000 + which * 1000 + p;
}

std::size_t Bits(std::int32_t rawValue)
{
    return std::size_t(std::uint16_t(rawValue));
}

} // namespace

MsgAnswer PatientAsker::MsgBox(const QString &, MsgButtons buttons, MsgIcon, const QString &)
{
    ++boxes;
    return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::No;
}

LineSoak::LineSoak(const QString &presets, std::uint32_t seed)
    : dice_(seed)
{
    for (Model *model : {&driveModel_, &model_})
        if (const QString failure = SettingsFile(*model).LoadPresets(presets); !failure.isEmpty())
            figures_.problems << failure;
    SetFailureReporter([this](const RuntimeFailure &failure) { figures_.problems << failure.Sentence(); });
    table_ = std::make_unique<drive::DriveTable>(driveModel_);
    commands_ = std::make_unique<drive::DriveCommands>(*table_, drive::CommandTimings{2, 5});
    if (const QString failure = terminal_.Open(); !failure.isEmpty())
        figures_.problems << failure;
    server_ = std::make_unique<drive::DriveServer>(*table_, *commands_, faults_, terminal_, 0);

    model_.ResetToDefaults();
    known_.resize(std::size_t(model_.LastParam + 1));
    for (int p = 0; p <= model_.LastParam; ++p) {
        // Where nothing else depends on the value, it tells whose it is.
        if (IsPlain(p))
            table_->Put(p, MarkedValue(p, 0));
        known_[std::size_t(p)].set(Bits(table_->Get(p)));
        known_[std::size_t(p)].set(Bits(model_.Value(p)));
        seen_.push_back(model_.Value(p));
        seenInDrive_.push_back(table_->Get(p));
        const ParamRecord &record = model_.ParamTable[p];
        if (IsPlain(p) && !model_.AttrBit(Attr::ReadOnly, p) && record.Max > record.Min)
            editable_.push_back(p);
    }
    constexpr LinkTimings real;
    link_ =
        std::make_unique<DriveLink>(model_, rules_, asker_,
                                    LinkTimings{real.scanPause / Haste, real.replyTimeout / Haste,
                                                real.sizeErrorPause / Haste, real.progressUpdate / Haste});
    link_->MSComm1.DeviceOf = [this](int) { return terminal_.DevicePath(); };
    link_->ShowProgressBar = [] {};
    QObject::connect(&impatience_, &QTimer::timeout, &impatience_, [this] { LoseNoPatience(); });
    impatience_.start(50);
}

LineSoak::~LineSoak()
{
    link_.reset();
    SetFailureReporter([](const RuntimeFailure &) {});
}

bool LineSoak::IsPlain(int p) const
{
    const bool isSpecial = (p >= Param::ClockFirst && p <= Param::ClockLast) || p == Param::DriveCurrent ||
                           p == Param::MotorCurrent ||
                           (p >= Param::SaveParameters && p <= Param::DriveModel) || p == Param::ClearFault ||
                           p == Param::DriveState;
    return !isSpecial && (driveModel_.PresetTable[p].Attributes & Attr::RefreshAfterLoad) == 0;
}

void LineSoak::LetFail(double rate, const std::vector<int> &lateMs)
{
    faults_.Clear();
    if (rate <= 0)
        return;
    constexpr int kinds = 7;
    const auto add = [this](FaultKind kind, double share, int realMs) {
        const QString words = Named(kind, share, realMs / Haste, std::uint32_t(Pick(1'000'000) + 1));
        if (const QString problem = faults_.Add(words, drive::SteadyNow()); !problem.isEmpty())
            figures_.problems << problem;
    };
    const double share = rate / kinds;
    for (const FaultKind kind :
         {FaultKind::BadBcc, FaultKind::Short, FaultKind::Long, FaultKind::Silent, FaultKind::Refuse})
        add(kind, share, 0);
    for (const int ms : lateMs)
        add(FaultKind::Late, share / double(lateMs.size()), ms);
    // Too short to be noticed three times in a row, and long enough to be.
    add(FaultKind::Drop, share * 0.9, 300);
    add(FaultKind::Drop, share * 0.1, 2000);
}

std::int64_t LineSoak::Transactions() const
{
    const drive::ServiceCounts &counts = server_->Counts();
    return counts.reads + counts.runReads + counts.writes + counts.refusals + counts.properties +
           counts.unanswered;
}

std::int64_t LineSoak::Faults() const
{
    std::int64_t total = 0;
    for (int kind = 0; kind < drive::FaultKindCount; ++kind)
        total += faults_.Injected(FaultKind(kind));
    return total;
}

void LineSoak::OpenWindow()
{
    std::vector<int> &window = windows_.emplace_back();
    const bool isWhole = Pick(4) == 0;
    const int count = isWhole ? model_.LastParam + 1 : BoxesOfAWindow;
    for (int i = 0; i < count; ++i) {
        window.push_back(isWhole ? i : Pick(model_.LastParam + 1));
        model_.AddReadInterest(window.back());
    }
}

void LineSoak::CloseWindow()
{
    const auto window = windows_.begin() + Pick(int(windows_.size()));
    for (const int p : *window)
        model_.RemoveReadInterest(p);
    windows_.erase(window);
}

void LineSoak::BeDrive()
{
    if (const int p = Pick(model_.LastParam + 1); Pick(10) == 0 && IsPlain(p))
        table_->Put(p, MarkedValue(p, Pick(20)));
}

void LineSoak::BeUser()
{
    if (Pick(50) == 0) {
        const int p = editable_[std::size_t(Pick(int(editable_.size())))];
        const ParamRecord &record = model_.ParamTable[p];
        const std::int32_t value =
            record.Min + std::int32_t(dice_() % std::uint32_t(record.Max - record.Min + 1));
        known_[std::size_t(p)].set(Bits(value));
        ++figures_.entries;
        model_.SetParamValue(p, value, true, false);
    }
    if (Pick(400) == 0) {
        if (int(windows_.size()) < MostWindows)
            OpenWindow();
        else
            CloseWindow();
    }
}

void LineSoak::GoOnLine()
{
    link_->GoOnLine();
    CheckTables();
}

void LineSoak::LoseNoPatience()
{
    // A wrong check character in the answer about the table's size leaves the engine standing still by
    // design.
    if (link_->PortOpen() && !link_->SerialCommTimer.isActive() && !link_->SerialCommTimeout.isActive() &&
        link_->PropMax == 0) {
        ++figures_.standStills;
        link_->GoOffLine(0);
    }
}

void LineSoak::CheckTables()
{
    for (int p = 0; p <= table_->LastParam(); ++p) {
        const auto at = std::size_t(p);
        if (const std::int32_t value = table_->Get(p); value != seenInDrive_[at]) {
            seenInDrive_[at] = value;
            known_[at].set(Bits(value));
        }
        if (const std::int32_t value = model_.Value(p); value != seen_[at]) {
            seen_[at] = value;
            ++figures_.rowChanges;
            if (!known_[at].test(Bits(value))) {
                ++figures_.foreignRows;
                known_[at].set(Bits(value));
            }
        }
    }
}

void LineSoak::Turn()
{
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    CheckTables();
}

bool LineSoak::Settle()
{
    QDeadlineTimer limit(SettleMs);
    faults_.Clear();
    while (!windows_.empty())
        CloseWindow();
    // What was still under way when the faults ended may yet take the link down.
    for (int rounds = 0; rounds < 2;) {
        if (!link_->PortOpen()) {
            rounds = 0;
            GoOnLine();
        }
        link_->SetAllReadFlags(1);
        link_->BeginScanAnew();
        while (link_->PortOpen() && (model_.WritePending || link_->CurrentParam <= model_.LastParam)) {
            Turn();
            if (limit.hasExpired())
                return false;
        }
        link_->SetAllReadFlags(-1);
        rounds += link_->PortOpen() ? 1 : 0;
    }
    return true;
}

void LineSoak::Compare()
{
    if (!Settle())
        figures_.problems << QStringLiteral("the link did not come to rest");
    for (int p = 0; p <= model_.LastParam; ++p) {
        const ParamRecord &record = model_.ParamTable[p];
        if (record.Value != table_->Get(p))
            figures_.problems << QStringLiteral("parameter %1: %2 here, %3 in the drive")
                                     .arg(p)
                                     .arg(record.Value)
                                     .arg(table_->Get(p));
        if (record.ReadFlag != 0)
            figures_.problems << QStringLiteral("parameter %1: read interest left over").arg(p);
        if (record.WriteFlag != WriteState::None)
            figures_.problems << QStringLiteral("parameter %1: write left over").arg(p);
    }
    if (link_->BCCErrorCount + link_->NoResponseCount + link_->PacketSizeErrorCount +
            link_->WriteRetryCount !=
        0)
        figures_.problems << QStringLiteral("an error counter is not back at zero");
}

SoakFigures LineSoak::Run(double rate, std::int64_t transactions, const std::vector<int> &lateMs)
{
    QStringList earlier = std::move(figures_.problems);
    figures_ = {};
    figures_.problems = std::move(earlier);
    const std::int64_t first = Transactions();
    const std::int64_t firstFault = Faults();
    const std::int64_t firstLate = faults_.Injected(FaultKind::Late);
    LetFail(rate, lateMs);
    OpenWindow();
    std::int64_t served = first;
    while (Transactions() < first + transactions) {
        if (!link_->PortOpen()) {
            ++figures_.wentOffLine;
            GoOnLine();
        }
        Turn();
        for (; served < Transactions(); ++served) {
            BeDrive();
            BeUser();
        }
    }
    figures_.transactions = Transactions() - first;
    figures_.faults = Faults() - firstFault;
    figures_.lateReplies = faults_.Injected(FaultKind::Late) - firstLate;
    Compare();
    return figures_;
}

} // namespace quorvik::testing
