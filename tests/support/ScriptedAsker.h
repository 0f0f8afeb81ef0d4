#pragma once

#include "platform/Asker.h"
#include "support/Name.h"

#include <QList>
#include <QStringList>
#include <functional>
#include <vector>

namespace quorvik::testing
{

/** One message box as it was shown. */
struct ShownBox {
    QString text;
    QString title;
    MsgIcon icon;
    MsgButtons buttons = MsgButtons::Ok; ///< of a box
    std::vector<Choice> choices = {};    ///< of a question
    std::optional<MsgAnswer> safe = {};  ///< of a question
};

/**
 * Answers by script and records what was shown. A question that the script does not expect fails the test,
 * and so does an expected one that was never asked.
 */
class ScriptedAsker : public Asker
{
public:
    ~ScriptedAsker() override;

    /** The next message box must contain text, and is answered so. */
    void Expect(const Name &text, MsgAnswer answer = MsgAnswer::Ok) { answers_.append({text, answer}); }
    /** What the next open or save dialog answers; nothing stands for a cancel. */
    void ExpectOpen(const std::optional<QString> &path) { openPaths_.append(path); }
    void ExpectSave(const std::optional<QString> &path) { savePaths_.append(path); }

    QList<ShownBox> Shown;
    QList<FileDialogRequest> Requests;
    /** Runs while a message box is open, before it is answered; for what happens behind a box. */
    std::function<void()> WhileShown;

    MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) override;
    /** Scripted as a box: the script names a part of its text or explanation. */
    MsgAnswer Ask(const Question &question) override;
    /** Scripted as a box; WhileShown runs here too. */
    void Tell(const QString &text, MsgIcon icon, const QString &title) override
    {
        MsgBox(text, MsgButtons::Ok, icon, title);
    }
    std::optional<QString> ShowOpen(const FileDialogRequest &request) override
    {
        return Answered(request, openPaths_);
    }
    std::optional<QString> ShowSave(const FileDialogRequest &request) override
    {
        return Answered(request, savePaths_);
    }

    /** Stands for the edit dialog. */
    std::function<std::optional<std::int32_t>(int p, std::int32_t rawValue)> OnEditValue =
        [](int, std::int32_t) { return std::nullopt; };
    int ModelsSelected = 0;
    /** The tags of the operations followed. */
    std::vector<int> Progresses;

    std::optional<std::int32_t> EditValue(int p, std::int32_t rawValue) override
    {
        return OnEditValue(p, rawValue);
    }
    void SelectDriveModel() override { ++ModelsSelected; }
    void ShowProgress(Progress &progress) override;

private:
    struct Answer {
        QString text;
        MsgAnswer answer;
    };
    using Paths = QList<std::optional<QString>>;
    MsgAnswer ScriptedAnswer(const QString &text, MsgAnswer otherwise);
    std::optional<QString> Answered(const FileDialogRequest &request, Paths &paths);

    QList<Answer> answers_;
    Paths openPaths_;
    Paths savePaths_;
};

} // namespace quorvik::testing
