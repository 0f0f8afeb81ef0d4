#include "platform/LastFolder.h"

#include "platform/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quorvik
{

namespace
{

QString Section()
{
    return QStringLiteral("Folders");
}

QString KeyOf(FolderUse use)
{
    return use == FolderUse::Sets ? QStringLiteral("Sets") : QStringLiteral("Exports");
}

/** Empty where there is no such folder. */
QString IfThere(const QString &folder)
{
    return !folder.isEmpty() && QFileInfo(folder).isDir() ? folder : QString();
}

} // namespace

QString FolderFor(FolderUse use, const SettingsStore &settings, const QString &openFile)
{
    const QString ofFile = openFile.contains(u'/') ? QFileInfo(openFile).path() : QString();
    const QString last = IfThere(settings.GetSetting(Section(), KeyOf(use)));
    const QString first = use == FolderUse::Sets ? ofFile : last;
    const QString second = use == FolderUse::Sets ? last : IfThere(ofFile);
    if (!first.isEmpty() || !second.isEmpty())
        return first.isEmpty() ? second : first;
    const QString documents = IfThere(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    return documents.isEmpty() ? QDir::homePath() : documents;
}

void KeepFolder(FolderUse use, SettingsStore &settings, const QString &chosenFile)
{
    settings.SaveSetting(Section(), KeyOf(use), QFileInfo(chosenFile).absolutePath());
}

} // namespace quorvik
