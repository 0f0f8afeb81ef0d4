#include "shell/StatusLines.h"

#include "blocks/FormTripRecord.h"
#include "model/Faults.h"
#include "operations/Engines.h"
#include "platform/Guard.h"
#include "platform/PortAddress.h"
#include "platform/Strip.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"
#include "shell/StatusBarMain.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int WaitingMs = 400;
constexpr std::int32_t EStopState = 8;
/** RampStop, Jog Stop, Quick Stop, Coast Stop. */
constexpr std::int32_t StoppingStates[] = {2, 4, 6, 7};

const QString LinkLine = QStringLiteral("link");
const QString WriteLine = QStringLiteral("write");
const QString AsideLine = QStringLiteral("aside");
const QString UnsavedLine = QStringLiteral("unsaved");
const QString UnwrittenLine = QStringLiteral("unwritten");
const QString RanLine = QStringLiteral("ran");
const QString TripLine = QStringLiteral("trip");
const QString HistoryLine = QStringLiteral("history");
const QString HistoryNewsLine = QStringLiteral("history news");
const QString RecordingLine = QStringLiteral("recording");

QString Counted(std::size_t count, const QString &one, const QString &many)
{
    return count == 1 ? QStringLiteral("1 ") + one : QString::number(count) + u' ' + many;
}

} // namespace

StatusLines::StatusLines(MDIFormMain &main, Strip &strip)
    : main_(main)
    , engines_(main.AllEngines())
    , strip_(strip)
{
    waiting_.setSingleShot(true);
    waiting_.setInterval(WaitingMs);
    On(&waiting_, &QTimer::timeout, this, [this] { ShowLink(); });
    FollowEngines();
}

void StatusLines::FollowEngines()
{
    On(&engines_.link, &DriveLink::ComStatusChanged, this, [this] {
        const bool isOnLine = engines_.link.PortOpen();
        if (isOnLine)
            waiting_.start();
        else
            wasOnLine_ = true;
        unsaved_.clear();
        Refresh();
    });
    // The emulator ticks from start to end of the program; nothing that is said here is in a hurry.
    On(&engines_.emulator, &DriveEmulator::StatusPanels, this, [this] { Refresh(); });
    On(&engines_.states, &ValueStates::LossChanged, this, [this] { Refresh(); });
    On(&engines_.reconnection, &Reconnection::Changed, this, [this] { Refresh(); });
    On(&engines_.link, &DriveLink::WriteTaken, this, [this](int p) {
        if (!Param::IsCommand(p) && !Param::IsClock(p) && !Param::ClearsItself(p))
            unsaved_.insert(p);
    });
    On(&engines_.table.Signals(), &TableSignals::Changed, this, [this](const ParamChange &change) {
        if (change.cause == ChangeCause::File || change.cause == ChangeCause::Factory)
            wasOnLine_ = false;
    });
    On(&engines_.drive, &DriveOperations::WholeWriteEnded, this, [this](const QString &sentence) {
        strip_.Withdraw(WriteLine);
        strip_.Show({WriteLine, Urgency::News, sentence, {{QStringLiteral("Compare..."), [this] {
                                                               ShowCompare(main_, true);
                                                           }}}});
    });
    On(&engines_.safeWrites, &SafeWrites::Reported, this, [this] { ShowVerifiedWrite(); });
    // Once the command that went on line is through: reading the drive waits.
    On(&engines_.drive, &DriveOperations::CompareWanted, this,
       [this] { QTimer::singleShot(0, this, [this] { Guarded([this] { ShowCompare(main_, true); }); }); });
    const auto showFailure = [this](const QString &key) {
        return [this, key](const QString &sentence) {
            strip_.Withdraw(key);
            strip_.Show({key, Urgency::Warning, sentence});
        };
    };
    On(&engines_.saving, &SaveCommands::SaveFailed, this, showFailure(QStringLiteral("save")));
    On(&engines_.recoveryCopy, &RecoveryCopy::WriteFailed, this, showFailure(QStringLiteral("recovery")));
    On(&engines_.journal, &Journal::Trouble, this, [this](const QString &sentence) {
        strip_.Show({HistoryLine, Urgency::Warning, sentence});
    });
    On(&engines_.journal, &Journal::Recovered, this, [this] { strip_.Withdraw(HistoryLine); });
    On(&engines_.journal, &Journal::News, this, [this](const QString &sentence) {
        strip_.Show({HistoryNewsLine, Urgency::News, sentence});
    });
    On(&engines_.recordings, &TrendStore::Trouble, this, [this](const QString &sentence) {
        strip_.Show({RecordingLine, Urgency::Warning, sentence});
    });
    On(&engines_.recordings, &TrendStore::Recovered, this, [this] { strip_.Withdraw(RecordingLine); });
    On(&engines_.document, &Document::TitleChanged, this, [this] {
        if (engines_.document.HasUnsavedEdits)
            return;
        for (const char *key : {"save", "recovery", "leftover"})
            strip_.Withdraw(QString::fromLatin1(key));
    });
}

