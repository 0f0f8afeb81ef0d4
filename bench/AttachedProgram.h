#pragma once

#include "platform/Asker.h"
#include "platform/SettingsStore.h"
#include "shell/MDIFormMain.h"
#include "tour/DriveProcess.h"
#include "tour/NoHelp.h"

#include <QTemporaryDir>
#include <optional>

namespace quorvik
{

/** Any message box means that the measurement is worth nothing: it ends the run. */
class FailingAsker : public Asker
{
public:
    MsgAnswer MsgBox(const QString &text, MsgButtons, MsgIcon, const QString &) override;
    void Tell(const QString &text, MsgIcon icon, const QString &title) override
    {
        if (!MayTell)
            Asker::Tell(text, icon, title);
    }
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return {}; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return {}; }

    bool MayTell = false; ///< a message that needs no answer is part of what is measured
};

/** The main window in a folder of its own, beside a simulated drive on a line paced as in the field. */
class AttachedProgram
{
public:
    AttachedProgram();

    /** Brings the program up with the factory table and connects it. @return whether the link is up. */
    bool GoOnLine(const LinkTimings &timings);
    MDIFormMain &Main() { return *main_; } ///< only after GoOnLine()
    DriveProcess &Drive() { return drive_; }
    void ExpectMessages() { asker_.MayTell = true; }
    QString Folder() const { return folder_.path(); }

private:
    QTemporaryDir folder_;
    DriveProcess drive_;
    SettingsStore settings_;
    FailingAsker asker_;
    NoHelp help_;
    std::optional<MDIFormMain> main_;
};

} // namespace quorvik
