#include "blocks/BlockCatalogue.h"
#include "desktop/Form.h"
#include "shell/Commands.h"
#include "shell/MDIFormMain.h"

namespace quorvik
{

void AddBlockCommands(CommandTable &commands, MDIFormMain &main)
{
    Desk *desk = &main.TheDesk();
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        const BlockMenuEntry *block = &entry;
        if (!block->make)
            continue;
        if (!block->IsFamily()) {
            commands.insert(QString::fromLatin1(block->control), [=] { OpenBlock(*desk, *block, 0); });
            continue;
        }
        for (int member = block->firstMember; member <= block->lastMember; ++member)
            commands.insert(ControlName(block->control, member), [=] { OpenBlock(*desk, *block, member); });
        if (block->allControl)
            commands.insert(QString::fromLatin1(block->allControl), [=] {
                for (int member = block->firstMember; member <= block->lastMember; ++member)
                    OpenBlock(*desk, *block, member);
            });
    }
}

} // namespace quorvik
