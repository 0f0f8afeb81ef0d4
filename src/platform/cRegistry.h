#pragma once

#include <QString>
#include <QStringList>

namespace quorvik
{

/**
 * Ties a file name extension to a program in the desktop's databases of applications and file types. The
 * user's own come before the system's, so they are written only where the system has none, or to put one
 * right that stands already. A failure is traced and nothing more.
 */
class cRegistry
{
public:
    /**
     * @param dataHome the user's data folder.
     * @param systemFolders the data folders of the system.
     */
    cRegistry(QString dataHome, QStringList systemFolders);

    /**
     * @param programPath whole path of the program.
     * @param className name of the class of files, which is also the program's name.
     * @param classText what the user reads for such a file.
     * @param extension without the point; the case of its letters does not matter.
     */
    void CreateEXEAssociation(const QString &programPath, const QString &className, const QString &classText,
                              const QString &extension) const;

private:
    /** Writes a file of one of the desktop's databases, and has that database brought up to date. */
    void Store(const QString &database, const QString &name, const QByteArray &content,
               const QString &update) const;

    QString dataHome_;
    QStringList systemFolders_;
};

} // namespace quorvik
