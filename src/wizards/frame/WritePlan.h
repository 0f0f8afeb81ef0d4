#pragma once

#include "model/Document.h"

#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace quorvik
{

/** One SetParamValue() of a commit, with what it needs to be shown before it is made. */
struct PlannedWrite {
    int param = 0;
    std::int32_t rawValue = 0;
    bool modified = true;
    bool refresh = false;
    std::int32_t attributes = 0; ///< what the raw value was converted with
};

/** One line of the list that the user sees before the commit. */
struct PlannedLine {
    int param = 0;
    QString name;
    QString oldText;
    QString newText;
};

/** Everything that a wizard is going to write, in order. */
struct WritePlan {
    std::vector<PlannedWrite> writes;
    QStringList notices;       ///< what the user is to be told about the result
    bool savesInDrive = false; ///< ends with the drive's save command, after which nothing is unsaved

    /** The writes as the user reads them, against the values that the table holds now. */
    std::vector<PlannedLine> Lines(const ParameterTable &table) const;

    /** Makes the writes, in order, through ParameterTable::SetParamValue(). */
    void Commit(ParameterTable &table, Document &document) const;
};

/**
 * Builds a plan by making its writes on a copy of the table. Each write may change limits and values of what
 * hangs on it, and a later conversion sees that exactly as it would in the real table, which stays untouched.
 */
class WriteRehearsal
{
public:
    explicit WriteRehearsal(const ParameterTable &table);

    /** The copy as the writes so far have left it. */
    const ParameterTable &Table() const { return scratch_; }

    void Write(int p, std::int32_t rawValue, bool refresh = false);
    /** A raw value in the scale of another parameter, whose attributes it is shown with. */
    void WriteScaled(int p, std::int32_t rawValue, std::int32_t attributes);
    /** The drive's save command; the last write. */
    void SaveInDrive();
    void Notice(const QString &text) { plan_.notices.append(text); }

    const WritePlan &Plan() const { return plan_; }

private:
    void Add(const PlannedWrite &write);

    ParameterTable scratch_;
    WritePlan plan_;
};

/** Runs a conversion; a RuntimeFailure it raises is raised again with the name of the entry in front. */
std::int32_t ConvertEntry(const QString &entryName, const std::function<std::int32_t()> &conversion);

} // namespace quorvik
