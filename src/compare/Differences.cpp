#include "compare/Differences.h"

#include "model/Conversions.h"
#include "model/ShownText.h"
#include "model/TextTables.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace quorvik
{

namespace
{

using Sets = std::span<const ParameterSet *const>;
using Form = ValueType::Form;

/** Whether a value tells the drive to do something at the moment when it is written. */
bool GivesCommand(int p)
{
    return p == Param::Run || p == Param::Stop || p == Param::Jog || p == Param::FaultReset ||
           Param::ClearsItself(p);
}

SetValue ValueIn(const ParameterSet &set, int p)
{
    if (!set.Knows(p))
        return {{},
                p <= set.LastParam() || set.known.empty() ? QStringLiteral("not read")
                                                          : QStringLiteral("none"),
                false};
    const ParamRecord &record = set.records[p];
    const bool isWritable = (record.Attributes & Attr::ReadOnly) == 0;
    return {record.Value, ShownText(record.Value, record.Attributes),
            isWritable && record.Value != record.Preset};
}

bool IsNumber(std::int32_t attributes)
{
    const Form form = TypeOf(TypeCode(attributes)).form;
    return form == Form::Number || form == Form::Unit;
}

bool HasSameUnit(std::int32_t left, std::int32_t right)
{
    return TypeCode(left) == TypeCode(right) && DecimalsOf(left) == DecimalsOf(right);
}

void SetDifference(DifferenceRow &row, std::size_t side, Sets sets)
{
    const std::optional<std::int32_t> from = row.sides[0].raw;
    const std::optional<std::int32_t> to = row.sides[side].raw;
    if (!from || !to || from == to)
        return;
    const std::int32_t attributes = sets[0]->records[row.param].Attributes;
    if (!IsNumber(attributes) || !HasSameUnit(attributes, sets[side]->records[row.param].Attributes))
        return;
    const std::int64_t difference = std::int64_t(*to) - *from;
    if (difference < std::numeric_limits<std::int32_t>::min() ||
        difference > std::numeric_limits<std::int32_t>::max())
        return;
    row.rawDifferences[side] = std::int32_t(difference);
    row.differences[side] =
        (difference > 0 ? QStringLiteral("+") : QString()) + ValueText(std::int32_t(difference), attributes);
}

/** By number, the first destination selector of a set that points there. */
std::vector<int> DriversIn(const ParameterSet &set)
{
    std::vector<int> drivers(set.known.size(), 0);
    for (int i = set.LastParam(); i >= 1; --i) {
        if (!set.Knows(i) || (set.records[i].Attributes & Attr::Destination) == 0)
            continue;
        const std::int32_t target = set.Value(i);
        if (target > 0 && target <= set.LastParam())
            drivers[std::size_t(target)] = i;
    }
    return drivers;
}

DifferenceRow RowOf(int p, Sets sets)
{
    DifferenceRow row;
    row.param = p;
    row.sideCount = int(sets.size());
    bool isNamed = false;
    for (std::size_t side = 0; side < sets.size(); ++side) {
        const ParameterSet &set = *sets[side];
        row.sides[side] = ValueIn(set, p);
        // A side that was not read may have been given the names and limits all the same.
        if (!isNamed && p <= set.LastParam()) {
            row.name = set.records[p].Name;
            row.kind = KindOf(p, set.records[p].Attributes);
            isNamed = set.Knows(p);
        }
    }
    for (std::size_t side = 0; side < sets.size(); ++side) {
        row.isIncomplete |= !row.sides[side].raw;
        for (std::size_t other = 0; other < side; ++other)
            row.differs |=
                row.sides[side].raw && row.sides[other].raw && row.sides[side].raw != row.sides[other].raw;
        SetDifference(row, side, sets);
    }
    return row;
}

/** "Different models: open set SVN100-000 (174 Amps); drive SVN020-000 (36 Amps)." where the sets are not of
 * one text. */
void AddMismatch(QStringList &sentences, const QString &what, Sets sets,
                 const std::function<QString(const ParameterSet &)> &textOf)
{
    QStringList texts;
    QStringList named;
    for (const ParameterSet *set : sets) {
        const QString text = textOf(*set);
        if (text.isEmpty())
            continue;
        texts += text;
        named += set->name + QStringLiteral(": ") + text;
    }
    texts.removeDuplicates();
    if (texts.size() > 1)
        sentences += what + QStringLiteral(" (") + named.join(QStringLiteral("; ")) + QStringLiteral(").");
}

/** Of a parameter that the set knows, else nothing. */
QString TextIn(const ParameterSet &set, int p)
{
    return set.Knows(p) ? ShownText(set.Value(p), set.records[p].Attributes) : QString();
}

} // namespace

RowKind KindOf(int p, std::int32_t attributes)
{
    if (p == Param::DriveModel || p == Param::DriveCurrent)
        return RowKind::Model;
    if (Param::IsClock(p))
        return RowKind::Clock;
    if (GivesCommand(p))
        return RowKind::Command;
    return (attributes & Attr::ReadOnly) > 0 ? RowKind::Status : RowKind::Setting;
}

QString KindText(RowKind kind)
{
    static const std::array<QString, RowKinds> texts = {QStringLiteral("setting"), QStringLiteral("model"),
                                                        QStringLiteral("clock"), QStringLiteral("command"),
                                                        QStringLiteral("status")};
    return texts.at(std::size_t(kind));
}

bool DifferenceRow::IsChanged() const
{
    return std::ranges::any_of(sides, &SetValue::isChanged);
}

std::vector<DifferenceRow> Compare(Sets sets, const QStringList &blocks)
{
    int last = -1;
    std::vector<std::vector<int>> drivers;
    for (const ParameterSet *set : sets) {
        last = std::max(last, set->LastParam());
        drivers.push_back(DriversIn(*set));
    }
    std::vector<DifferenceRow> rows;
    rows.reserve(std::size_t(last) + 1);
    for (int p = 0; p <= last; ++p) {
        DifferenceRow row = RowOf(p, sets);
        row.block = blocks.value(p);
        for (const std::vector<int> &driver : drivers)
            if (row.drivenBy == 0 && std::size_t(p) < driver.size())
                row.drivenBy = driver[std::size_t(p)];
        rows.push_back(std::move(row));
    }
    return rows;
}

QStringList Mismatches(Sets sets)
{
    QStringList sentences;
    AddMismatch(sentences, QStringLiteral("The models differ"), sets, [](const ParameterSet &set) {
        return set.Knows(Param::DriveModel) ? ModelLine(set) : QString();
    });
    AddMismatch(sentences, QStringLiteral("The firmware differs"), sets, [](const ParameterSet &set) {
        QStringList versions{TextIn(set, Param::ControlFirmwareVersion),
                             TextIn(set, Param::TriggerFirmwareVersion)};
        versions.removeAll(QString());
        return versions.join(QStringLiteral(", trigger "));
    });
    AddMismatch(sentences, QStringLiteral("The tables are of different lengths"), sets,
                [](const ParameterSet &set) {
                    return set.known.empty() ? QString() : QStringLiteral("0 to %1").arg(set.LastParam());
                });
    return sentences;
}

QString ModelLine(const ParameterSet &set)
{
    const QString model = TextIn(set, Param::DriveModel);
    if (model.isEmpty())
        return QStringLiteral("not known");
    const QString current = TextIn(set, Param::DriveCurrent);
    return current.isEmpty() ? model : model + QStringLiteral(" (") + current + u')';
}

bool DifferenceFilter::Shows(const DifferenceRow &row) const
{
    return kinds[std::size_t(row.kind)] && (!onlyDiffering || row.differs || row.isIncomplete) &&
           (!onlyChanged || row.IsChanged()) && (!onlyKnown || !row.isIncomplete) &&
           (text.isEmpty() || QString::number(row.param).contains(text) ||
            row.name.contains(text, Qt::CaseInsensitive) || row.block.contains(text, Qt::CaseInsensitive));
}

} // namespace quorvik
