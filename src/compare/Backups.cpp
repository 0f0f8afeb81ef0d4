#include "compare/Backups.h"

#include "compare/DriveSet.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "platform/FileLock.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>

namespace quorvik
{

namespace
{

/** How long another program may take to keep a set of its own, in milliseconds. */
constexpr int MostWaitMs = 3000;

const QString &TimeForm()
{
    static const QString form = QStringLiteral("yyyy-MM-dd HH-mm-ss");
    return form;
}

QString ModelOf(const ParameterSet &set)
{
    try {
        return ModelText(set.Value(Param::DriveModel));
    } catch (const RuntimeFailure &) {
        return ModelText(0);
    }
}

/** The path of a name that no file has yet. */
QString FreePath(const QDir &folder, const QString &name)
{
    QString path = folder.filePath(name + QStringLiteral(".Svx"));
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = folder.filePath(QStringLiteral("%1 (%2).Svx").arg(name).arg(number));
    return path;
}

} // namespace

QList<Backups::Entry> Backups::List() const
{
    static const QRegularExpression form(QStringLiteral(R"( (\d{4}-\d\d-\d\d \d\d-\d\d-\d\d)( \(\d+\))?$)"));
    QList<Entry> entries;
    for (const QFileInfo &file : QDir(folder_).entryInfoList({QStringLiteral("*.Svx")}, QDir::Files)) {
        const QRegularExpressionMatch match = form.match(file.completeBaseName());
        // What somebody else has put there is not ours to count, or to let go of.
        if (match.hasMatch())
            entries.append({file.filePath(), file.completeBaseName(),
                            QDateTime::fromString(match.captured(1), TimeForm())});
    }
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return std::tuple(a.time, a.path.size(), a.path) > std::tuple(b.time, b.path.size(), b.path);
    });
    return entries;
}

QString Backups::Keep(const ParameterSet &set, const ParameterTable &like, const QDateTime &now,
                      QString &path) const
{
    const QDir folder(folder_);
    if (!folder.mkpath(QStringLiteral(".")))
        return QStringLiteral("The folder %1 cannot be made.").arg(QDir::toNativeSeparators(folder_));
    // Two programs that keep a set in the same second would find the same name free.
    FileLock lock(folder.filePath(QStringLiteral(".lock")));
    lock.Acquire(MostWaitMs);
    ParameterTable table = TableOf(set, like);
    Document document(table);
    document.Notes = QStringLiteral("The drive's set as it was on %1, before something was written to it.")
                         .arg(now.toString(QStringLiteral("yyyy-MM-dd 'at' HH:mm:ss")));
    const QString target = FreePath(folder, ModelOf(set) + u' ' + now.toString(TimeForm()));
    if (QString failure = SettingsFile(table, document).Save(target); !failure.isEmpty())
        return failure;
    path = target;
    const QList<Entry> entries = List();
    for (qsizetype i = std::max(Newest, 1); i < entries.size(); ++i)
        if (entries[i].path != target)
            QFile::remove(entries[i].path);
    return {};
}

} // namespace quorvik
