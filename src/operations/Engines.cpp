#include "operations/Engines.h"

#include "model/Faults.h"
#include "platform/Guard.h"
#include "platform/Ports.h"

namespace quorvik
{

namespace
{

/** Tells those who record that the drive has tripped. */
void NoteTrip(Engines &engines)
{
    const TripRecord &trip = engines.trips.Records().front();
    // When that was is not known.
    if (trip.isOfBefore)
        return;
    // The record itself waits for a reading of what is latched.
    const std::int32_t rawFaults = engines.states.DriveValue(Param::LatchedFault).value_or(0);
    const QString what = rawFaults == 0 ? QStringLiteral("EStop") : FaultsInShort(rawFaults);
    const QString text = QStringLiteral("Trip %1: %2").arg(trip.number).arg(what);
    engines.trend.NoteFault(text);
    engines.tripTrend.NoteTrip(trip.number, text);
}

} // namespace

Engines::Engines(const EnginePlaces &given, Asker &asker)
    : document(table)
    , file(table, document)
    , recoveryCopy(document, file,
                   given.keepsRecoveryCopy ? given.dataFolder + QStringLiteral("/recovery") : QString())
    , link(table, given.timings)
    , statistics(link)
    , packets(link, statistics)
    , states(table, link)
    , trips(table, link, states)
    , emulator(table)
    , rules(table, asker)
    , saving(document, asker, file, given.programFolder)
    , snapshots(table, link, asker)
    , guards(table, document, asker)
    , drive(table, document, link, rules, saving, asker, snapshots, guards)
    , fileCommands(table, document, rules, asker, file, saving, drive)
    , reconnection(table, document, link, states, drive)
    , backups(given.dataFolder + QStringLiteral("/backups"))
    , verifiedWrite(table, link, backups)
    , safeWrites(table, document, verifiedWrite, drive, snapshots, guards, asker)
    , journal(given.dataFolder + QStringLiteral("/history.sqlite"))
    , recorder(table, document, link, verifiedWrite, journal)
    , undoStack(table, document, link, verifiedWrite)
    , undo(table, document, link, undoStack, snapshots, safeWrites, saving, guards, asker)
    , trend(table, document, link, emulator)
    , beforeTrips(table, document, link, emulator)
    , recordings(given.dataFolder + QStringLiteral("/recordings"))
    , tripTrend(beforeTrips, recordings, link)
    , steps(table, link, states, trend, drive, asker)
{
    recordings.Follow(trend);
    On(&trips, &TripRecords::Recorded, &trips, [this] { NoteTrip(*this); });
    Ports ports(given.settings, given.devices);
    link.MSComm1.DeviceOf = [ports](int number) { return ports.DeviceOf(number); };
    // Whatever the system calls it when it is plugged in the next time.
    On(&link, &DriveLink::ComStatusChanged, &link, [this, ports]() mutable {
        if (link.PortOpen())
            ports.FollowAdapter(link.MSComm1.CommPort());
    });
}

QString Engines::InitGlobals(const QString &programFolder)
{
    QString sentence = file.LoadPresets(programFolder + QStringLiteral("/Presets.fil"));
    if (!sentence.isEmpty())
        return sentence;
    table.ResetToDefaults();
    table.Row(Param::DriveState).ReadFlag = 1;
    return {};
}

} // namespace quorvik
