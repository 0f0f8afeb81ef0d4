#pragma once

#include "desktop/FormsCollection.h"

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>

class QMenu;
class QWidget;

namespace quorvik
{

struct AccessColors;
class Asker;
class Circuit;
class Document;
class EntryRules;
class Guards;
class HTMLHelp;
class ParameterTable;
class SettingsStore;
class TripRecords;
class ValueStates;

/** What the I/O Mentor opens on. */
struct WizardIOStartRecord {
    std::uint8_t outputs = 0;     ///< 0 inputs, 1 outputs
    std::uint8_t kind = 0;        ///< index of the kind
    std::uint8_t member = 0;      ///< zero-based input or output
    std::uint8_t freqDigMode = 0; ///< 0 frequency, 1 digital
};

/** What every window needs, handed to each of them: the open set, the rules, and the ways out of the window.
 */
struct Desk {
    ParameterTable &table;
    ValueStates &states;
    TripRecords &trips;
    Document &document;
    AccessColors &colors;
    EntryRules &rules;
    Guards &guards;
    Asker &asker;
    SettingsStore &settings;
    HTMLHelp &help;
    FormsCollection &forms;

    /** Shows a window as child of the frame and gives it the focus unless told not to. Filled in by the
     * shell. */
    std::function<void(QWidget *form, bool activate)> ShowChild;
    /** Opens the I/O Mentor on WizardIOStart. Filled in by the shell. */
    std::function<void()> OpenIOMentor;
    /** The window in which a parameter stands, as its menu entry calls it; empty for none. Filled in by the
     * shell. */
    std::function<QString(int p)> BlockOf = [](int) { return QString(); };
    /** Opens a window in which a parameter stands, scrolls to its box and pulses it; false where none shows
     * it. Filled in by the shell. */
    std::function<bool(int p)> ShowParameter = [](int) { return false; };
    /** Opens the map of the drive at the card of a parameter, or as it is for -1. Filled in by the shell. */
    std::function<void(int p)> ShowOnMap = [](int) {};
    /** Opens the list of all parameters at the row of one. Filled in by the shell. */
    std::function<void(int p)> ShowInList = [](int) {};
    /** The context menu of a parameter's value box, for a window that shows it otherwise; none where a part
     * of the program is tried by itself. It deletes itself once it is closed. Filled in by the shell. */
    std::function<QMenu *(int p, QWidget *parent)> MenuOf = [](int, QWidget *) -> QMenu * { return nullptr; };
    /** Opens the comparison of the open set with the factory's at one parameter. Filled in by the shell. */
    std::function<void(int p)> CompareWithFactory = [](int) {};
    /** Opens the trend recorder and adds a parameter to what it records. Filled in by the shell. */
    std::function<void(int p)> AddToTrend = [](int) {};
    /** The file of what was recorded around a trip of this run, by the number of its trip record; empty for
     * none. Filled in by the shell. */
    std::function<QString(int tripNumber)> RecordingOfTrip = [](int) { return QString(); };
    /** Opens the trend recorder at a recording's file. Filled in by the shell. */
    std::function<void(const QString &path)> ShowRecording = [](const QString &) {};
    /** The circuit of the drive with the values of this moment; null where a part of the program is tried by
     * itself. Filled in by the shell. */
    std::function<Circuit *()> TheCircuit = []() -> Circuit * { return nullptr; };
    /** The computer's clock, in local time. */
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };
    /** Set before OpenIOMentor. */
    WizardIOStartRecord WizardIOStart = {};
};

} // namespace quorvik
