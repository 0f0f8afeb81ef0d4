#include "find/EntrySources.h"

#include "find/FindIndex.h"
#include "find/FoldedWords.h"
#include "find/HelpWords.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"

#include <utility>

namespace quorvik
{

namespace
{

/** What the names of the parameters cut short, and what a technician says instead. */
constexpr std::pair<const char *, const char *> Synonyms[] = {
    {"fwd", "forward"},
    {"rev", "reverse"},
    {"accel", "acceleration"},
    {"decel", "deceleration"},
    {"prop", "proportional"},
    {"freq", "frequency"},
    {"in", "input"},
    {"out", "output"},
    {"min", "minimum"},
    {"max", "maximum"},
    {"arm", "armature"},
    {"vel", "velocity speed"},
    {"velocity", "speed"},
    {"i", "current"},
    {"ref", "reference"},
    {"afb", "armature feedback"},
    {"tfb", "tachometer feedback"},
    {"efb", "encoder feedback"},
    {"vfb", "velocity feedback"},
    {"ifb", "current feedback"},
};

QStringList StatesAndFaults(const ParameterTable &table, int p)
{
    QStringList texts;
    if (p == Param::DriveState)
        for (std::int32_t state = table[p].Min; state <= table[p].Max; ++state)
            texts.append(DriveStateText(state));
    const ValueType &type = TypeOf(TypeCode(table[p].Attributes));
    constexpr int lastFault = 9;
    if (type.form == ValueType::Form::Hexadecimal && table[p].Name.contains(QLatin1String("Fault")))
        for (int fault = 0; fault <= lastFault; ++fault)
            texts.append(FaultText(fault));
    return texts;
}

/** What its values look like. */
QStringList TextsOfValues(const ParameterTable &table, int p)
{
    const int type = TypeCode(table[p].Attributes);
    QStringList texts = TextsOf(type) + StatesAndFaults(table, p);
    if (TypeOf(type).form == ValueType::Form::Unit)
        texts.append(EnumText(0, type));
    texts.append(UnitText(table[p].Attributes));
    texts.append(QString::fromLatin1(TypeOf(type).kind));
    return texts;
}

QStringList OtherWords(const ParameterTable &table, int p)
{
    QStringList words;
    const QStringList name = FoldedWords(table[p].Name);
    for (const auto &[shortForm, said] : Synonyms)
        if (name.contains(QLatin1String(shortForm)))
            words.append(QString::fromLatin1(said));
    return words;
}

} // namespace

void AddParameters(FindIndex &index, const ParameterTable &table, const QStringList &blocks,
                   const HelpWords &words)
{
    // Number 0 stands for no parameter.
    for (int p = 1; p <= table.LastParam; ++p)
        index.Add({FindKind::Parameter, p, QStringLiteral("(%1)").arg(p), table.FullName(p), blocks.value(p)},
                  {TextsOfValues(table, p), OtherWords(table, p), words.parameters.value(p)});
}

void AddTopics(FindIndex &index, const HelpWords &words)
{
    for (const HelpWords::Topic &topic : words.topics)
        index.Add({FindKind::Topic, 0, topic.page, topic.title, topic.chapter},
                  {topic.keywords, {}, topic.words});
}

} // namespace quorvik
