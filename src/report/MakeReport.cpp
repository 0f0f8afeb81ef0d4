#include "report/MakeReport.h"

#include "history/JournalReader.h"
#include "operations/Engines.h"
#include "report/CommissioningPlace.h"
#include "report/JournalOfDay.h"
#include "report/RecordingFigures.h"
#include "report/ReportTables.h"

#include <QCoreApplication>

namespace quorvik
{

namespace
{

/** So long a change that was just made is waited for until the journal has it. */
constexpr int JournalMs = 500;

CommissioningTable LeftOut()
{
    return {{}, {}, QStringLiteral("Left out of this report.")};
}

CommissioningTable JournalIn(Engines &engines, const ReportSource &source, const QDate &day)
{
    engines.recorder.HandOver();
    engines.journal.Flush(JournalMs);
    JournalReader reader(engines.journal.Path());
    return JournalOfDay(reader, {.day = day, .drive = IdentityIn(source.drive), .setPath = source.setPath});
}

} // namespace

CommissioningReport MakeReport(Engines &engines, ReportSource source, const ReportChoices &choices,
                               const DriveVerification &verification)
{
    if (verification.readAt.isValid()) {
        source.drive = verification.drive;
        source.readAt = verification.readAt;
        source.doubts.clear();
    }
    const auto has = [&choices](ReportPart part) { return !choices.leftOut.contains(part); };
    CommissioningReport report;
    report.place = choices.place;
    report.made = MomentText(QDateTime::currentDateTime());
    report.program = QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion();
    report.setName = source.setName;
    if (has(ReportPart::Notes))
        report.notes = NotesWithoutPlace(source.notes);
    report.identity = IdentityTable(source);
    report.motor = MotorTable(source);
    report.settings =
        has(ReportPart::Settings) ? ChangedSettingsTable(source, engines.table, choices.blocks) : LeftOut();
    report.faults =
        has(ReportPart::Faults) ? FaultsTable(source, engines.table, engines.trips.Records()) : LeftOut();
    report.journal = has(ReportPart::Journal) ? JournalIn(engines, source, choices.journalDay) : LeftOut();
    for (const QString &path : choices.recordings)
        report.recordings.append(RecordingOf(engines.recordings, path));
    report.verification = verification.verification;
    report.verificationText = verification.text;
    report.differences = verification.differences;
    report.rawValues = KnownValues(source.set);
    return report;
}

CommissioningReport MakeReport(Engines &engines, const ReportChoices &choices,
                               const DriveVerification &verification)
{
    return MakeReport(engines, SourceOf(engines), choices, verification);
}

} // namespace quorvik
