#pragma once

#include <QHash>
#include <QString>
#include <functional>

namespace quorvik
{

class MDIFormMain;

/** What each menu entry does, by its control name. */
using CommandTable = QHash<QString, std::function<void()>>;

/** The commands of every menu. */
CommandTable AllCommands(MDIFormMain &main);

void AddFileCommands(CommandTable &commands, MDIFormMain &main);
void AddToolCommands(CommandTable &commands, MDIFormMain &main);
void AddBlockCommands(CommandTable &commands, MDIFormMain &main);
void AddWindowAndHelpCommands(CommandTable &commands, MDIFormMain &main);

} // namespace quorvik