QString StatusLines::Device() const
{
    const MSComm &port = engines_.link.MSComm1;
    return port.DeviceOf ? port.DeviceOf(port.CommPort()) : QString();
}

QString StatusLines::PortText() const
{
    const int number = engines_.link.MSComm1.CommPort();
    const QString device = Device();
    const QString name = QStringLiteral("Com%1").arg(number);
    return device.isEmpty() ? name : name + QStringLiteral(" (") + device + u')';
}

void StatusLines::Refresh()
{
    // A box at start-up pumps events before the factory table is read.
    if (engines_.table.UpperBound() < 0)
        return;
    ShowLink();
    ShowAside();
    ShowUnwritten();
    ShowUnsaved();
    ShowRanWhenSaved();
    ShowTrip();
}

void StatusLines::ShowLink()
{
    if (engines_.states.IsLost() && !engines_.link.PortOpen()) {
        ShowLost();
    } else if (!engines_.link.PortOpen()) {
        strip_.Show({LinkLine, Urgency::Hint,
                     QStringLiteral("Off line: values are this set's, outputs are emulated.")});
    } else if (!engines_.link.IsAskingForSize()) {
        strip_.Withdraw(LinkLine);
    } else if (!waiting_.isActive()) {
        strip_.Show(
            {LinkLine,
             Urgency::Warning,
             QStringLiteral("Waiting for the first answer of the drive on %1.").arg(PortText()),
             {{QStringLiteral("Cancel"), [this] { engines_.drive.GoOffLine(OffLineReason::User); }}}});
    }
}

void StatusLines::ShowVerifiedWrite()
{
    const WriteReport &report = engines_.safeWrites.Report();
    StripLine line{WriteLine,
                   Urgency::News,
                   report.Summary(engines_.table) + u'.',
                   {{QStringLiteral("Show"), [this] { ShowWriteReport(main_); }, false}}};
    if (report.Count(Arrival::Refused) > 0)
        line.actions.append({QStringLiteral("Retry"), [this] { engines_.safeWrites.RetryRefused(); }});
    strip_.Withdraw(WriteLine);
    strip_.Show(line);
    Refresh();
}

void StatusLines::ShowLost()
{
    using Finding = Reconnection::Finding;
    const Reconnection &search = engines_.reconnection;
    const QString since = engines_.states.LostSince().toString(QStringLiteral("HH:mm:ss"));
    const StripAction read{QStringLiteral("Read from drive"), [this] { engines_.reconnection.Read(); },
                           false};
    const StripAction compare{QStringLiteral("Compare"), [this] { engines_.reconnection.Compare(); }, false};
    const StripAction emulate{QStringLiteral("Emulate"), [this] { engines_.states.EndLoss(); }, false};
    if (search.Found() == Finding::Drive || search.Found() == Finding::AnotherDrive) {
        const QString who = search.Found() == Finding::Drive
                                ? QStringLiteral("The drive answers again on %1.").arg(PortText())
                                : QStringLiteral("Another drive than before answers on %1: %2.")
                                      .arg(PortText(), search.OtherDriveText());
        strip_.Show({LinkLine,
                     Urgency::Warning,
                     who + QStringLiteral(" Values are from %1.").arg(since),
                     {read, compare, emulate}});
        return;
    }
    QString sentence =
        QStringLiteral("No answer from the drive since %1 on %2. Values are old.").arg(since, PortText());
    if (search.Found() == Finding::NoAdapter)
        sentence += PortAddress::IsMeant(Device()) ? QStringLiteral(" The server is not reached.")
                                                   : QStringLiteral(" The adapter is not plugged in.");
    else if (search.Found() == Finding::InUse)
        sentence += QStringLiteral(" Another program has the port.");
    strip_.Show({LinkLine,
                 Urgency::Warning,
                 sentence,
                 {{QStringLiteral("Reconnect"), [this] { engines_.reconnection.Read(); }, false},
                  {QStringLiteral("Details"), [this] { ShowLinkDetails(main_); }, false},
                  emulate}});
}

