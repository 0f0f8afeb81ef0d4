#include "platform/cRegistry.h"

#include "platform/AtomicFile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <utility>

static void LoadTemplates()
{
    Q_INIT_RESOURCE(association);
}

namespace quorvik
{

namespace
{

QByteArray Contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** @return whether the file had to be written and was. */
bool WriteWhereDifferent(const QString &path, const QByteArray &wanted)
{
    if (Contents(path) == wanted)
        return false;
    QDir().mkpath(QFileInfo(path).absolutePath());
    const QString failure = AtomicFile::Write(path, wanted);
    if (!failure.isEmpty())
        qWarning().noquote() << failure;
    return failure.isEmpty();
}

/** The path as an argument of a desktop entry's Exec line, which has quoting rules of its own. */
QByteArray ExecArgument(const QString &path)
{
    QString quoted;
    for (const QChar c : path) {
        if (c == u'%')
            quoted += u'%';
        else if (c == u'"' || c == u'`' || c == u'$')
            quoted += QStringLiteral("\\\\");
        else if (c == u'\\')
            quoted += QStringLiteral("\\\\\\");
        quoted += c;
    }
    return '"' + quoted.toUtf8() + '"';
}

/** The extension with a class of both cases for each letter: "[sS][vV][xX]". */
QByteArray AnyCase(const QString &extension)
{
    QString pattern;
    for (const QChar c : extension)
        pattern += c.isLetter() ? QStringLiteral("[%1%2]").arg(c.toLower()).arg(c.toUpper()) : QString(c);
    return pattern.toUtf8();
}

void Run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProgram(QStandardPaths::findExecutable(program));
    process.setArguments(arguments);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.program().isEmpty())
        process.startDetached();
}

} // namespace

cRegistry::cRegistry(QString dataHome, QStringList systemFolders)
    : dataHome_(std::move(dataHome))
    , systemFolders_(std::move(systemFolders))
{
    LoadTemplates();
}

void cRegistry::CreateEXEAssociation(const QString &programPath, const QString &className,
                                     const QString &classText, const QString &extension) const
{
    const QString name = className.toLower();
    QByteArray type = Contents(QStringLiteral(":/association/quorvik.xml"));
    type.replace("@TEXT@", classText.toHtmlEscaped().toUtf8());
    type.replace("@GLOB@", "*." + AnyCase(extension));
    QByteArray entry = Contents(QStringLiteral(":/association/quorvik.desktop"));
    entry.replace("@EXEC@", ExecArgument(programPath));
    entry.replace("@NAME@", className.toUtf8());

    Store(QStringLiteral("mime"), QStringLiteral("/packages/%1.xml").arg(name), type,
          QStringLiteral("update-mime-database"));
    Store(QStringLiteral("applications"), QStringLiteral("/%1.desktop").arg(name), entry,
          QStringLiteral("update-desktop-database"));
}

void cRegistry::Store(const QString &database, const QString &name, const QByteArray &content,
                      const QString &update) const
{
    const QString inDatabase = u'/' + database + name;
    const QString own = dataHome_ + inDatabase;
    const bool isInstalled = std::ranges::any_of(
        systemFolders_, [&](const QString &folder) { return QFileInfo::exists(folder + inDatabase); });
    if ((isInstalled && !QFileInfo::exists(own)) || !WriteWhereDifferent(own, content))
        return;
    Run(update, {dataHome_ + u'/' + database});
}

} // namespace quorvik
