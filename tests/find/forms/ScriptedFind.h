#pragma once

#include "find/EntrySources.h"
#include "find/HelpWords.h"
#include "find/forms/FindHost.h"
#include "support/TestDesk.h"

namespace quorvik::testing
{

/** A search's surroundings in a test: the parameters, a window, two commands and a topic; what is chosen is
 * recorded. */
class ScriptedFind : public FindHost
{
public:
    explicit ScriptedFind(TestDesk &given)
        : test(given)
    {
    }

    FindIndex MakeIndex() override
    {
        HelpWords words;
        words.topics = {{QStringLiteral("Lost Link.htm"), QStringLiteral("When the link is lost"), {}}};
        FindIndex index;
        AddParameters(index, test.table, {}, words);
        AddTopics(index, words);
        const auto add = [&index](FindKind kind, const char *key, const char *title) {
            index.Add({kind, 0, QString::fromLatin1(key), QString::fromLatin1(title), {}}, {});
        };
        add(FindKind::Window, "mnuBlockVloop", "Velocity Loop");
        add(FindKind::Command, "mnuFileSave(0)", "Save");
        add(FindKind::Command, OnlineCommand, "Restart Drive");
        return index;
    }
    Command CommandOf(const QString &key) const override
    {
        return {key == QLatin1String(OnlineCommand) ? QStringLiteral("can be chosen on line only")
                                                    : QString(),
                QStringLiteral("Ctrl+S")};
    }
    void Choose(const QString &key) override { Chosen.append(key); }
    void ListParameter(int p) override { Chosen.append(QStringLiteral("list %1").arg(p)); }

    static constexpr const char *OnlineCommand = "mnuToolsReInitDrive(2)";
    TestDesk &test;
    QStringList Chosen;
};

} // namespace quorvik::testing
