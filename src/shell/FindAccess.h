#pragma once

#include "find/forms/FindHost.h"

namespace quorvik
{

class MDIFormMain;
struct HelpWords;

/** Adds the windows of the Blocks menu, each with what its help topic is also found by. */
void AddBlockWindows(FindIndex &index, const HelpWords &words);

/** Lets the window of the search reach menus and windows of this run. */
class FindAccess : public FindHost
{
public:
    /** @param wordsFile path of quorvik.words. */
    FindAccess(MDIFormMain &main, QString wordsFile);

    FindIndex MakeIndex() override;
    Command CommandOf(const QString &key) const override;
    void Choose(const QString &key) override;
    void ListParameter(int p) override;

private:
    void AddCommands(FindIndex &index) const;

    MDIFormMain &main_;
    QString wordsFile_;
};

} // namespace quorvik
