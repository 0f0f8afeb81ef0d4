#pragma once

#include "platform/Asker.h"

namespace quorvik
{

class MDIFormMain;

/** Asks with the program's own dialogs where there is one, and else as it was given to the program. */
class WindowAsker : public Asker
{
public:
    WindowAsker(Asker &given, MDIFormMain &main)
        : given_(given)
        , main_(main)
    {
    }

    MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) override
    {
        return given_.MsgBox(text, buttons, icon, title);
    }
    MsgAnswer Ask(const Question &question) override { return given_.Ask(question); }
    void Tell(const QString &text, MsgIcon icon, const QString &title) override
    {
        given_.Tell(text, icon, title);
    }
    std::optional<QString> ShowOpen(const FileDialogRequest &request) override
    {
        return Remembered(given_.ShowOpen(WithFolder(request)));
    }
    std::optional<QString> ShowSave(const FileDialogRequest &request) override
    {
        return Remembered(given_.ShowSave(WithFolder(request)));
    }

    std::optional<std::int32_t> EditValue(int p, std::int32_t rawValue) override;
    bool ChooseOnLine() override;
    void SelectDriveModel() override;
    void ShowProgress(Progress &progress) override;

private:
    FileDialogRequest WithFolder(FileDialogRequest request) const;
    std::optional<QString> Remembered(std::optional<QString> chosen) const;

    Asker &given_;
    MDIFormMain &main_;
};

} // namespace quorvik
