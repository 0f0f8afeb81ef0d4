#include "report/ReportTables.h"

#include "compare/Differences.h"
#include "compare/DriveSet.h"
#include "model/DriveClock.h"
#include "model/FaultRecord.h"
#include "model/Faults.h"
#include "model/FullNames.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "operations/TripReport.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostNamed = 8;

/** What is asked of a motor when a drive is handed over. */
constexpr int MotorParams[] = {
    Param::NameplateMotorI,      Param::NameplateMotorVoltage,  Param::FullRPMLevel,
    Param::PositiveILimit,       Param::NegativeILimit,         Param::FeedbackSelect,
    Param::TachometerType,       Param::EncoderLines,           Param::FullEncoderRPM,
    Param::InvertFeedback,       Param::FieldIDemand,           Param::MinFieldCurrentDemand,
    Param::FieldCrossoverEnable, Param::FieldCrossoverSetpoint,
};

QString NotRead()
{
    return QStringLiteral("not read");
}

/** "1.00"; of a value that is not of now, since when. */
QString DriveText(const ReportSource &source, int p)
{
    if (!source.drive.Knows(p))
        return NotRead();
    const QString text = ShownText(source.drive.Value(p), source.drive.records[p].Attributes);
    const auto doubt = source.doubts.find(p);
    return doubt == source.doubts.end() ? text : QStringLiteral("%1 (%2)").arg(text, doubt->second);
}

bool KnowsAll(const ParameterSet &set, int first, int last)
{
    for (int p = first; p <= last; ++p)
        if (!set.Knows(p))
            return false;
    return true;
}

QString ClockText(const ReportSource &source)
{
    const ParameterSet &drive = source.drive;
    if (!KnowsAll(drive, Param::ClockFirst, Param::ClockLast))
        return NotRead();
    QString text = DriveDateText(drive.Value(Param::ClockYear), drive.Value(Param::ClockMonth),
                                 drive.Value(Param::ClockDate)) +
                   QStringLiteral(", ") +
                   DriveTimeText(drive.Value(Param::ClockHours), drive.Value(Param::ClockMinutes),
                                 drive.Value(Param::ClockSeconds));
    if (source.readAt.isValid())
        return text + QStringLiteral(", read on ") + MomentText(source.readAt);
    const auto doubt = source.doubts.find(Param::ClockSeconds);
    return doubt == source.doubts.end() ? text : QStringLiteral("%1 (%2)").arg(text, doubt->second);
}

/** Of the drive; where it has not told it what the set is made for. */
QString ModelOrSet(const ReportSource &source, int p)
{
    if (source.drive.Knows(p) || !source.set.Knows(p))
        return DriveText(source, p);
    return QStringLiteral("not read; the set has %1")
        .arg(ShownText(source.set.Value(p), source.set.records[p].Attributes));
}

QString FaultsText(std::int32_t rawFaults)
{
    const QStringList names = FaultNames(rawFaults);
    return names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", "));
}

void AddLog(CommissioningTable &table, const ReportSource &source, const ParameterTable &like)
{
    if (source.drive.known.empty()) {
        table.remark = QStringLiteral("The drive's fault log was not read.");
        return;
    }
    const ParameterTable drive = TableOf(source.drive, like);
    bool isFilled = false;
    for (int record = 0; record < FaultLog::Records; ++record) {
        const int base = FaultLog::First + record * FaultLog::Step;
        const QString name = QStringLiteral("Log %1").arg(record + 1);
        if (!KnowsAll(source.drive, base, base + FaultLog::Step - 1)) {
            table.rows.append({name, NotRead(), QString()});
            isFilled = true;
        } else if (!IsEmptyRecord(drive, base)) {
            table.rows.append({name, FaultsText(drive.Value(base)), FaultTimeText(drive, base)});
            isFilled = true;
        }
    }
    if (!isFilled)
        table.remark = QStringLiteral("The drive's fault log is empty.");
    else if (const auto doubt = source.doubts.find(FaultLog::First); doubt != source.doubts.end())
        table.remark = QStringLiteral("The drive's fault log: %1.").arg(doubt->second);
}

} // namespace

