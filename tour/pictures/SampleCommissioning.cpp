#include "SampleCommissioning.h"

#include "blocks/BlockCatalogue.h"
#include "desktop/Desk.h"
#include "operations/TripRecords.h"
#include "platform/Asker.h"
#include "report/JournalOfDay.h"
#include "report/RecordingFigures.h"
#include "report/ReportTables.h"
#include "trend/TrendStore.h"

#include <QCoreApplication>

namespace quorvik
{

namespace
{

/** What was set up on that morning, and the drive's own clock and hours. */
constexpr std::pair<int, std::int32_t> Settings[] = {
    {Param::NameplateMotorI, 150},
    {Param::NameplateMotorVoltage, 480},
    {Param::ForwardMaxSpeed, 8000},
    {Param::ReverseMaxSpeed, 0},
    {Param::FwdAccelA, 100},
    {Param::FwdDecelA, 100},
    {Param::InternalLink1Source, Param::VelFeedback},
    {Param::InternalLink1Destination, Param::ThresholdAInput},
    {Param::OperatingHours, 1204},
    {Param::ClockYear, 26},
    {Param::ClockMonth, 11},
    {Param::ClockDate, 22},
    {Param::ClockHours, 10},
    {Param::ClockMinutes, 4},
    {Param::ClockSeconds, 11},
};

QDateTime ReadAt()
{
    return {{2026, 11, 22}, {10, 4, 12}};
}

QStringList Blocks(const Desk &desk)
{
    return BlockNames(desk.table.UpperBound() + 1);
}

} // namespace

SampleCommissioning::SampleCommissioning(Desk &desk, JournalReader &journal, TrendStore &recordings)
    : desk_(desk)
    , journal_(journal)
    , recordings_(recordings)
    , table_(desk.table)
{
    for (const auto &[p, rawValue] : Settings)
        table_.SetValue(p, rawValue, ChangeCause::File);
    source_ = {.setName = QStringLiteral("pump 3.Svx"),
               .setPath = QStringLiteral("/home/anna/plant/pump 3.Svx"),
               .notes = QStringLiteral("Tachometer changed for the new motor."),
               .set = ParameterSet::Of(table_, QStringLiteral("open set")),
               .drive = ParameterSet::Of(table_, QStringLiteral("drive")),
               .readAt = ReadAt(),
               .doubts = {}};
}

CommissioningPlace SampleCommissioning::Place()
{
    return {.site = QStringLiteral("Water works, hall 2"),
            .machine = QStringLiteral("Pump 3"),
            .customer = QStringLiteral("Lakeside Water"),
            .person = QStringLiteral("Anna Berg")};
}

std::vector<StoredRecording> SampleCommissioning::Recordings()
{
    return recordings_.List();
}

DriveVerification SampleCommissioning::Compare()
{
    return VerifySet(source_.set, source_.drive, source_.readAt, {}, Blocks(desk_));
}

CommissioningReport SampleCommissioning::Make(ReportChoices choices, const DriveVerification &verification)
{
    CommissioningReport report;
    report.place = choices.place;
    report.made = MomentText(ReadAt());
    report.program = AppTitle() + u' ' + QCoreApplication::applicationVersion();
    report.setName = source_.setName;
    report.notes = source_.notes;
    report.identity = IdentityTable(source_);
    report.motor = MotorTable(source_);
    report.settings = ChangedSettingsTable(source_, desk_.table, Blocks(desk_));
    report.faults = FaultsTable(source_, desk_.table, desk_.trips.Records());
    report.journal =
        JournalOfDay(journal_, {.day = ReadAt().date(), .drive = {}, .setPath = source_.setPath});
    for (const QString &path : choices.recordings)
        report.recordings.append(RecordingOf(recordings_, path));
    report.verification = verification.verification;
    report.verificationText = verification.text;
    report.differences = verification.differences;
    report.rawValues = KnownValues(source_.set);
    return report;
}

} // namespace quorvik
