#pragma once

#include "desktop/Desk.h"
#include "desktop/HTMLHelp.h"
#include "model/Model.h"
#include "operations/EntryRules.h"
#include "platform/SettingsStore.h"
#include "support/ScriptedAsker.h"

#include <QStringList>
#include <QTemporaryDir>
#include <QWidget>

namespace quorvik::testing
{

/** Records the topics asked for. */
class RecordingHelp : public HTMLHelp
{
public:
    QStringList Topics;

    void DisplayTopic(const QString &topic, QWidget *) override { Topics.append(topic); }
    void DisplayContents(QWidget *) override { Topics.append(QStringLiteral("<contents>")); }
    void DisplaySearch(QWidget *) override { Topics.append(QStringLiteral("<search>")); }
    void Close() override {}
};

/**
 * A desk for window tests: the factory table of the build, scripted answers, a settings store in a temporary
 * folder. The main window's place in the forms collection is taken by an empty widget; ShowChild shows
 * windows free-standing.
 */
class TestDesk
{
public:
    TestDesk();
    ~TestDesk(); ///< with the windows that are still open, and those that wait for their deletion

    QTemporaryDir folder;
    Model model;
    ScriptedAsker asker;
    EntryRules rules{model, asker};
    SettingsStore settings;
    RecordingHelp help;
    FormsCollection forms;
    QWidget mainWindow;
    bool online = false; ///< what Model::PortOpen answers
    Desk desk;
};

} // namespace quorvik::testing