CommissioningTable IdentityTable(const ReportSource &source)
{
    const ParameterSet &drive = source.drive;
    CommissioningTable table{{QStringLiteral("What"), QStringLiteral("Value")}, {}, {}};
    const auto add = [&table](const QString &what, const QString &value) {
        table.rows.append({what, value});
    };
    add(QStringLiteral("Model"), ModelOrSet(source, Param::DriveModel));
    add(QStringLiteral("Rated current"), ModelOrSet(source, Param::DriveCurrent));
    add(QStringLiteral("Firmware"), DriveText(source, Param::ControlFirmwareVersion));
    add(QStringLiteral("Trigger firmware"), DriveText(source, Param::TriggerFirmwareVersion));
    add(QStringLiteral("Operating hours"), DriveText(source, Param::OperatingHours));
    add(QStringLiteral("Parameters"),
        drive.known.empty()
            ? NotRead()
            : QStringLiteral("%1 (0 to %2)").arg(drive.LastParam() + 1).arg(drive.LastParam()));
    add(QStringLiteral("Clock"), ClockText(source));
    if (drive.known.empty())
        table.remark = QStringLiteral("No drive was on line.");
    else if (source.readAt.isValid())
        table.remark = QStringLiteral("Read on %1.").arg(MomentText(source.readAt));
    return table;
}

CommissioningTable MotorTable(const ReportSource &source)
{
    const ParameterSet &set = source.set;
    CommissioningTable table{
        {QStringLiteral("Number"), QStringLiteral("Name"), QStringLiteral("Value")}, {}, {}};
    for (const int p : MotorParams) {
        if (p > set.LastParam())
            continue;
        table.rows.append({QString::number(p), set.records[p].Name,
                           set.Knows(p) ? ShownText(set.Value(p), set.records[p].Attributes) : NotRead()});
    }
    return table;
}

CommissioningTable ChangedSettingsTable(const ReportSource &source, const ParameterTable &like,
                                        const QStringList &blocks)
{
    CommissioningTable table{{QStringLiteral("Number"), QStringLiteral("Name")}, {}, {}};
    if (!blocks.isEmpty())
        table.heads << QStringLiteral("Block");
    table.heads << QStringLiteral("Factory") << QStringLiteral("Now");
    const ParameterSet factory = ParameterSet::FactoryOf(like, QStringLiteral("factory"));
    const ParameterSet *const sets[] = {&factory, &source.set};
    std::vector<int> unknown;
    for (const DifferenceRow &row : Compare(sets, blocks)) {
        const auto &[before, now, unused] = row.sides;
        if (row.kind != RowKind::Setting)
            continue;
        if (!now.raw && row.param <= source.set.LastParam())
            unknown.push_back(row.param);
        // A setting that the factory table does not know has no factory value to be at.
        if (!now.raw || (before.raw && !row.differs))
            continue;
        QStringList fields{QString::number(row.param), row.name};
        if (!blocks.isEmpty())
            fields << row.block;
        table.rows.append(
            fields << before.text
                   << (row.drivenBy == 0
                           ? now.text
                           : QStringLiteral("%1, set by (%2)").arg(now.text, QString::number(row.drivenBy))));
    }
    QStringList remarks;
    const auto remark = [&](const QString &what, const std::vector<int> &params) {
        if (!params.empty())
            remarks << what.arg(FullNames(like, params, MostNamed, QStringLiteral(", ")));
    };
    if (table.rows.isEmpty())
        remarks << QStringLiteral("No setting is known to differ from its factory value.");
    remark(QStringLiteral("Not read, so not listed: %1."), unknown);
    remark(QStringLiteral("Entered, but not taken by the drive: %1."), source.notTaken);
    // What an input sets moves by itself.
    std::vector<int> otherwise = source.otherwise;
    std::erase_if(otherwise, [&source](int p) { return DrivenBy(p, source.set) > 0; });
    remark(QStringLiteral("The drive has told another value of: %1."), otherwise);
    table.remark = remarks.join(u' ');
    return table;
}

CommissioningTable FaultsTable(const ReportSource &source, const ParameterTable &like,
                               const std::deque<TripRecord> &trips)
{
    CommissioningTable table{
        {QStringLiteral("Record"), QStringLiteral("Faults"), QStringLiteral("Time")}, {}, {}};
    AddLog(table, source, like);
    for (const TripRecord &trip : trips)
        table.rows.append({QStringLiteral("Seen %1").arg(trip.number), TripFaultsText(trip),
                           trip.isOfBefore ? QStringLiteral("before %1").arg(MomentText(trip.seen))
                                           : MomentText(trip.seen)});
    return table;
}

std::map<int, std::int32_t> KnownValues(const ParameterSet &set)
{
    std::map<int, std::int32_t> values;
    for (int p = 0; p <= set.LastParam(); ++p)
        if (set.Knows(p))
            values.emplace(p, set.Value(p));
    return values;
}

} // namespace quorvik
