#include "settings/Conversion.h"

#include "platform/DBEngine.h"
#include "settings/SettingsFile.h"
#include "settings/SettingsTables.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Why a file that is not of the older format is left alone. */
QString ReasonToLeave(const QString &path)
{
    Database database;
    const QString failure = DBEngine::OpenDatabase(path, database);
    return failure.isEmpty()
               ? QStringLiteral("\"%1\" is of the present format already.").arg(QFileInfo(path).fileName())
               : failure;
}

QString Convert(const QString &from, const QString &to, bool overwrites)
{
    StoredSet set;
    if (QString failure = ReadStoredSet(from, set); !failure.isEmpty())
        return failure;
    if (QString refusal = OlderFormatRefusal(to); !refusal.isEmpty())
        return refusal;
    if (!overwrites && QFileInfo::exists(to))
        return QStringLiteral("\"%1\" is there already.").arg(to);
    if (const QString folder = QFileInfo(to).path(); !QDir().mkpath(folder))
        return QStringLiteral("The folder \"%1\" cannot be made.").arg(folder);
    if (QString failure = WriteStoredSet(to, set); !failure.isEmpty())
        return failure;
    StoredSet written;
    QString failure = ReadStoredSet(to, written);
    if (failure.isEmpty() && !written.IsSame(set))
        failure = QStringLiteral("What was written to \"%1\" does not read back as the same.").arg(to);
    if (!failure.isEmpty())
        QFile::remove(to);
    return failure;
}

} // namespace

Conversion ConvertSettings(const QString &from, const QString &to, bool overwrites)
{
    Conversion conversion{from, to, ConversionResult::LeftAlone, {}};
    if (!DBEngine::IsOlderFormat(from)) {
        conversion.sentence = ReasonToLeave(from);
        return conversion;
    }
    conversion.sentence = Convert(from, to, overwrites);
    conversion.result =
        conversion.sentence.isEmpty() ? ConversionResult::Converted : ConversionResult::Failed;
    return conversion;
}

std::vector<Conversion> PlanConversions(const QString &fromFolder, const QString &toFolder, bool recurses)
{
    const QDir folder(fromFolder);
    QStringList paths;
    QDirIterator files(fromFolder, QDir::Files,
                       recurses ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (files.hasNext())
        paths.append(files.next());
    std::sort(paths.begin(), paths.end());

    std::vector<Conversion> plan;
    QSet<QString> taken;
    for (const QString &path : paths) {
        Conversion &conversion = plan.emplace_back(Conversion{path, {}, ConversionResult::LeftAlone, {}});
        if (!DBEngine::IsOlderFormat(path)) {
            conversion.sentence = ReasonToLeave(path);
            continue;
        }
        const QFileInfo within(folder.relativeFilePath(QFileInfo(path).absoluteFilePath()));
        const QString to = QDir(toFolder).filePath(
            QDir::cleanPath(within.path() + u'/' + within.completeBaseName() + QStringLiteral(".Svx")));
        if (taken.contains(to)) {
            conversion.result = ConversionResult::Failed;
            conversion.sentence =
                QStringLiteral("Another file of the folder is converted to \"%1\".").arg(to);
            continue;
        }
        taken.insert(to);
        conversion.to = to;
    }
    return plan;
}

} // namespace quorvik
