// The drive link's engine in all its states: the input says what the drive sends, which timers come due, and
// what the user does meanwhile.

#include "Fuzzing.h"

#include "drive/PseudoTerminal.h"
#include "link/PacketLayer.h"
#include "link/PatientAsker.h"
#include "model/Document.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "platform/Waiting.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <functional>

using namespace quorvik;
using namespace quorvik::fuzzing;

namespace
{

constexpr int LastParam = 440; // the rules between parameters need what they name
constexpr int LastUsed = 40;
constexpr int LongestInput = 400;

/** One engine with its table, played with by the input from a timer, as a line and a user would. */
class Play
{
public:
    explicit Play(Bytes bytes)
        : bytes_(bytes)
    {
        Require(terminal_.Open().isEmpty(), "there is a pseudo-terminal");
        table_.FileLastParam = table_.LastParam = LastParam;
        table_.PresetTable.Resize(LastParam);
        for (int i = 0; i <= LastParam; ++i) {
            table_.PresetTable[i].Max = 1000;
            table_.PresetTable[i].Attributes = i % 3 == 0 ? Attr::Long : 0;
        }
        table_.ResetToDefaults();
        link_.MSComm1.DeviceOf = [this](int) { return terminal_.DevicePath(); };
        QObject::connect(&link_.MSComm1, &MSComm::OnComm, &link_, [this] { ++raised_; });
        QObject::connect(&step_, &QTimer::timeout, &step_, [this] { Step(); });
    }

    void Run()
    {
        step_.start(0);
        operations_.GoOnLine();
        PumpWhile([this] { return !isDone_; });
        step_.stop();
        if (link_.PortOpen())
            operations_.GoOffLine(OffLineReason::User);
        Require(!link_.SerialCommTimer.isActive() && !link_.SerialCommTimeout.isActive(),
                "off line nothing is armed");
    }

private:
    void Step()
    {
        if (bytes_.AtEnd()) {
            isDone_ = true;
            // Ends the wait of GoOnLine(), too.
            if (link_.PortOpen())
                operations_.GoOffLine(OffLineReason::User);
            return;
        }
        Act(bytes_.Next());
        // What the engine asked is thrown away: the input alone decides about the answers.
        terminal_.Read();
        Check();
    }

    void Act(std::uint8_t choice)
    {
        const int p = bytes_.Next() % (LastUsed + 1);
        const std::function<void()> acts[] = {
            [&] { Answer(true); },
            [&] { Answer(false); },
            [&] { Arrive(bytes_.Take(std::size_t(p))); },
            [&] { ComeDue(link_.SerialCommTimer); },
            [&] { ComeDue(link_.SerialCommTimeout); },
            [&] { table_.AddReadInterest(p); },
            [&] {
                if (table_.Row(p).ReadFlag > 0)
                    table_.RemoveReadInterest(p);
            },
            [&] { table_.SetParamValue(p, std::int16_t(bytes_.Next16()), true, false); },
            [&] { link_.ReadPropsIndex = std::int16_t(p); },
            [&] { link_.StartScan(WholeScan::Writing); },
            [&] { link_.SetDriveCommand(Restart(p % 3)); },
            // Not from within the step's own timer, which would not come due while this waits for the drive.
            [&] { QTimer::singleShot(0, &link_, [this] { operations_.ToggleComStatus(); }); },
        };
        acts[choice % std::size(acts)]();
    }

    static void ComeDue(QTimer &timer)
    {
        if (timer.isActive())
            timer.start(0);
    }

    /** An answer of the length that is awaited; a good one is an acknowledgement or has its check right. */
    void Answer(bool isGood)
    {
        QByteArray answer = bytes_.Take(std::size_t(link_.MSComm1.RThreshold()));
        if (isGood && !answer.isEmpty()) {
            char check = answer.size() > 1 ? 0 : Wire::Ack;
            for (qsizetype i = 1; i + 1 < answer.size(); ++i)
                check = char(check ^ answer[i]);
            answer.back() = check;
        }
        Arrive(answer);
    }

    void Arrive(const QByteArray &bytes)
    {
        if (bytes.isEmpty() || !link_.PortOpen())
            return;
        const int raised = raised_;
        const int buffered = link_.MSComm1.InBufferCount();
        terminal_.Write(bytes);
        // The terminal hands bytes over in its own time; an emptied line may have swallowed them.
        const bool wasStepping = step_.isActive();
        step_.stop();
        // Asked again and again: asleep, the loop would be woken for swallowed bytes by its slowest timer
        // only.
        const QDeadlineTimer limit(1, Qt::PreciseTimer);
        while (link_.PortOpen() && raised_ == raised &&
               link_.MSComm1.InBufferCount() < buffered + int(bytes.size()) && !limit.hasExpired())
            QCoreApplication::processEvents();
        if (wasStepping)
            step_.start(0);
    }

    void Check()
    {
        Require(table_.LastParam <= LastParam, "the drive cannot stretch the table");
        Require(link_.CurrentParam >= 0 && link_.CurrentParam <= LastParam + 1,
                "the cursor stays in the table");
        Require(!(link_.SerialCommTimer.isActive() && link_.SerialCommTimeout.isActive()),
                "one timer at most");
        Require(link_.PortOpen() || !link_.SerialCommTimeout.isActive(), "nothing is awaited off line");
        Require(link_.BCCErrorCount < 3 && link_.NoResponseCount < 3 && link_.PacketSizeErrorCount < 3 &&
                    link_.WriteRetryCount < 3,
                "no counter passes its limit");
        for (int i = 0; i <= LastParam; ++i) {
            const std::int32_t value = table_.Row(i).Value;
            Require(value >= -32768 && value <= 65535, "a row holds what a packet can carry");
        }
    }

    drive::PseudoTerminal terminal_;
    ParameterTable table_;
    Document document_{table_};
    testing::PatientAsker asker_;
    EntryRules rules_{table_, asker_};
    DriveLink link_{
        table_, LinkTimings{.scanPause = 0, .replyTimeout = 100000, .sizeErrorPause = 0, .lastCommand = 0}};
    SettingsFile file_{table_, document_};
    SaveCommands saving_{document_, asker_, file_, QString()};
    Snapshots snapshots_{table_, link_, asker_};
    Guards guards_{table_, document_, asker_};
    DriveOperations operations_{table_, document_, link_, rules_, saving_, asker_, snapshots_, guards_};
    QTimer step_;
    Bytes bytes_;
    int raised_ = 0;
    bool isDone_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    if (size > LongestInput)
        return -1;
    Play(Bytes(data, size)).Run();
    return 0;
}
