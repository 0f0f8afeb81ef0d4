#pragma once

#include <QString>
#include <cstdint>

namespace quorvik
{

class ParameterTable;

/** Where a change comes from. The numbers are kept in files. */
enum class Origin : std::uint8_t {
    Program = 0, ///< nobody asked for it in particular
    EditDialog = 1,
    Switch = 2, ///< in a drawing
    Mentor = 3,
    VirtualOperator = 4,
    IOSimulator = 5,
    File = 6,
    Compare = 7,
    Undo = 8, ///< also redo, and what is taken back from the history
    CommandLine = 9,
    DriveCommand = 10,
};
inline constexpr int Origins = 11;

/** The origin in words, as a list shows it: "edit dialog". */
QString NameOf(Origin origin);

/** What somebody is about to do: all changes while it lasts belong together. */
struct IntentInfo {
    Origin origin = Origin::Program;
    QString title; ///< what it is called where the changes alone do not say it; may be empty
    bool canBeTakenBack = true;
    bool isMovement = false; ///< of a slider: many such make one change
};

/**
 * The scope of an intent. One within another belongs to the outer one, whose origin and title count. Dialogs
 * and waiting may lie within: what the drive tells or the emulator computes meanwhile is no part of it.
 */
class Intent
{
public:
    /** What a person enters can be taken back; what operates a machine cannot. */
    Intent(ParameterTable &table, Origin origin, const QString &title = {});
    Intent(ParameterTable &table, const IntentInfo &info);
    ~Intent();
    Intent(const Intent &) = delete;
    Intent &operator=(const Intent &) = delete;

    /** It has happened, whether or not a value changed: "Opened /home/pump.Svx". */
    void Note(const QString &what);

private:
    ParameterTable &table_;
};

} // namespace quorvik
