#pragma once

#include "shell/MDIFormMain.h"
#include "support/SimulatedDrive.h"
#include "support/TestDesk.h"

#include <QAction>
#include <QFile>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>
#include <memory>

namespace quorvik::testing
{

/** One run of the whole program in a folder of its own, with scripted answers. */
class ShellTest : public ::testing::Test
{
protected:
    ShellTest()
    {
        QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), folder.filePath(QStringLiteral("Presets.fil")));
        settings.SaveSetting(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("16"));
        settings.SaveSetting(QStringLiteral("Options"), QStringLiteral("Show Tips at Startup"),
                             QStringLiteral("False"));
        MakeWindow();
    }

    void MakeWindow()
    {
        main.reset();
        main = std::make_unique<MDIFormMain>(
            Surroundings{asker, settings, help, folder.path(), folder.filePath(QStringLiteral("quorvik")),
                         folder.filePath(QStringLiteral("Quorvik.lock")),
                         folder.filePath(QStringLiteral("data")), LinkTimings{20, 220, 100, 15}});
    }

    /** Starts with a settings file named that is not there, so that no dialog stands in the way. */
    void LoadQuietly()
    {
        asker.Expect(QString());
        ASSERT_TRUE(main->Load(folder.filePath(QStringLiteral("missing.Svx"))));
        asker.Shown.clear();
    }

    void UseDrive(const SimulatedDrive &drive)
    {
        settings.SaveSetting(QStringLiteral("Ports"), QStringLiteral("Com16"), drive.LinkPath());
    }

    QAction *Entry(const char *name) const { return main->Menus().Entry(QString::fromLatin1(name)); }
    void Trigger(const char *name) const { Entry(name)->trigger(); }

    QString Setting(const char *section, const char *key) const
    {
        return settings.GetSetting(QString::fromLatin1(section), QString::fromLatin1(key));
    }

    template<typename Widget = QWidget> Widget *Find(const char *name) const
    {
        return main->findChild<Widget *>(QString::fromLatin1(name));
    }

    QTemporaryDir folder;
    ScriptedAsker asker;
    RecordingHelp help;
    SettingsStore settings{folder.filePath(QStringLiteral("Quorvik.ini"))};
    std::unique_ptr<MDIFormMain> main;
};

} // namespace quorvik::testing
