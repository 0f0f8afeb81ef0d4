#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace quorvik
{

class ParameterTable;
struct ParameterSet;

/** The sets of drives as they were before something was written to them: ordinary settings files, dated, of
 * which the newest stay. */
class Backups
{
public:
    static constexpr int UsualNewest = 50;

    /** @param folder where they lie; made when the first one is kept. */
    explicit Backups(const QString &folder)
        : folder_(folder)
    {
    }

    struct Entry {
        QString path;
        QString name; ///< "SVN100-000 2026-11-22 14-03-12", as its file is called
        QDateTime time;
    };

    /** The newest first. */
    QList<Entry> List() const;
    /**
     * Keeps a set, and lets go of what is older than the newest ones.
     * @param like gives names and factory values for the file.
     * @param path gets the file's path.
     * @return empty, or why it could not be kept.
     */
    QString Keep(const ParameterSet &set, const ParameterTable &like, const QDateTime &now,
                 QString &path) const;

    const QString &Folder() const { return folder_; }

    int Newest = UsualNewest; ///< how many stay, 1 or more

private:
    QString folder_;
};

} // namespace quorvik
