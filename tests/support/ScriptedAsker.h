#pragma once

#include "platform/Asker.h"

#include <QList>
#include <QStringList>
#include <functional>

namespace quorvik::testing
{

/** One message box as it was shown. */
struct ShownBox {
    QString text;
    QString title;
    MsgIcon icon;
    MsgButtons buttons;
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
    void Expect(const QString &text, MsgAnswer answer = MsgAnswer::Ok);
    /** What the next open dialog answers; nothing stands for a cancel. */
    void ExpectOpen(std::optional<QString> path);
    /** What the next save dialog answers; nothing stands for a cancel. */
    void ExpectSave(std::optional<QString> path);

    QList<ShownBox> Shown;
    QList<FileDialogRequest> Requests;
    /** Runs while a message box is open, before it is answered; for what happens behind a box. */
    std::function<void()> WhileShown;

    MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) override;
    std::optional<QString> ShowOpen(const FileDialogRequest &request) override;
    std::optional<QString> ShowSave(const FileDialogRequest &request) override;

private:
    struct Answer {
        QString text;
        MsgAnswer answer;
    };
    QList<Answer> answers_;
    QList<std::optional<QString>> openPaths_;
    QList<std::optional<QString>> savePaths_;
};

} // namespace quorvik::testing
