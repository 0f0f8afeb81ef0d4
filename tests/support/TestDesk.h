#pragma once

#include "desktop/BoxColors.h"
#include "desktop/Desk.h"
#include "desktop/HTMLHelp.h"
#include "link/DriveLink.h"
#include "link/ValueStates.h"
#include "model/Document.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/TripRecords.h"
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
    void DisplayFound(const QString &topic, const QStringList &, QWidget *) override { Topics.append(topic); }
    void DisplayMessage(const QString &text, QWidget *) override { Topics.append(text); }
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
    ParameterTable table;
    DriveLink link{table};
    ValueStates states{table, link};
    TripRecords trips{table, link, states};
    Document document{table};
    AccessColors colors;
    ScriptedAsker asker;
    EntryRules rules{table, asker};
    Guards guards{table, document, asker};
    SettingsStore settings;
    RecordingHelp help;
    FormsCollection forms;
    QWidget mainWindow;
    Desk desk;
};

} // namespace quorvik::testing
