#include "compare/ParameterSet.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "settings/SettingsFile.h"

namespace quorvik
{

namespace
{

/** The records 0 to last of a table, which holds them all. */
ParameterSet Taken(const ParameterTable &table, int last, const QString &name)
{
    ParameterSet set;
    set.name = name;
    set.records = table.Records();
    set.records.Resize(last);
    set.known.assign(std::size_t(last) + 1, true);
    return set;
}

} // namespace

ParameterSet ParameterSet::Of(const ParameterTable &table, const QString &name)
{
    return Taken(table, table.LastParam, name);
}

ParameterSet ParameterSet::FactoryOf(const ParameterTable &table, const QString &name)
{
    ParameterTable factory(table);
    factory.SetPortOpen(false);
    factory.ResetToDefaults();
    return Of(factory, name);
}

ParameterSet ParameterSet::FromFile(const QString &path, const ParameterTable &like, QString &failure)
{
    ParameterTable apart(like);
    // On line a file gives way to the drive; here it is to be seen as it is.
    apart.SetPortOpen(false);
    // Rows that the file lacks would be those of the open set.
    apart.Resize(-1);
    Document document(apart);
    failure = SettingsFile(apart, document).LoadSettings(path);
    return failure.isEmpty() ? Taken(apart, apart.UpperBound(), {}) : ParameterSet{};
}

} // namespace quorvik
