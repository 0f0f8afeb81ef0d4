// Verified writes: what the whole way of keeping, writing and reading back takes beside the time that its
// bytes need on the wire, and whether the reports of writes that were interrupted are true.

#include "BenchDrive.h"
#include "Figures.h"

#include "compare/Backups.h"
#include "compare/VerifiedWrite.h"
#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "platform/Guard.h"
#include "platform/Waiting.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <memory>
#include <random>

using namespace quorvik;

namespace
{

constexpr int Baud = 38400;
constexpr int BitsPerByte = 10;
constexpr double NsPerSecond = 1e9;
constexpr int Rounds = 3;
constexpr int Interruptions = 200;
constexpr LinkTimings Hasty{.scanPause = 6, .replyTimeout = 12, .sizeErrorPause = 50, .quiet = 3};

/** The program's side of a verified write, without a window. */
class Tool
{
public:
    Tool(const QString &device, LinkTimings timings)
        : link(table, timings)
    {
        if (QString failure = LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), table);
            !failure.isEmpty())
            Fail(failure);
        table.ResetToDefaults();
        link.MSComm1.DeviceOf = [device](int) { return device; };
        QObject::connect(&writing, &VerifiedWrite::Finished, [this] { isOver_ = true; });
    }

    bool GoOnLine()
    {
        if (!link.Open().isEmpty())
            return false;
        PumpWhile([this] { return link.IsAskingForSize(); });
        return link.PortOpen() && link.TakeSize();
    }
    void Run(const std::function<void()> &begin)
    {
        isOver_ = false;
        begin();
        PumpWhile([this] { return !isOver_; });
    }
    /** Everything that can be written and is no command. */
    std::vector<ParamValue> WholeSet() const
    {
        std::vector<ParamValue> values;
        for (int p = 0; p <= table.LastParam; ++p)
            if (!table.AttrBit(Attr::ReadOnly, p) && !Param::IsClock(p) && !Param::ClearsItself(p))
                values.push_back({p, table.Value(p)});
        return values;
    }

    QTemporaryDir folder;
    ParameterTable table;
    DriveLink link;
    Backups backups{folder.path()};
    VerifiedWrite writing{table, link, backups};

private:
    bool isOver_ = false;
};

/** The whole table to a drive on a paced line, against the time that its bytes need there. */
double PacedRatio()
{
    Drive drive(Baud);
    Tool tool(drive.Link(), {});
    if (!tool.GoOnLine())
        Fail(QStringLiteral("the link did not come up"));
    std::vector<double> ratios;
    for (int round = 0; round < Rounds; ++round) {
        PumpWhile([] { return true; }, QDeadlineTimer(50));
        const double before = drive.BytesOnTheWire();
        QElapsedTimer clock;
        clock.start();
        tool.Run([&] { tool.writing.Begin(tool.WholeSet()); });
        const double ns = double(clock.nsecsElapsed());
        ratios.push_back(ns * Baud / ((drive.BytesOnTheWire() - before) * BitsPerByte * NsPerSecond));
        const WriteReport &report = tool.writing.Report();
        if (report.Count(Arrival::Verified) < int(report.rows.size()))
            Fail(report.Summary());
    }
    std::ranges::nth_element(ratios, ratios.begin() + Rounds / 2);
    return ratios[Rounds / 2];
}

/** A simulated drive in this very process, so that all its values are known at any time. */
class Interrupted
{
public:
    Interrupted()
    {
        if (QString failure = LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), records_);
            !failure.isEmpty())
            Fail(failure);
        drive_ = std::make_unique<drive::DriveTable>(records_);
        commands_ = std::make_unique<drive::DriveCommands>(*drive_, drive::CommandTimings{2, 5});
        if (QString failure = terminal_.Open(); !failure.isEmpty())
            Fail(failure);
        server_ = std::make_unique<drive::DriveServer>(*drive_, *commands_, faults_, terminal_, 0);
        tool_ = std::make_unique<Tool>(terminal_.DevicePath(), Hasty);
    }

    int Wrong() const { return wrong_; }
    int Cut() const { return cut_; }
    int Resumed() const { return resumed_; }

    /** One write that is cut somewhere, and resumed until it is through. */
    void Turn()
    {
        const std::vector<ParamValue> values = NewValues();
        Connect();
        Cut(values);
        kept_ = {};
        Go([&] { tool_->writing.Begin(values); });
        const WriteReport &report = tool_->writing.Report();
        cut_ += report.end == WriteReport::End::LinkLost ? 1 : 0;
        for (int attempt = 0; report.CanResume() && attempt < 20; ++attempt) {
            faults_.Clear();
            BeOtherDrive();
            if (Draw(3) == 0)
                commands_->Restart();
            Connect();
            if (Draw(2) == 0)
                Cut(values);
            Go([&] { tool_->writing.Resume(true); });
            ++resumed_;
        }
        faults_.Clear();
        if (report.CanResume())
            Note("not through after twenty attempts");
        tool_->link.Close();
    }

