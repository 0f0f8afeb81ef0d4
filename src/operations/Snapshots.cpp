#include "operations/Snapshots.h"

#include "compare/DriveSet.h"
#include "link/DriveLink.h"
#include "model/ParameterTable.h"
#include "platform/Asker.h"
#include "platform/Progress.h"
#include "platform/Waiting.h"

#include <QTime>

namespace quorvik
{

namespace
{

/** Follows one reading from its begin to its end. */
struct Reading {
    explicit Reading(DriveLink &link)
    {
        QObject::connect(&link, &DriveLink::Fetched, &context,
                         [this](int p, std::int32_t rawValue) { values[p] = rawValue; });
        QObject::connect(&link, &DriveLink::ScanFinished, &context, [this](const ScanResult &result) {
            scan = result;
            isOver = true;
        });
    }

    QObject context;
    std::map<int, std::int32_t> values;
    ScanResult scan;
    bool isOver = false;
};

} // namespace

Snapshots::Snapshots(ParameterTable &table, DriveLink &link, Asker &asker)
    : table_(table)
    , link_(link)
    , asker_(asker)
{
}

OperationResult Snapshots::ReadDrive(ParameterSet &set)
{
    if (!link_.PortOpen() || link_.IsScanning())
        return {Outcome::Refused};
    std::set<int> all;
    for (int p = 0; p <= table_.LastParam; ++p)
        all.insert(p);
    Progress progress(QStringLiteral("Reading Parameters from Drive"), int(WholeScan::Fetching),
                      int(all.size()));
    Reading reading(link_);
    QObject::connect(&link_, &DriveLink::ScanProgress, &progress, &Progress::Advance);
    QObject::connect(&link_, &DriveLink::ScanFinished, &progress, &Progress::End);
    QObject::connect(&progress, &Progress::CancelWanted, &link_, &DriveLink::CancelScan);
    link_.StartFetch(all);
    asker_.ShowProgress(progress);

    const ScanResult &scan = reading.scan;
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
    OperationResult result{.missing = {scan.missing.begin(), scan.missing.end()}};
    if (scan.end == ScanResult::End::LinkLost)
        result.outcome = Outcome::LinkLost;
    else if (scan.end == ScanResult::End::Cancelled)
        result.outcome = Outcome::Cancelled;
    else if (scan.isInDoubt)
        result.outcome = Outcome::Refused;
    else if (!result.missing.empty())
        result.outcome = Outcome::Partial;
    for (const int p : scan.missing)
        reading.values.erase(p);
    // Values that may stand at the wrong parameters are worse than none.
    if (scan.isInDoubt)
        reading.values.clear();
    set = SetOfDrive(reading.values, table_, QStringLiteral("drive, read %1").arg(time));
    return result;
}

std::map<int, std::int32_t> Snapshots::ReadFresh(const std::set<int> &params)
{
    if (!link_.PortOpen() || link_.IsScanning())
        return {};
    Reading reading(link_);
    link_.StartFetch(params);
    PumpWhile([&reading] { return !reading.isOver; });
    if (reading.scan.end != ScanResult::End::Complete || reading.scan.isInDoubt)
        return {};
    for (const int p : reading.scan.missing)
        reading.values.erase(p);
    return reading.values;
}

} // namespace quorvik
