#include "shell/FindAccess.h"

#include "blocks/BlockCatalogue.h"
#include "desktop/Form.h"
#include "find/EntrySources.h"
#include "find/HelpWords.h"
#include "shell/MDIFormMain.h"
#include "shell/MenuTable.h"
#include "shell/OpenWindows.h"
#include "shell/UndoEntries.h"

#include <QAction>

namespace quorvik
{

namespace
{

/** A caption of the menus as it is read. */
QString Plain(const char *caption)
{
    QString text = QString::fromLatin1(caption).remove(u'&');
    if (text.endsWith(QLatin1String("...")))
        text.chop(3);
    return text;
}

const BlockMenuEntry *SubmenuOf(const BlockMenuEntry &entry)
{
    for (const BlockMenuEntry &other : BlockCatalogue())
        if (*entry.parent && QLatin1String(other.control) == QLatin1String(entry.parent))
            return &other;
    return nullptr;
}

/** "Blocks, Inputs, Analog Inputs". */
QString PathOf(const BlockMenuEntry &entry)
{
    const BlockMenuEntry *above = SubmenuOf(entry);
    return above ? PathOf(*above) + QStringLiteral(", ") + Plain(above->caption) : QStringLiteral("Blocks");
}

/** The entry of the search itself leads nowhere from there. */
constexpr const char *ItsOwnEntry = "mnuToolsFind";

} // namespace

void AddBlockWindows(FindIndex &index, const HelpWords &words)
{
    const auto add = [&index](const QString &key, const QString &title, const QString &place,
                              const QStringList &also) {
        index.Add({FindKind::Window, 0, key, title, place}, {also});
    };
    for (const BlockMenuEntry &block : BlockCatalogue()) {
        if (!block.sheet)
            continue;
        const HelpWords::Topic *topic = words.Of(QString::fromLatin1(block.helpTopic));
        const QStringList also = topic ? topic->keywords : QStringList();
        const QString path = PathOf(block);
        if (!block.IsFamily())
            add(QString::fromLatin1(block.control), block.WindowCaption(0), path, also);
        for (int member = block.firstMember; block.IsFamily() && member <= block.lastMember; ++member)
            add(ControlName(block.control, member), block.WindowCaption(member), path, also);
        if (block.allControl)
            add(QString::fromLatin1(block.allControl),
                QStringLiteral("All ") + Plain(SubmenuOf(block)->caption), path, also);
    }
}

FindAccess::FindAccess(MDIFormMain &main, QString wordsFile)
    : main_(main)
    , wordsFile_(std::move(wordsFile))
{
}

FindIndex FindAccess::MakeIndex()
{
    const ParameterTable &table = main_.AllEngines().table;
    const HelpWords words = HelpWords::Load(wordsFile_);
    FindIndex index;
    AddParameters(index, table, BlockNames(table.UpperBound() + 1), words);
    AddBlockWindows(index, words);
    AddCommands(index);
    AddTopics(index, words);
    return index;
}

void FindAccess::AddCommands(FindIndex &index) const
{
    QString menu;
    bool isShown = true;
    for (const MenuRow &row : MenuTable()) {
        const QString name = QString::fromLatin1(row.name);
        if (row.kind == MenuKind::Menu) {
            menu = Plain(row.caption);
            isShown = main_.Menus().Entry(name)->isVisible();
        } else if (row.kind != MenuKind::Separator && row.kind != MenuKind::Submenu && isShown &&
                   name != QLatin1String(ItsOwnEntry)) {
            index.Add({FindKind::Command, 0, name, Plain(row.caption), menu}, {});
        }
    }
}

FindHost::Command FindAccess::CommandOf(const QString &key) const
{
    const QAction *entry = main_.Menus().Entry(key);
    Command command;
    if (entry->isCheckable())
        command.shown = entry->isChecked() ? QStringLiteral("On") : QStringLiteral("Off");
    else
        command.shown = entry->shortcut().toString(QKeySequence::NativeText);
    if (const std::optional<Way> way = UndoEntries::WayOf(key); way && !entry->isEnabled())
        command.whyNot = *way == Way::Undo ? QStringLiteral("has nothing to take back")
                                           : QStringLiteral("has nothing to do again");
    else if (!entry->isEnabled())
        command.whyNot = main_.AllEngines().table.PortOpen() ? QStringLiteral("can be chosen off line only")
                                                             : QStringLiteral("can be chosen on line only");
    return command;
}

void FindAccess::Choose(const QString &key)
{
    main_.Menus().Entry(key)->trigger();
}

void FindAccess::ListParameter(int p)
{
    ShowInList(main_, p);
}

} // namespace quorvik
