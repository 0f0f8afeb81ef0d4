#pragma once

#include "link/ParamValue.h"
#include "model/Document.h"

#include <map>
#include <memory>
#include <set>

namespace quorvik
{

/** A parameter before and after what was done. ReadFlag means nothing here. */
struct UndoRow {
    ParamRecord before;
    ParamRecord after;
    bool isEntered = false;    ///< and did not only follow another one
    bool isBeforeKnown = true; ///< the drive held the value of before
};

/** What a table is beside its records. */
struct TableShape {
    int upperBound = -1;
    std::int16_t lastParam = -1;
    std::int16_t fileLastParam = -1;
    std::int16_t editParamNumber = 0;
    bool writePending = false;
    int presetsUpperBound = -1;
    std::shared_ptr<const RecordArray> presets = {}; ///< where the step has added to them

    static TableShape Of(const ParameterTable &table);
};

/** What the open set is beside its parameters, but for its marks. */
struct DocumentState {
    QString fileName;
    QString notes;
    std::array<VirtualSetting, 12> virtualSettings;
    bool isHalfRead = false;

    static DocumentState Of(const Document &document);
    bool operator==(const DocumentState &) const = default;
};

/** The set as it was when its file was opened or saved last. */
struct CleanState {
    int state = 0; ///< see UndoStep; 0 where no way leads back to it
    int upTo = 0;  ///< the last one of those that count as no edit
    QString notes = {};
    std::array<VirtualSetting, 12> virtualSettings = {};
};

/** What was done in one go, so that it can be taken back and done again. */
struct UndoStep {
    Origin origin = Origin::Program;
    QString title; ///< of the intent; may be empty
    std::map<int, UndoRow> rows = {};
    int leading = 0; ///< the parameter entered last, which the others went with
    TableShape shapeBefore;
    TableShape shapeAfter;
    DocumentState documentBefore;
    DocumentState documentAfter = {};
    // The set's states are numbered, so that it is known when it is again what a file holds.
    int stateBefore = 0;
    int stateAfter = 0;
    CleanState cleanBefore = {}; ///< of a step that changes the document
    CleanState cleanAfter = {};

    /** It began another set, by New or Open. */
    bool IsOtherSet() const { return origin == Origin::File; }
    bool ChangesDocument() const { return IsOtherSet() || documentBefore != documentAfter; }
    /** A setting was entered, so that it can be taken back on line. */
    bool HasEntries() const;
    /** What a drive can be given to take the step back, or to do it again. */
    std::vector<int> Settings() const;
    /** Whether it is more than an entry by hand: it goes back to a drive with a backup, and is read back. */
    bool IsLarge() const;
    /** "(226) Fwd Accel A 5.0 to 7.5 Sec", or "Basic Setup Mentor, 14 values". */
    QString Text() const;
};

/** Whether p can be written to a drive because of its value, and does not make it do something. */
bool IsSetting(int p, const ParamRecord &record);

} // namespace quorvik
