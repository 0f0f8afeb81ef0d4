#pragma once

#include "desktop/HTMLHelp.h"

namespace quorvik
{

/** Help for programs in which nobody asks for it. */
class NoHelp : public HTMLHelp
{
public:
    void DisplayTopic(const QString &, QWidget *) override {}
    void DisplayFound(const QString &, const QStringList &, QWidget *) override {}
    void DisplayMessage(const QString &, QWidget *) override {}
    void DisplayContents(QWidget *) override {}
    void DisplaySearch(QWidget *) override {}
    void Close() override {}
};

} // namespace quorvik
