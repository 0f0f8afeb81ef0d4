#include "SampleHistory.h"

#include "model/ParameterNumbers.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace quorvik
{

namespace
{

constexpr int FlushMs = 10000;

/** So late on a morning, in the zone of the computer. */
JournalTime At(int hour, int minute, int second)
{
    const QDateTime time({2026, 11, 22}, {hour, minute, second});
    return {time.toMSecsSinceEpoch(), time.offsetFromUtc() / SecondsPerMinute};
}

JournalRow Row(int p, const char *name, const char *before, const char *after, EntryResult result)
{
    return {.action = 0,
            .sequence = 0,
            .time = {},
            .param = p,
            .name = QString::fromLatin1(name),
            .rawBefore = *before ? std::optional<std::int32_t>(0) : std::nullopt,
            .rawAfter = 1,
            .textBefore = QString::fromLatin1(before),
            .textAfter = QString::fromLatin1(after),
            .result = result};
}

JournalAction Action(const JournalTime &time, Origin origin, const char *title, int link = 1)
{
    return {.number = 0,
            .time = time,
            .origin = origin,
            .title = QString::fromLatin1(title),
            .setName = QStringLiteral("/home/anna/plant/pump 3.Svx"),
            .link = link};
}

JournalDrive Drive()
{
    return {.link = 1,
            .time = At(9, 20, 0),
            .identity = {.model = 5,
                         .driveAmps = 174,
                         .firmware = 100,
                         .triggerFirmware = 100,
                         .operatingHours = 1204,
                         .lastParam = Param::WinderSpeed}};
}

} // namespace

SampleHistory::SampleHistory()
    : path_(folder_.filePath(QStringLiteral("history.sqlite")))
    , reader_(path_)
{
    using enum EntryResult;
    BeginRun();
    Add(Action(At(8, 2, 10), Origin::File, "Opened /home/anna/plant/pump 3.Svx", 0), {});
    Add(Action(At(8, 5, 41), Origin::EditDialog, "", 0),
        {Row(Param::FwdAccelA, "Fwd Accel A", "5.0 Sec", "7.5 Sec", Kept)});
    Add(Action(At(8, 9, 3), Origin::Mentor, "Basic Setup", 0),
        {Row(Param::ForwardMaxSpeed, "Forward Max Speed", "100.00 %", "80.00 %", Kept),
         Row(Param::ReverseMaxSpeed, "Reverse Max Speed", "-100.00 %", "0.00 %", Kept),
         Row(Param::JogReference, "Jog Reference", "5.00 %", "8.00 %", Kept)});
    BeginRun();
    journal_->Add({.drives = {Drive()}});
    Add(Action(At(9, 14, 30), Origin::File, "Write the open set to the drive"), {});
    Add(Action(At(9, 31, 5), Origin::Switch, ""),
        {Row(Param::StopMode, "Stop Mode", "Coast", "Ramp", Verified)});
    Add(Action(At(9, 40, 52), Origin::VirtualOperator, ""),
        {Row(Param::Reference0, "Reference 0", "0.00 %", "42.00 %", Acknowledged)});
    Add(Action(At(9, 44, 18), Origin::Compare, "Write and verify"),
        {Row(Param::FwdAccelA, "Fwd Accel A", "7.5 Sec", "10.0 Sec", Verified),
         Row(Param::FwdDecelA, "Fwd Decel A", "5.0 Sec", "10.0 Sec", Verified),
         Row(Param::LogicSelect, "Logic Select", "0", "1", Refused)});
    Add(Action(At(9, 52, 37), Origin::EditDialog, ""),
        {Row(Param::PropGainA, "Prop Gain A", "", "12.0", Queued)});
    journal_->Flush(FlushMs);
    DateRuns();
}

void SampleHistory::BeginRun()
{
    journal_ = std::make_unique<Journal>(path_);
    journal_->Begin(QStringLiteral("anna"));
    lastAction_ = lastSequence_ = 0;
}

void SampleHistory::Add(const JournalAction &given, const std::vector<JournalRow> &rows)
{
    JournalBatch batch{.actions = {given}, .rows = rows};
    batch.actions.front().number = ++lastAction_;
    for (JournalRow &row : batch.rows) {
        row.action = lastAction_;
        row.sequence = ++lastSequence_;
        row.time = given.time;
    }
    journal_->Add(batch);
}

void SampleHistory::DateRuns()
{
    const QString connection = QStringLiteral("dates");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(path_);
        database.open();
        QSqlQuery query(database);
        query.exec(QStringLiteral("UPDATE runs SET began = CASE id WHEN 1 THEN %1 ELSE %2 END, offset = %3, "
                                  "version = '1.0'")
                       .arg(At(8, 1, 0).utcMs)
                       .arg(At(9, 12, 0).utcMs)
                       .arg(At(9, 12, 0).offsetMinutes));
    }
    QSqlDatabase::removeDatabase(connection);
}

std::optional<JournalSighting> SampleHistory::ThisDrive()
{
    return JournalSighting{.identity = Drive().identity, .time = Drive().time};
}

std::vector<JournalSighting> SampleHistory::Drives()
{
    return {*ThisDrive()};
}

} // namespace quorvik
