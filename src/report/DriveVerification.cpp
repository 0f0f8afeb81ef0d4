#include "report/DriveVerification.h"

#include "compare/Differences.h"
#include "model/PathFunctions.h"
#include "operations/Engines.h"
#include "report/ReportSource.h"

#include <algorithm>

namespace quorvik
{

namespace
{

using Sets = std::span<const ParameterSet *const>;

/** How two sets stand to each other. */
struct Balance {
    int same = 0;
    int differing = 0;
    int unknown = 0;
    int byInputs = 0; ///< values that an input of the drive sets

    int Compared() const { return same + differing; }
};

bool IsCompared(const DifferenceRow &row)
{
    return row.kind == RowKind::Setting || row.kind == RowKind::Model;
}

Balance BalanceOf(const std::vector<DifferenceRow> &rows)
{
    Balance balance;
    for (const DifferenceRow &row : rows) {
        if (!IsCompared(row))
            continue;
        if (row.drivenBy != 0)
            ++balance.byInputs;
        else if (row.isIncomplete)
            ++balance.unknown;
        else if (row.differs)
            ++balance.differing;
        else if (row.kind == RowKind::Setting)
            ++balance.same;
    }
    return balance;
}

QString SettingsText(int count)
{
    return count == 1 ? QStringLiteral("1 setting") : QStringLiteral("%1 settings").arg(count);
}

QString ResultText(const Balance &balance)
{
    if (balance.differing > 0)
        return QStringLiteral("%1 of %2 differ.")
            .arg(balance.differing)
            .arg(SettingsText(balance.Compared()));
    return balance.unknown > 0 ? QStringLiteral("the %1 that could be compared are the same.")
                                     .arg(SettingsText(balance.Compared()))
                               : QStringLiteral("all %1 are the same.").arg(SettingsText(balance.Compared()));
}

QString UnknownText(int count)
{
    return count == 1 ? QStringLiteral(" 1 setting could not be compared, since a side does not have it.")
                      : QStringLiteral(" %1 settings could not be compared, since a side does not have them.")
                            .arg(count);
}

QString InputsText(int count)
{
    return count == 1 ? QStringLiteral(" 1 value that an input sets was left out.")
                      : QStringLiteral(" %1 values that inputs set were left out.").arg(count);
}

Verification Worst(Verification left, const Balance &balance)
{
    if (balance.differing > 0 || left == Verification::Differs)
        return Verification::Differs;
    return balance.unknown > 0 ? Verification::NotCompared : left;
}

CommissioningTable DifferencesOf(Sets sets, const QStringList &blocks)
{
    CommissioningTable table{{QStringLiteral("Number"), QStringLiteral("Name")}, {}, {}};
    if (!blocks.isEmpty())
        table.heads << QStringLiteral("Block");
    for (const ParameterSet *set : sets)
        table.heads << set->name;
    for (const DifferenceRow &row : Compare(sets, blocks)) {
        if (!IsCompared(row) || row.drivenBy != 0 || (!row.differs && !row.isIncomplete))
            continue;
        QStringList fields{QString::number(row.param), row.name};
        if (!blocks.isEmpty())
            fields << row.block;
        for (int side = 0; side < row.sideCount; ++side)
            fields << row.sides.at(std::size_t(side)).text;
        table.rows.append(fields);
    }
    return table;
}

} // namespace

DriveVerification VerifySet(const ParameterSet &set, const ParameterSet &drive, const QDateTime &readAt,
                            Sets others, const QStringList &blocks)
{
    DriveVerification result{
        .verification = Verification::Same, .text = {}, .differences = {}, .drive = drive, .readAt = readAt};
    const ParameterSet *const both[] = {&set, &drive};
    const Balance balance = BalanceOf(Compare(both));
    result.verification = Worst(result.verification, balance);
    result.text = QStringLiteral("The %1 was compared with the drive, which was read on %2: ")
                      .arg(set.name, MomentText(readAt)) +
                  ResultText(balance);
    if (balance.unknown > 0)
        result.text += UnknownText(balance.unknown);
    if (balance.byInputs > 0)
        result.text += InputsText(balance.byInputs);
    std::vector<const ParameterSet *> all{&set, &drive};
    for (const ParameterSet *other : others) {
        const ParameterSet *const pair[] = {other, &drive};
        const Balance otherBalance = BalanceOf(Compare(pair));
        result.verification = Worst(result.verification, otherBalance);
        result.text +=
            QStringLiteral(" The %1 was compared with it, too: ").arg(other->name) + ResultText(otherBalance);
        if (otherBalance.unknown > 0)
            result.text += UnknownText(otherBalance.unknown);
        if (int(all.size()) < MostSets)
            all.push_back(other);
    }
    result.differences = DifferencesOf(all, blocks);
    return result;
}

DriveVerification VerifyReading(const ParameterSet &drive, const QDateTime &readAt)
{
    const ParameterSet *const sets[] = {&drive, &drive};
    const Balance balance = BalanceOf(Compare(sets));
    const int missing = balance.unknown;
    DriveVerification result{.verification = missing == 0 ? Verification::Same : Verification::NotCompared,
                             .text = {},
                             .differences = {},
                             .drive = drive,
                             .readAt = readAt};
    const QString when = MomentText(readAt);
    const int all = balance.Compared() + balance.byInputs;
    result.text = missing == 0
                      ? QStringLiteral("This report shows the drive itself: all %1 were read from it on %2.")
                            .arg(SettingsText(all), when)
                      : QStringLiteral("This report shows the drive itself, which was read on %1, but %2 "
                                       "could not be read.")
                            .arg(when, SettingsText(missing));
    return result;
}

DriveVerification NotVerified(const QString &why)
{
    return {
        .verification = Verification::NotCompared, .text = why, .differences = {}, .drive = {}, .readAt = {}};
}

QString ReadingFailure(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Done:
    case Outcome::Partial:
        return {};
    case Outcome::LinkLost:
        return QStringLiteral("The link to the drive was lost while it was read. Nothing was compared.");
    case Outcome::Cancelled:
        return QStringLiteral("The reading of the drive was cancelled. Nothing was compared.");
    case Outcome::Refused:
        break;
    }
    return QStringLiteral("The drive could not be read: its answers came out of step with the questions, or "
                          "something else was being read or written. Nothing was compared.");
}

DriveVerification VerifyOpenSet(Engines &engines, const QStringList &blocks)
{
    if (!engines.table.PortOpen())
        return NotVerified(QStringLiteral("Off line: the settings were not compared with a drive."));
    ParameterSet drive;
    const OperationResult result = engines.snapshots.ReadDrive(drive);
    if (const QString failure = ReadingFailure(result.outcome); !failure.isEmpty())
        return NotVerified(failure);
    drive.name = QStringLiteral("drive");
    const QDateTime readAt = QDateTime::currentDateTime();
    const ReportSource source = SourceOf(engines);
    std::vector<const ParameterSet *> others;
    ParameterSet file;
    QString fileFailure;
    if (const QString path = engines.document.FileName; path != Document::Unnamed()) {
        file = ReportedSet(ParameterSet::FromFile(path, engines.table, fileFailure), false);
        file.name = QStringLiteral("file ") + FileTitle(path);
        if (fileFailure.isEmpty())
            others.push_back(&file);
    }
    DriveVerification verification = VerifySet(source.set, drive, readAt, others, blocks);
    if (!fileFailure.isEmpty()) {
        verification.text += QStringLiteral(" The open file was not compared: ") + fileFailure;
        if (verification.verification == Verification::Same)
            verification.verification = Verification::NotCompared;
    }
    return verification;
}

} // namespace quorvik