void StatusLines::ShowAside()
{
    if (!engines_.link.PortOpen() || !engines_.drive.IsAside()) {
        strip_.Withdraw(AsideLine);
        return;
    }
    strip_.Show(
        {AsideLine, Urgency::News,
         QStringLiteral("On line beside the open set: the windows go on showing the open set, not the "
                        "drive, but for what is read only. To see the drive's values, go off line, then "
                        "on line with No.")});
}

void StatusLines::ShowUnwritten()
{
    const std::size_t count = engines_.states.UnwrittenEntries().size();
    if (count == 0) {
        strip_.Withdraw(UnwrittenLine);
        return;
    }
    const bool isOnLine = engines_.link.PortOpen();
    StripLine line{UnwrittenLine, Urgency::News,
                   Counted(count, QStringLiteral("entry"), QStringLiteral("entries")) +
                       QStringLiteral(" had not reached the drive when the link was lost.")};
    if (isOnLine)
        line.actions = {{QStringLiteral("Review"), [this] { ShowUnwrittenEntries(main_); }}};
    else
        line.sentence += QStringLiteral(" They are kept for a review once it answers.");
    strip_.Show(line);
}

void StatusLines::ShowUnsaved()
{
    if (!engines_.document.DriveModified)
        unsaved_.clear();
    if (!engines_.link.PortOpen() || !engines_.document.DriveModified) {
        strip_.Withdraw(UnsavedLine);
        return;
    }
    const QString what = unsaved_.empty()       ? QStringLiteral("changes that are")
                         : unsaved_.size() == 1 ? QStringLiteral("1 change that is")
                                                : QStringLiteral("%1 changes that are").arg(unsaved_.size());
    strip_.Show({UnsavedLine,
                 Urgency::News,
                 QStringLiteral("The drive runs with %1 not in its memory.").arg(what),
                 {{QStringLiteral("Save in drive"), [this] { engines_.drive.SaveDriveParameters(); }}}});
}

void StatusLines::ShowRanWhenSaved()
{
    const bool isLocked =
        !engines_.link.PortOpen() && !engines_.states.IsLost() && !engines_.table.DriveIsStopped();
    if (!isLocked) {
        strip_.Withdraw(RanLine);
        return;
    }
    strip_.Show({RanLine,
                 Urgency::News,
                 wasOnLine_ ? QStringLiteral("The drive ran when the link was closed.")
                            : QStringLiteral("This set was saved while the drive ran."),
                 {{QStringLiteral("Treat as stopped"),
                   [this] { engines_.table.SetValue(Param::DriveState, 0, ChangeCause::Command); }}}});
}

void StatusLines::ShowDriveState(const QString &text)
{
    auto condition = StatusBarMain::Condition::Calm;
    if (!text.isEmpty()) {
        const std::int32_t state = engines_.table.Value(Param::DriveState);
        if (state == EStopState)
            condition = StatusBarMain::Condition::Tripped;
        else if (std::ranges::find(StoppingStates, state) != std::end(StoppingStates))
            condition = StatusBarMain::Condition::Stopping;
    }
    const QString faults = condition == StatusBarMain::Condition::Tripped && !Faults().isEmpty()
                               ? QStringLiteral(": ") + Faults()
                               : QString();
    main_.StatusPanels().SetDriveStatus(text, condition, faults);
}

const TripRecord *StatusLines::PresentTrip() const
{
    const ParameterTable &table = engines_.table;
    const bool isTripped =
        table.PortOpen() && !table.DriveStateUnread && table.Value(Param::DriveState) == EStopState;
    return isTripped && !engines_.trips.Records().empty() ? &engines_.trips.Records().front() : nullptr;
}

QString StatusLines::Faults() const
{
    const TripRecord *trip = PresentTrip();
    return trip && trip->rawFaults ? FaultsInShort(*trip->rawFaults) : QString();
}

void StatusLines::ShowTrip()
{
    const TripRecord *trip = PresentTrip();
    if (trip == nullptr) {
        strip_.Withdraw(TripLine);
        return;
    }
    const QString what = Faults().isEmpty() ? QStringLiteral("EStop") : Faults();
    const QString time = trip->seen.toString(QStringLiteral("HH:mm:ss"));
    StripLine line{
        TripLine,
        Urgency::Fault,
        trip->isOfBefore
            ? QStringLiteral("%1: the drive had stopped before the link came up at %2.").arg(what, time)
            : QStringLiteral("%1 at %2. The drive has stopped.").arg(what, time),
        {{QStringLiteral("Fault Log"), [this] { ShowFaultLog(main_); }, false}}};
    if (!trip->isOfBefore)
        line.actions.append(
            {QStringLiteral("At the trip"), [this] { OpenTripRecord(main_.TheDesk()); }, false});
    strip_.Show(line);
}

} // namespace quorvik