private:
    int Draw(int below) { return int(dice_() % unsigned(below)); }
    void Note(const char *what)
    {
        ++wrong_;
        std::fprintf(stderr, "wrong: %s\n", what);
    }
    std::map<int, std::int32_t> Held() const
    {
        std::map<int, std::int32_t> held;
        for (int p = 0; p <= drive_->LastParam(); ++p)
            held[p] = drive_->Get(p);
        return held;
    }

    std::vector<ParamValue> NewValues()
    {
        std::vector<ParamValue> values = tool_->WholeSet();
        std::erase_if(values, [](const ParamValue &value) {
            return value.param >= Param::Run && value.param <= Param::Jog;
        });
        for (ParamValue &value : values) {
            const ParamRecord &record = records_[value.param];
            if (!records_.AttrBit(Attr::Destination | Attr::Refresh, value.param) && record.Max > record.Min)
                value.rawValue = record.Min + Draw(std::min(record.Max - record.Min, 900) + 1);
        }
        return values;
    }
    void Connect()
    {
        while (!tool_->link.PortOpen() && !tool_->GoOnLine())
            faults_.Clear();
    }
    /** One go of a write, and whether its report is true. */
    void Go(const std::function<void()> &begin)
    {
        const std::map<int, std::int32_t> before = Held();
        tool_->Run(begin);
        if (kept_.empty() && !tool_->writing.Report().backupPath.isEmpty())
            kept_ = before;
        Check(before);
    }
    /** The line fails at the request for a drawn parameter, or now and then all the time. */
    void Cut(const std::vector<ParamValue> &values)
    {
        static constexpr const char *Often[] = {"bad-bcc,rate=0.01", "silent,rate=0.01", "refuse,rate=0.02"};
        const std::int64_t now = drive::SteadyNow();
        faults_.Add(QStringLiteral("%1,seed=%2").arg(QLatin1String(Often[Draw(3)])).arg(1 + Draw(1000)), now);
        const int p = values[std::size_t(Draw(int(values.size())))].param;
        faults_.Add(QStringLiteral("drop:%1").arg(p), now);
    }
    /** Another drive comes to the port meanwhile: nothing may be written to it. */
    void BeOtherDrive()
    {
        if (tool_->writing.Report().backupPath.isEmpty())
            return;
        const std::int32_t model = drive_->Get(Param::DriveModel);
        drive_->SetDriveModel(model == 3 ? 4 : 3);
        const std::int64_t writes = server_->Counts().writes;
        Connect();
        tool_->Run([&] { tool_->writing.Resume(true); });
        if (tool_->writing.Report().end != WriteReport::End::OtherDrive || server_->Counts().writes != writes)
            Note("another drive was written to");
        drive_->SetDriveModel(model);
    }
    void Check(const std::map<int, std::int32_t> &before)
    {
        for (const WrittenRow &row : tool_->writing.Report().rows) {
            const std::int32_t held = drive_->Get(row.value.param);
            const bool isWrong = (row.arrival == Arrival::Verified && held != row.value.rawValue) ||
                                 (row.arrival == Arrival::Differs && held != row.rawFound) ||
                                 (row.arrival == Arrival::Refused && row.rawFound && held != *row.rawFound) ||
                                 (row.arrival == Arrival::NotSent && held != before.at(row.value.param));
            if (isWrong)
                Note(qPrintable(QStringLiteral("(%1) holds %2, arrival %3, value %4")
                                    .arg(row.value.param)
                                    .arg(held)
                                    .arg(int(row.arrival))
                                    .arg(row.value.rawValue)));
        }
        const QString path = tool_->writing.Report().backupPath;
        if (path.isEmpty())
            return;
        ParameterTable kept(tool_->table);
        kept.SetPortOpen(false);
        Document document(kept);
        if (!SettingsFile(kept, document).LoadSettings(path).isEmpty())
            Note("the set of before cannot be read");
        for (const auto &[p, value] : kept_)
            if (!Param::IsCommand(p) && kept.Value(p) != value)
                Note("the set of before is another one");
    }

    std::mt19937 dice_{1};
    std::map<int, std::int32_t> kept_; ///< what the set of before must hold
    ParameterTable records_;
    drive::FaultInjector faults_;
    drive::PseudoTerminal terminal_;
    std::unique_ptr<drive::DriveTable> drive_;
    std::unique_ptr<drive::DriveCommands> commands_;
    std::unique_ptr<drive::DriveServer> server_;
    std::unique_ptr<Tool> tool_;
    int wrong_ = 0;
    int cut_ = 0;
    int resumed_ = 0;
};

} // namespace

int main(int argc, char **argv)
{
    StayOnOneCore();
    const QCoreApplication application(argc, argv);
    SetFailureReporter([](const RuntimeFailure &failure) { Fail(failure.Sentence()); });
    bool kept = Print("verified-write-paced", PacedRatio(), "x wire", 1.10);
    Interrupted interrupted;
    while (interrupted.Cut() < Interruptions)
        interrupted.Turn();
    std::printf("interrupted-writes: %d cut, %d resumed\n", interrupted.Cut(), interrupted.Resumed());
    kept &= Print("interrupted-writes-wrong-reports", interrupted.Wrong(), "reports", 0);
    return kept ? 0 : 1;
}
