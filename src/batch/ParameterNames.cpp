#include "batch/ParameterNames.h"

#include "model/FullNames.h"
#include "model/ParameterTable.h"

#include <QRegularExpression>
#include <limits>
#include <set>

namespace quorvik
{

namespace
{

constexpr int MostMatches = 12;
/** The protocol has no higher parameter. */
constexpr int LastNumber = std::numeric_limits<std::int16_t>::max();

NamedParams Numbers(const QString &text, int first, int last)
{
    if (first > last || last > LastNumber)
        return {.failure = QStringLiteral("\"%1\" is no range of parameters: they go from 0 to %2.")
                               .arg(text)
                               .arg(LastNumber)};
    NamedParams found;
    for (int p = first; p <= last; ++p)
        found.params.push_back(p);
    return found;
}

} // namespace

NamedParams FindParams(const QString &text, const ParameterTable &table)
{
    static const QRegularExpression numbers(QStringLiteral("^(\\d{1,5})(?:-(\\d{1,5}))?$"));
    const QString wanted = text.trimmed();
    if (const QRegularExpressionMatch match = numbers.match(wanted); match.hasMatch()) {
        const int first = match.captured(1).toInt();
        return Numbers(wanted, first, match.hasCaptured(2) ? match.captured(2).toInt() : first);
    }
    if (wanted.isEmpty())
        return {.failure = QStringLiteral("A parameter without number and name means nothing.")};
    std::vector<int> whole;
    std::vector<int> parts;
    for (int p = 0; p <= table.LastParam; ++p) {
        const QString &name = table[p].Name;
        if (name.compare(wanted, Qt::CaseInsensitive) == 0)
            whole.push_back(p);
        else if (name.contains(wanted, Qt::CaseInsensitive))
            parts.push_back(p);
    }
    const std::vector<int> &found = whole.empty() ? parts : whole;
    if (found.empty())
        return {.failure = QStringLiteral("No parameter's name holds \"%1\".").arg(wanted)};
    if (found.size() > 1)
        return {.failure =
                    QStringLiteral("\"%1\" may be one of these; name one, or its number:\n").arg(wanted) +
                    FullNames(table, found, MostMatches, QStringLiteral("\n"))};
    return {.params = found};
}

NamedParams FindAllParams(const QStringList &texts, const ParameterTable &table)
{
    NamedParams all;
    std::set<int> seen;
    for (const QString &text : texts) {
        NamedParams found = FindParams(text, table);
        if (!found.failure.isEmpty())
            return found;
        for (const int p : found.params)
            if (seen.insert(p).second)
                all.params.push_back(p);
    }
    return all;
}

NamedParams FindOneParam(const QString &text, const ParameterTable &table)
{
    NamedParams found = FindParams(text, table);
    if (found.failure.isEmpty() && found.params.size() != 1)
        return {.failure = QStringLiteral("\"%1\" means several parameters.").arg(text)};
    return found;
}

} // namespace quorvik
