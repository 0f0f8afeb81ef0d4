#pragma once

#include "platform/Asker.h"

#include <QSet>
#include <QString>

namespace quorvik
{

class BatchOutput;

/**
 * Answers for a run without windows: Yes where the command line has said so beforehand by the question's
 * word, and else what does nothing. Nothing is assumed: a question without a word is refused.
 */
class BatchAsker : public Asker
{
public:
    explicit BatchAsker(BatchOutput &output)
        : output_(output)
    {
    }

    /** Words of the questions that are answered with Yes. */
    QSet<QString> Accepted;

    /** Whether a question was refused, and the run ends with ExitCode::Guard. */
    bool HasRefused() const { return hasRefused_; }
    /** The operation under way, or none; SIGINT cancels it. */
    Progress *UnderWay() const { return progress_; }

    MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) override;
    MsgAnswer Ask(const Question &question) override;
    void Tell(const QString &text, MsgIcon icon, const QString &title) override;
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return std::nullopt; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return std::nullopt; }
    void ShowProgress(Progress &progress) override;

private:
    BatchOutput &output_;
    Progress *progress_ = nullptr;
    bool hasRefused_ = false;
};

} // namespace quorvik
