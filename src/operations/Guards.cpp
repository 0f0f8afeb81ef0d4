#include "operations/Guards.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "model/TextTables.h"

#include <QStringList>
#include <algorithm>
#include <iterator>

namespace quorvik
{

namespace
{

constexpr std::int32_t LastModelCode = 32;

/** When a guard may have something to ask. */
enum class Moment { Restart, LoadFromMemory, Write, WholeWrite };

/** What is known when it is to be decided. Of a command the open set, of a write the values and the drive. */
struct Situation {
    const ParameterTable &table;
    const Document &document;
    Restart command = Restart::None;
    const std::vector<ParamValue> *values = nullptr;
    const ParameterSet *from = nullptr;
    const std::map<int, std::int32_t> *drive = nullptr;

    std::optional<std::int32_t> InDrive(int p) const
    {
        const auto found = drive->find(p);
        return found == drive->end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::int32_t> InSet(int p) const
    {
        return from->Knows(p) ? std::optional(from->Value(p)) : std::nullopt;
    }
};

QString Lines(const QStringList &lines)
{
    return lines.join(QStringLiteral("\r\n"));
}

bool IsStopped(std::int32_t state)
{
    return state == 0 || state == LastDriveState;
}

QString StateSentence(std::optional<std::int32_t> state)
{
    if (!state)
        return QStringLiteral("The drive has not told its state yet.");
    const bool hasName = *state >= 0 && *state <= LastDriveState;
    return QStringLiteral("The drive is in the state %1.")
        .arg(hasName ? DriveStateText(*state) : QString::number(*state));
}

std::optional<std::int32_t> PolledState(const Situation &now)
{
    return now.table.DriveStateUnread ? std::nullopt : std::optional(now.table.Value(Param::DriveState));
}

int UnsentWrites(const ParameterTable &table)
{
    int unsent = 0;
    for (int p = 0; p <= table.LastParam; ++p)
        unsent += table[p].WriteFlag == WriteState::Queued ? 1 : 0;
    return unsent;
}

// ---- Re-Initialize, Reset, Load from EE

bool IsRunningOrUnsaved(const Situation &now)
{
    const std::optional<std::int32_t> state = PolledState(now);
    return !state || !IsStopped(*state) || now.document.DriveModified || now.document.HasUnsavedEdits ||
           UnsentWrites(now.table) > 0;
}

/** The state, and what would be lost. */
QString WhatIsAtStake(const Situation &now)
{
    QStringList lines{StateSentence(PolledState(now))};
    if (now.document.DriveModified)
        lines << QStringLiteral("It loses the changes that it has not saved in its memory.");
    if (now.document.HasUnsavedEdits)
        lines << QStringLiteral("The open set has changes that are in no file.");
    if (const int unsent = UnsentWrites(now.table); unsent == 1)
        lines << QStringLiteral("One value is still on its way to the drive.");
    else if (unsent > 1)
        lines << QStringLiteral("%1 values are still on their way to the drive.").arg(unsent);
    return Lines(lines);
}

Question AskRestart(const Situation &now)
{
    const bool isReset = now.command == Restart::Reset;
    const QString verb = isReset ? QStringLiteral("Reset Drive") : QStringLiteral("Re-Initialize Drive");
    return {.text = isReset ? QStringLiteral("Reset the drive?") : QStringLiteral("Re-initialize the drive?"),
            .title = verb,
            .icon = MsgIcon::Exclamation,
            .explanation = WhatIsAtStake(now),
            .choices = {{MsgAnswer::Yes, u'&' + verb}, {MsgAnswer::Cancel}},
            .safe = MsgAnswer::Cancel,
            .word = QStringLiteral("restart")};
}

Question AskLoad(const Situation &now)
{
    return {.text = QStringLiteral("Load the drive's parameters from its memory?"),
            .title = QStringLiteral("Load Drive Parameters"),
            .icon = MsgIcon::Exclamation,
            .explanation = WhatIsAtStake(now),
            .choices = {{MsgAnswer::Yes, QStringLiteral("&Load Parameters")}, {MsgAnswer::Cancel}},
            .safe = MsgAnswer::Cancel,
            .word = QStringLiteral("load")};
}

// ---- a write of many values

Question AskToWrite(const QString &word, const QString &text, const QString &explanation)
{
    return {.text = text,
            .title = QStringLiteral("Write Parameters"),
            .icon = MsgIcon::Exclamation,
            .explanation = explanation,
            .choices = {{MsgAnswer::Yes, QStringLiteral("&Write")}, {MsgAnswer::Cancel}},
            .safe = MsgAnswer::Cancel,
            .word = word};
}

bool DriveRuns(const Situation &now)
{
    return Guards::Forbids(*now.drive);
}

Question TellThatItRuns(const Situation &now)
{
    Question told =
        AskToWrite({}, QStringLiteral("Nothing was written, because the drive is not stopped."),
                   Lines({StateSentence(now.InDrive(Param::DriveState)),
                          QStringLiteral("The link stays open, and windows show the open set as it "
                                         "was. Stop the drive, then write with File, Write and Verify.")}));
    told.choices = {{MsgAnswer::Ok}};
    told.safe = MsgAnswer::Ok;
    return told;
}

bool IsStateUnknown(const Situation &now)
{
    return !now.InDrive(Param::DriveState);
}

Question AskWithoutState(const Situation &now)
{
    return AskToWrite(
        QStringLiteral("unknown-state"), QStringLiteral("Write without knowing whether the drive runs?"),
        Lines({StateSentence(now.InDrive(Param::DriveState)),
               QStringLiteral("A drive that runs takes some of the values and refuses others.")}));
}

bool IsDefined(std::int32_t model)
{
    return model < 0 || model > LastModelCode || ModelText(model) != ModelText(0);
}

bool IsOtherModel(const Situation &now)
{
    const auto differs = [&now](int p) {
        return now.InSet(p) && now.InDrive(p) && now.InSet(p) != now.InDrive(p);
    };
    if (differs(Param::DriveCurrent))
        return true;
    // Codes without a model are all the same: none.
    return differs(Param::DriveModel) &&
           (IsDefined(*now.InSet(Param::DriveModel)) || IsDefined(*now.InDrive(Param::DriveModel)));
}

/** "SVN100-000, rated at 174 Amps". */
QString RatingText(std::optional<std::int32_t> model, std::optional<std::int32_t> amps)
{
    const QString unknown = QStringLiteral("not read");
    const bool hasName = model && *model >= 0 && *model <= LastModelCode;
    return QStringLiteral("%1, rated at %2")
        .arg(!model    ? unknown
             : hasName ? ModelText(*model)
                       : QStringLiteral("model code %1").arg(*model),
             amps ? QStringLiteral("%1 Amps").arg(*amps) : unknown);
}

Question AskForOtherModel(const Situation &now)
{
    return AskToWrite(QStringLiteral("other-model"), QStringLiteral("Write the set of another drive model?"),
                      Lines({QStringLiteral("The set: ") +
                                 RatingText(now.InSet(Param::DriveModel), now.InSet(Param::DriveCurrent)),
                             QStringLiteral("The drive: ") + RatingText(now.InDrive(Param::DriveModel),
                                                                        now.InDrive(Param::DriveCurrent))}));
}

bool TakesEffect(const Situation &now, const ParamValue &value)
{
    switch (value.param) {
    case Param::Run:
    case Param::Jog:
    case Param::SaveParameters:
    case Param::LoadParameters:
    case Param::OneShotCommand:
    case Param::ClearFault:
        return value.rawValue != 0;
    case Param::Stop:
        // Where it could not be read it may be what keeps the drive stopped.
        return value.rawValue == 0 && now.InDrive(Param::Stop) != 0;
    default:
        return false;
    }
}

std::vector<ParamValue> CommandsIn(const Situation &now)
{
    std::vector<ParamValue> commands;
    std::ranges::copy_if(*now.values, std::back_inserter(commands),
                         [&now](const ParamValue &value) { return TakesEffect(now, value); });
    return commands;
}

bool GivesCommands(const Situation &now)
{
    return !CommandsIn(now).empty();
}

Question AskForCommands(const Situation &now)
{
    QStringList lines;
    for (const ParamValue &command : CommandsIn(now))
        lines << now.table.FullName(command.param) + QStringLiteral(" = ") +
                     ShownText(command.rawValue, now.from->records[command.param].Attributes);
    lines << QString() << StateSentence(now.InDrive(Param::DriveState));
    Question question = AskToWrite(
        QStringLiteral("commands"),
        QStringLiteral("The set gives the drive commands, which take effect as soon as they are sent:"),
        Lines(lines));
    question.choices = {{MsgAnswer::No, QStringLiteral("Send &without commands")},
                        {MsgAnswer::Yes, QStringLiteral("Send &all")},
                        {MsgAnswer::Cancel}};
    question.safe = MsgAnswer::No;
    return question;
}

/** A risky moment: when there is something to ask, and what. */
struct GuardRow {
    Moment moment;
    bool (*isRisky)(const Situation &now);
    Question (*ask)(const Situation &now);
};

/** In the order in which they are asked. */
constexpr GuardRow Rows[] = {
    {Moment::Restart, IsRunningOrUnsaved, AskRestart},
    {Moment::LoadFromMemory, IsRunningOrUnsaved, AskLoad},
    {Moment::WholeWrite, DriveRuns, TellThatItRuns}, // no answer lets it through
    {Moment::WholeWrite, IsStateUnknown, AskWithoutState},
    {Moment::Write, IsOtherModel, AskForOtherModel},
    {Moment::Write, GivesCommands, AskForCommands},
};

/** Asks what there is to ask. @return Yes, No for all but the commands, or Cancel. */
MsgAnswer AskAll(const std::set<Moment> &moments, const Situation &now, Asker &asker)
{
    MsgAnswer answer = MsgAnswer::Yes;
    for (const GuardRow &row : Rows) {
        if (!moments.contains(row.moment) || !row.isRisky(now))
            continue;
        const MsgAnswer given = asker.Ask(row.ask(now));
        if (given == MsgAnswer::No)
            answer = MsgAnswer::No;
        else if (given != MsgAnswer::Yes)
            return MsgAnswer::Cancel;
    }
    return answer;
}

} // namespace

Guards::Guards(ParameterTable &table, Document &document, Asker &asker)
    : table_(table)
    , document_(document)
    , asker_(asker)
{
}

bool Guards::MayRestart(Restart command)
{
    return !Asking || AskAll({Moment::Restart}, {table_, document_, command}, asker_) == MsgAnswer::Yes;
}

bool Guards::MayLoadFromMemory()
{
    return !Asking || AskAll({Moment::LoadFromMemory}, {table_, document_}, asker_) == MsgAnswer::Yes;
}

const std::set<int> &Guards::KnownBeforeWriting()
{
    static const std::set<int> params{Param::Run,        Param::Stop,         Param::Jog,
                                      Param::DriveModel, Param::DriveCurrent, Param::DriveState};
    return params;
}

bool Guards::Forbids(const std::map<int, std::int32_t> &drive)
{
    const auto state = drive.find(Param::DriveState);
    return state != drive.end() && !IsStopped(state->second);
}

std::optional<std::set<int>> Guards::BeforeWriting(const std::vector<ParamValue> &values,
                                                   const ParameterSet &from,
                                                   const std::map<int, std::int32_t> &drive, bool isWhole)
{
    std::set<int> leftOut;
    if (!Asking)
        return leftOut;
    std::set<Moment> moments{Moment::Write};
    if (isWhole)
        moments.insert(Moment::WholeWrite);
    const Situation now{table_, document_, Restart::None, &values, &from, &drive};
    switch (AskAll(moments, now, asker_)) {
    case MsgAnswer::Yes:
        break;
    case MsgAnswer::No:
        for (const ParamValue &command : CommandsIn(now))
            leftOut.insert(command.param);
        break;
    default:
        return std::nullopt;
    }
    return leftOut;
}

} // namespace quorvik
