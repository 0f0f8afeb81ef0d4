#include "batch/BatchAsker.h"

#include "batch/BatchOutput.h"
#include "platform/Progress.h"
#include "platform/Waiting.h"

#include <QScopedValueRollback>

namespace quorvik
{

MsgAnswer BatchAsker::MsgBox(const QString &text, MsgButtons buttons, MsgIcon, const QString &)
{
    output_.Complain(text);
    switch (buttons) {
    case MsgButtons::Ok:
        return MsgAnswer::Ok;
    case MsgButtons::YesNo:
        return MsgAnswer::No;
    case MsgButtons::YesNoCancel:
        break;
    }
    return MsgAnswer::Cancel;
}

MsgAnswer BatchAsker::Ask(const Question &question)
{
    output_.Complain(question.WholeText());
    if (!question.word.isEmpty() && Accepted.contains(question.word)) {
        output_.Complain(QStringLiteral("(accepted by --accept %1)").arg(question.word));
        return MsgAnswer::Yes;
    }
    hasRefused_ = true;
    if (!question.word.isEmpty())
        output_.Complain(QStringLiteral("Refused. --accept %1 answers with \"%2\".")
                             .arg(question.word, question.VerbOf(MsgAnswer::Yes)));
    return question.Has(MsgAnswer::Cancel) ? MsgAnswer::Cancel : question.safe;
}

void BatchAsker::Tell(const QString &text, MsgIcon, const QString &)
{
    output_.Complain(text);
}

void BatchAsker::ShowProgress(Progress &progress)
{
    const QScopedValueRollback under(progress_, &progress);
    QString said;
    QObject follower;
    QObject::connect(&progress, &Progress::Said, &follower,
                     [&](const QString &sentence) { said = sentence; });
    QObject::connect(&progress, &Progress::Advanced, &follower, [&](int step) {
        output_.ShowProgress(
            said.isEmpty()
                ? QStringLiteral("%1: %2 of %3").arg(progress.Title()).arg(step).arg(progress.Steps())
                : said);
    });
    PumpWhile([&progress] { return !progress.IsOver(); });
    output_.EndProgress();
}

} // namespace quorvik
