#pragma once

#include "history/UndoStep.h"

#include <QObject>
#include <deque>
#include <optional>

namespace quorvik
{

class DriveLink;
class VerifiedWrite;

/** Which way through what was done. */
enum class Way : std::uint8_t { Undo, Redo };

/**
 * What was done and can be taken back, the newest on top. It watches the intents of the table and makes a
 * step of each that changed something; what a drive tells or the emulator computes meanwhile gets into none.
 *
 * Off line it takes a step back itself: the table is then as it was. On line it only knows the values; who
 * writes them to the drive says when that is done.
 */
class UndoStack : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t MostSteps = 200;

    UndoStack(ParameterTable &table, Document &document, DriveLink &link, VerifiedWrite &writing);

    /** The step that goes next this way; null where there is none, and while the link waits for its drive. */
    const UndoStep *Next(Way way) const;
    /** Why nothing can be taken back; empty where nothing was done yet. */
    const QString &WhyEmpty() const { return whyEmpty_; }

    /** Takes the next step back, or does it again, off line: the table, the document and its marks. To be
     * called within an intent that cannot be taken back itself. */
    void Restore(Way way);
    /** The same of the document alone, once the drive has taken the values of the next step. */
    void RestoreDocument(Way way);
    /** The next step is done that way. */
    void Move(Way way);

Q_SIGNALS:
    /** What goes next is another step. */
    void Changed();

private:
    /** An intent under way. */
    struct Pending {
        RecordArray records;
        TableShape shape;
        DocumentState document;
        CleanState clean;
        std::map<int, std::int32_t> before = {}; ///< values of what was changed on purpose or by rule
        std::map<int, std::int32_t> after = {};
        std::set<int> entered = {};
        std::map<int, std::int32_t> written = {}; ///< by a verified write: what the drive held before
        std::set<int> taken = {};                 ///< of those
        int leading = 0;
        bool isOnLine = false;
        bool isMarked = false; ///< something was entered, whether or not it is another value
    };

    void Begin();
    void End();
    void OnChanged(const ParamChange &change);
    void Note(const ParamChange &change, bool isEntered);
    void Overwritten(const ParamChange &change);
    void AddToNewest(const ParamChange &change);
    void OnEntered(bool modified);
    void OnMarked();
    void OnUnsent(int p, std::int32_t rawValue);
    void OnWritingFinished();
    void OnComStatusChanged();
    void OnHeard();

    UndoStep StepOf(const Pending &pending) const;
    void AddRow(UndoStep &step, const Pending &pending, int p) const;
    void Push(UndoStep step);
    void Drop(std::size_t index);
    void Clear(const QString &why);
    void SetMarks();
    bool IsClean() const;
    CleanState CleanNow() const;

    ParameterTable &table_;
    Document &document_;
    DriveLink &link_;
    VerifiedWrite &writing_;
    std::deque<UndoStep> done_;
    std::deque<UndoStep> undone_; ///< the one that goes next at the back
    std::optional<Pending> pending_;
    QString whyEmpty_;
    int lastState_ = 1;
    int state_ = 1;
    CleanState clean_;
    bool wasUnsaved_ = false;
    bool isRestoring_ = false;
    bool takesRules_ = false; ///< what follows by a rule outside of an intent belongs to the newest step
    bool isOpen_ = false;
    bool isHeard_ = false; ///< the drive has told something since the link is up
};

} // namespace quorvik
