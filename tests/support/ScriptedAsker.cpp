#include "support/ScriptedAsker.h"

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

void ScriptedAsker::Expect(const QString &text, MsgAnswer answer)
{
    answers_.append({text, answer});
}

void ScriptedAsker::ExpectOpen(std::optional<QString> path)
{
    openPaths_.append(std::move(path));
}

void ScriptedAsker::ExpectSave(std::optional<QString> path)
{
    savePaths_.append(std::move(path));
}

MsgAnswer ScriptedAsker::MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title)
{
    Shown.append({text, title, icon, buttons});
    if (WhileShown)
        WhileShown();
    if (answers_.isEmpty() || !text.contains(answers_.first().text)) {
        ADD_FAILURE() << "unexpected box: " << text.toStdString();
        return buttons == MsgButtons::Ok      ? MsgAnswer::Ok
               : buttons == MsgButtons::YesNo ? MsgAnswer::No
                                              : MsgAnswer::Cancel;
    }
    return answers_.takeFirst().answer;
}

std::optional<QString> ScriptedAsker::ShowOpen(const FileDialogRequest &request)
{
    Requests.append(request);
    if (openPaths_.isEmpty()) {
        ADD_FAILURE() << "unexpected open dialog";
        return std::nullopt;
    }
    return openPaths_.takeFirst();
}

std::optional<QString> ScriptedAsker::ShowSave(const FileDialogRequest &request)
{
    Requests.append(request);
    if (savePaths_.isEmpty()) {
        ADD_FAILURE() << "unexpected save dialog";
        return std::nullopt;
    }
    return savePaths_.takeFirst();
}

} // namespace quorvik::testing
