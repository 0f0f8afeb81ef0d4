#pragma once

#include "desktop/StandingMessages.h"
#include "platform/Asker.h"

namespace quorvik
{

/** Asks with the desktop's message boxes and file dialogs, over the window that is in front. */
class DesktopAsker : public Asker
{
public:
    /** @param help what F1 in a box opens; outlives the asker. */
    explicit DesktopAsker(HTMLHelp *help = nullptr)
        : help_(help)
        , standing_(help)
    {
    }

    MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) override;
    MsgAnswer Ask(const Question &question) override;
    void Tell(const QString &text, MsgIcon icon, const QString &title) override;
    std::optional<QString> ShowOpen(const FileDialogRequest &request) override;
    std::optional<QString> ShowSave(const FileDialogRequest &request) override;

private:
    HTMLHelp *help_;
    StandingMessages standing_;
};

} // namespace quorvik
