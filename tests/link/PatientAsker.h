#pragma once

#include "platform/Asker.h"

namespace quorvik::testing
{

/** Answers every box as a patient user would. */
class PatientAsker : public Asker
{
public:
    MsgAnswer MsgBox(const QString &, MsgButtons buttons, MsgIcon, const QString &) override
    {
        return buttons == MsgButtons::Ok ? MsgAnswer::Ok : MsgAnswer::No;
    }
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return std::nullopt; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return std::nullopt; }
};

} // namespace quorvik::testing
