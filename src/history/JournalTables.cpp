#include "history/JournalTables.h"

namespace quorvik::JournalTables
{

const QStringList &Statements()
{
    static const QStringList statements = {
        QStringLiteral("CREATE TABLE runs (id INTEGER PRIMARY KEY AUTOINCREMENT, began INTEGER NOT NULL, "
                       "offset INTEGER NOT NULL, user TEXT, version TEXT NOT NULL)"),
        QStringLiteral("CREATE TABLE drives (run INTEGER NOT NULL, link INTEGER NOT NULL, "
                       "time INTEGER NOT NULL, offset INTEGER NOT NULL, model INTEGER NOT NULL, "
                       "amps INTEGER NOT NULL, firmware INTEGER NOT NULL, trigger_firmware INTEGER NOT NULL, "
                       "hours INTEGER NOT NULL, last_param INTEGER NOT NULL)"),
        QStringLiteral("CREATE TABLE actions (id INTEGER PRIMARY KEY AUTOINCREMENT, run INTEGER NOT NULL, "
                       "number INTEGER NOT NULL, time INTEGER NOT NULL, offset INTEGER NOT NULL, "
                       "origin INTEGER NOT NULL, title TEXT NOT NULL, set_name TEXT NOT NULL, "
                       "link INTEGER NOT NULL)"),
        QStringLiteral("CREATE TABLE entries (id INTEGER PRIMARY KEY AUTOINCREMENT, run INTEGER NOT NULL, "
                       "action INTEGER NOT NULL, sequence INTEGER NOT NULL, time INTEGER NOT NULL, "
                       "offset INTEGER NOT NULL, param INTEGER NOT NULL, name TEXT NOT NULL, "
                       "raw_before INTEGER, raw_after INTEGER NOT NULL, text_before TEXT NOT NULL, "
                       "text_after TEXT NOT NULL, result INTEGER NOT NULL)"),
        QStringLiteral("CREATE TABLE results (run INTEGER NOT NULL, sequence INTEGER NOT NULL, "
                       "time INTEGER NOT NULL, offset INTEGER NOT NULL, result INTEGER NOT NULL, "
                       "raw INTEGER, text TEXT NOT NULL)"),
        QStringLiteral("CREATE TABLE notes (run INTEGER NOT NULL, action INTEGER NOT NULL, "
                       "text TEXT NOT NULL)"),
        QStringLiteral("CREATE UNIQUE INDEX actions_by_number ON actions (run, number)"),
        QStringLiteral("CREATE INDEX entries_by_action ON entries (run, action)"),
        QStringLiteral("CREATE INDEX results_by_sequence ON results (run, sequence)"),
        QStringLiteral("CREATE INDEX notes_by_action ON notes (run, action)"),
        QStringLiteral("CREATE INDEX drives_by_link ON drives (run, link)"),
    };
    return statements;
}

} // namespace quorvik::JournalTables
