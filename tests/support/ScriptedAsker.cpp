#include "support/ScriptedAsker.h"

#include "platform/Progress.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

ScriptedAsker::~ScriptedAsker()
{
    for (const Answer &left : answers_)
        ADD_FAILURE() << "never asked: " << left.text.toStdString();
    if (!openPaths_.isEmpty() || !savePaths_.isEmpty())
        ADD_FAILURE() << "a file dialog was expected and never shown";
}

MsgAnswer ScriptedAsker::MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title)
{
    Shown.append({text, title, icon, buttons});
    return ScriptedAnswer(text, buttons == MsgButtons::Ok      ? MsgAnswer::Ok
                                : buttons == MsgButtons::YesNo ? MsgAnswer::No
                                                               : MsgAnswer::Cancel);
}

MsgAnswer ScriptedAsker::Ask(const Question &question)
{
    Shown.append({.text = question.WholeText(),
                  .title = question.title,
                  .icon = question.icon,
                  .choices = question.choices,
                  .safe = question.safe});
    const MsgAnswer answer = ScriptedAnswer(question.WholeText(), question.AnswerOfEscape());
    EXPECT_TRUE(question.Has(answer)) << "there is no such button: " << question.text.toStdString();
    return answer;
}

MsgAnswer ScriptedAsker::ScriptedAnswer(const QString &text, MsgAnswer otherwise)
{
    MsgAnswer answer = otherwise;
    if (answers_.isEmpty() || !text.contains(answers_.first().text))
        ADD_FAILURE() << "unexpected box: " << text.toStdString();
    else
        answer = answers_.takeFirst().answer;
    // Others may be shown meanwhile.
    if (const auto whileShown = WhileShown)
        whileShown();
    return answer;
}

void ScriptedAsker::ShowProgress(Progress &progress)
{
    Progresses.push_back(progress.Tag());
    Asker::ShowProgress(progress);
}

std::optional<QString> ScriptedAsker::Answered(const FileDialogRequest &request, Paths &paths)
{
    Requests.append(request);
    if (!paths.isEmpty())
        return paths.takeFirst();
    ADD_FAILURE() << "unexpected file dialog";
    return std::nullopt;
}

} // namespace quorvik::testing
