#pragma once

#include "desktop/FormsCollection.h"

#include <QDateTime>
#include <functional>

namespace quorvik
{

class Asker;
class EntryRules;
class HTMLHelp;
class Model;
class SettingsStore;

/** What every window needs, handed to each of them: the table, its rules, and the roads out of the window. */
struct Desk {
    Model &model;
    EntryRules &rules;
    Asker &asker;
    SettingsStore &settings;
    HTMLHelp &help;
    FormsCollection &forms;

    /** Shows a window as child of the frame and gives it the focus unless told not to. Filled in by the
     * shell. */
    std::function<void(QWidget *form, bool activate)> ShowChild;
    /** Opens the I/O Mentor on Model::WizardIOStart. Filled in by the shell. */
    std::function<void()> OpenIOMentor;
    /** The computer's clock, in local time. */
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };
};

} // namespace quorvik
