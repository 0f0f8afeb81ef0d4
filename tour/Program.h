#pragma once

#include "desktop/DesktopAsker.h"
#include "desktop/HelpViewer.h"
#include "platform/SettingsStore.h"
#include "shell/MDIFormMain.h"

#include <QObject>
#include <QTemporaryDir>
#include <memory>

namespace quorvik
{

/** The real program with a profile of its own, which outlives a restart and is gone with the object. */
class Program : public QObject
{
    Q_OBJECT

public:
    Program();

    /** Where the drive's link is to be; the profile points at it. */
    QString DriveLinkPath() const { return profile_.filePath(QStringLiteral("drive")); }
    QString ProgramFolder() const { return programFolder_; }

    /** Starts the program, afresh where it ran before, as soon as the event loop is reached. */
    void Start();
    MDIFormMain &Main() { return *main_; }
    bool IsRunning() const { return main_ && main_->isVisible(); }

private:
    void Load();

    QTemporaryDir profile_;
    QString programFolder_;
    SettingsStore settings_;
    HelpViewer help_;
    DesktopAsker asker_{&help_};
    std::unique_ptr<MDIFormMain> main_;
};

} // namespace quorvik
