#pragma once

#include "shell/MDIFormMain.h"
#include "support/Controls.h"
#include "support/SimulatedDrive.h"
#include "support/TestDesk.h"

#include <QAction>
#include <QFile>
#include <QStatusBar>
#include <QToolButton>
#include <memory>

namespace quorvik::testing
{

/** While it lives, programs are found in one folder only. */
class OnlyProgramsIn
{
public:
    explicit OnlyProgramsIn(const QTemporaryDir &folder) { qputenv("PATH", folder.path().toLocal8Bit()); }
    ~OnlyProgramsIn() { qputenv("PATH", before_); }

private:
    QByteArray before_ = qgetenv("PATH");
};

/** One run of the whole program in a folder of its own, with scripted answers. */
class ShellTest : public ::testing::Test, protected Controls
{
protected:
    explicit ShellTest(const LinkTimings &ofLink = {.scanPause = 20, .sizeErrorPause = 100})
        : timings(ofLink)
    {
        QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), folder.filePath(QStringLiteral("Presets.fil")));
        Store("Options", "CommPort", "16");
        Store("Options", "Show Tips at Startup", "False");
        MakeWindow();
    }

    void MakeWindow()
    {
        main.reset();
        main = std::make_unique<MDIFormMain>(
            Surroundings{asker, settings, help, folder.path(), folder.filePath(QStringLiteral("quorvik")),
                         folder.filePath(QStringLiteral("Quorvik.lock")),
                         folder.filePath(QStringLiteral("data")), timings, [this] { return devices(); }});
        window = main.get();
    }

    /** Starts with a settings file named that is not there, so that no dialog stands in the way. */
    void LoadQuietly()
    {
        asker.Expect(QString());
        ASSERT_TRUE(main->Load(folder.filePath(QStringLiteral("missing.Svx"))));
        asker.Shown.clear();
    }

    void UseDrive(const SimulatedDrive &drive) { Store("Ports", "Com16", drive.LinkPath()); }

    void GoOnLine(const SimulatedDrive &drive)
    {
        UseDrive(drive);
        LoadQuietly();
        Drive().GoOnLine();
        ASSERT_TRUE(Link().PortOpen());
    }
    DriveOperations &Drive() const { return main->AllEngines().drive; }
    DriveLink &Link() const { return main->AllEngines().link; }
    ParameterTable &Table() const { return main->AllEngines().table; }
    Document &Set() const { return main->AllEngines().document; }
    AccessColors &Colors() const { return main->TheDesk().colors; }

    QAction *Entry(const Name &name) const { return main->Menus().Entry(name); }
    void Trigger(const Name &name) const { Entry(name)->trigger(); }
    QString Setting(const Name &section, const Name &key) const { return settings.GetSetting(section, key); }
    void Store(const Name &section, const Name &key, const Name &text)
    {
        settings.SaveSetting(section, key, text);
    }

    const LinkTimings timings;
    QTemporaryDir folder;
    // The system's tools would go on registering the file type after the test, in a folder that is being
    // removed.
    OnlyProgramsIn noTools{folder};
    ScriptedAsker asker;
    RecordingHelp help;
    SettingsStore settings{folder.filePath(QStringLiteral("Quorvik.ini"))};
    std::function<QList<SerialDevice>()> devices = &Ports::Present;
    std::unique_ptr<MDIFormMain> main;
};

} // namespace quorvik::testing
