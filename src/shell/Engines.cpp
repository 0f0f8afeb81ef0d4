#include "shell/Engines.h"

#include "platform/Guard.h"
#include "platform/Ports.h"

namespace quorvik
{

Engines::Engines(const Surroundings &given, Asker &asker)
    : document(table)
    , file(table, document)
    , recoveryCopy(document, file, given.dataHome + QStringLiteral("/quorvik/recovery"))
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
    , backups(given.dataHome + QStringLiteral("/quorvik/backups"))
    , verifiedWrite(table, link, backups)
    , safeWrites(table, document, verifiedWrite, drive, snapshots, guards, asker)
    , journal(given.dataHome + QStringLiteral("/quorvik/history.sqlite"))
    , recorder(table, document, link, verifiedWrite, journal)
    , undoStack(table, document, link, verifiedWrite)
    , undo(table, document, link, undoStack, snapshots, safeWrites, saving, guards, asker)
{
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
