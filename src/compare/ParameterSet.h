#pragma once

#include "model/ParamTable.h"

#include <QString>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** One parameter set as it is compared: the open one, a drive's, a file's, the factory set. */
struct ParameterSet {
    QString name;            ///< as headings and reports call it: "drive", "pump.Svx"
    RecordArray records;     ///< values with the limits and attributes that hold in this set
    std::vector<bool> known; ///< by number; a value that is not known must never be shown

    bool Knows(int p) const { return p >= 0 && p < int(known.size()) && known[std::size_t(p)]; }
    std::int32_t Value(int p) const { return records[p].Value; }
    int LastParam() const { return int(known.size()) - 1; }

    /** All rows of a table up to its LastParam, all known. */
    static ParameterSet Of(const ParameterTable &table, const QString &name);
    /** The factory values of a table. */
    static ParameterSet FactoryOf(const ParameterTable &table, const QString &name);
    /**
     * A settings file, read apart from the open set.
     * @param like gives the factory table.
     * @param failure gets the sentence of a file that cannot be read; the set then knows nothing.
     */
    static ParameterSet FromFile(const QString &path, const ParameterTable &like, QString &failure);
};

} // namespace quorvik
