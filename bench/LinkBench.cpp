// The drive link's speed: whole-table scans against the simulated drive on a paced line, and the cost of one
// parameter on a line that takes no time, beside a bare echo over a pseudo-terminal.

#include "BenchDrive.h"
#include "Figures.h"

#include "model/Document.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "platform/Asker.h"
#include "platform/Waiting.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSerialPort>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <pty.h>
#include <thread>
#include <unistd.h>

using namespace quorvik;

namespace
{

constexpr int Baud = 38400;
constexpr int BitsPerByte = 10;
constexpr int Rounds = 5;
constexpr int EchoTurns = 2000;
constexpr double NsPerUs = 1000.0;
constexpr double NsPerSecond = 1e9;

double MedianOf(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + Rounds / 2);
    return values[Rounds / 2];
}

/** Any message box means that the measurement is worth nothing. */
class FailingAsker : public Asker
{
public:
    MsgAnswer MsgBox(const QString &text, MsgButtons, MsgIcon, const QString &) override { Fail(text); }
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return std::nullopt; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return std::nullopt; }
};

/** What one scan took, from its first request to its end. */
struct ScanCost {
    double ns = 0;
    double wireNs = 0; ///< what the bytes need on the line
    int parameters = 0;
};

class Bench
{
public:
    explicit Bench(int baud)
        : drive_(baud)
    {
        if (const QString failure =
                SettingsFile(table_, document_).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE));
            !failure.isEmpty())
            Fail(failure);
        table_.ResetToDefaults();
        link_.MSComm1.DeviceOf = [this](int) { return drive_.Link(); };
        operations_.GoOnLine();
        if (!link_.PortOpen())
            Fail(QStringLiteral("the link did not come up"));
    }

    ScanCost Read()
    {
        table_.SetAllReadFlags(1);
        const ScanCost cost = Scan();
        table_.SetAllReadFlags(-1);
        return cost;
    }
    ScanCost Write()
    {
        table_.SetAllWriteFlags(WriteState::Queued);
        return Scan();
    }

private:
    ScanCost Scan()
    {
        Settle();
        const double bytesBefore = drive_.BytesOnTheWire();
        ScanCost cost;
        cost.parameters = table_.WritePending ? CountWrites() : table_.LastParam + 1;
        link_.CurrentParam = 0;
        link_.SerialCommTimer.start();
        // The clock starts at the tick that sends the first request.
        PumpWhile([this] { return !link_.SerialCommTimeout.isActive(); });
        QElapsedTimer clock;
        clock.start();
        PumpWhile([this] { return link_.CurrentParam <= table_.LastParam; });
        cost.ns = double(clock.nsecsElapsed());
        Settle();
        cost.wireNs = (drive_.BytesOnTheWire() - bytesBefore) * BitsPerByte * NsPerSecond / Baud;
        return cost;
    }

    /** Waits until nothing is under way on the line, with all scans held off. */
    void Settle()
    {
        link_.SerialCommTimer.stop();
        PumpWhile([] { return true; }, QDeadlineTimer(20));
        link_.SerialCommTimer.stop();
    }

    int CountWrites() const
    {
        int writes = 0;
        for (int p = 0; p <= table_.LastParam; ++p)
            writes += table_[p].WriteFlag == WriteState::Queued ? 1 : 0;
        return writes;
    }

    Drive drive_;
    ParameterTable table_;
    Document document_{table_};
    FailingAsker asker_;
    EntryRules rules_{table_, asker_};
    DriveLink link_{table_};
    SettingsFile file_{table_, document_};
    SaveCommands saving_{document_, asker_, file_, QString()};
    Snapshots snapshots_{table_, link_, asker_};
    Guards guards_{table_, document_, asker_};
    DriveOperations operations_{table_, document_, link_, rules_, saving_, asker_, snapshots_, guards_};
};

/**
 * Nanoseconds a turn of the least that any program needs here: one byte out and a reply of five bytes back
 * over a pseudo-terminal, through the event loop and QSerialPort.
 */
double BareEcho()
{
    int master = -1;
    int slave = -1;
    std::array<char, 128> name{};
    if (::openpty(&master, &slave, name.data(), nullptr, nullptr) != 0)
        Fail(QStringLiteral("no pseudo-terminal"));
    QSerialPort port(QString::fromLocal8Bit(name.data()));
    port.setBaudRate(Baud);
    if (!port.open(QIODevice::ReadWrite))
        Fail(port.errorString());
    std::thread echo([master] {
        const std::array<char, 5> reply{2, 0, 1, 2, 3};
        char byte = 0;
        for (int turn = 0; turn < EchoTurns; ++turn)
            if (::read(master, &byte, 1) != 1 || ::write(master, reply.data(), reply.size()) < 0)
                return;
    });

    int turns = 0;
    qsizetype received = 0;
    QObject::connect(&port, &QSerialPort::readyRead, &port, [&] {
        received += port.readAll().size();
        if (received < 5)
            return;
        received = 0;
        if (++turns < EchoTurns)
            port.write("\x06", 1);
    });
    QElapsedTimer clock;
    clock.start();
    port.write("\x06", 1);
    PumpWhile([&] { return turns < EchoTurns; });
    const double ns = double(clock.nsecsElapsed()) / EchoTurns;
    echo.join();
    port.close();
    ::close(slave);
    ::close(master);
    return ns;
}

double PacedRatio(ScanCost (Bench::*scan)())
{
    Bench bench(Baud);
    std::vector<double> ratios;
    for (int round = 0; round < Rounds; ++round) {
        const ScanCost cost = (bench.*scan)();
        ratios.push_back(cost.ns / cost.wireNs);
    }
    return MedianOf(ratios);
}

} // namespace

int main(int argc, char **argv)
{
    StayOnOneCore();
    const QCoreApplication application(argc, argv);
    bool kept = Print("link-read-paced", PacedRatio(&Bench::Read), "x wire", 1.06);
    kept &= Print("link-write-paced", PacedRatio(&Bench::Write), "x wire", 1.08);

    // In turns, so that both have the same machine.
    Bench unpaced(0);
    std::vector<double> scans;
    std::vector<double> echoes;
    for (int round = 0; round < Rounds; ++round) {
        const ScanCost cost = unpaced.Read();
        scans.push_back(cost.ns / cost.parameters);
        echoes.push_back(BareEcho());
    }
    kept &= Print("link-read-unpaced", MedianOf(scans) / NsPerUs, "us/parameter", 100);
    kept &= Print("link-read-to-bare-echo", MedianOf(scans) / MedianOf(echoes), "x", 1.5);
    return kept ? 0 : 1;
}
