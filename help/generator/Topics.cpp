#include "generator/Topics.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace quorvik::help
{

QString ReadText(const QString &path, QStringList &problems)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problems.append(path + QStringLiteral(": ") + file.errorString());
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

void Topics::Read(const QString &folder, QStringList &problems)
{
    const QDir sources(folder + QStringLiteral("/topics"));
    const QFileInfoList files = sources.entryInfoList({QStringLiteral("*.md")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files)
        ReadTopic(file.filePath(), problems);
    ReadContents(folder + QStringLiteral("/contents.txt"), problems);
}

void Topics::ReadTopic(const QString &path, QStringList &problems)
{
    const QString text = ReadText(path, problems);
    Topic topic;
    topic.name = QFileInfo(path).completeBaseName() + QStringLiteral(".htm");
    QStringList body;
    const QStringList lines = text.split(u'\n');
    for (const QString &line : lines) {
        if (topic.title.isEmpty() && line.startsWith(QStringLiteral("# ")))
            topic.title = line.mid(2).trimmed();
        if (line.startsWith(QStringLiteral("Index: "))) {
            for (const QString &word : line.mid(7).split(u';', Qt::SkipEmptyParts))
                topic.keywords.append(word.trimmed());
            continue;
        }
        body.append(line);
    }
    if (topic.title.isEmpty())
        problems.append(path + QStringLiteral(": begins with no \"# Title\""));
    topic.markdown = body.join(u'\n');
    topics_.insert(topic.name, topic);
}

void Topics::ReadContents(const QString &path, QStringList &problems)
{
    const QStringList lines = ReadText(path, problems).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QString text = line.trimmed();
        ContentsEntry entry;
        entry.depth = int(line.indexOf(text.left(1))) / 2;
        if (text.startsWith(u'[')) {
            entry.title = text.mid(1, text.size() - 2);
        } else {
            entry.topic = text;
            entry.title = topics_.value(text).title;
            if (!topics_.contains(text))
                problems.append(path + QStringLiteral(": there is no topic \"%1\"").arg(text));
        }
        contents_.append(entry);
    }
}

void Topics::Check(const QStringList &required, QStringList &problems) const
{
    QStringList listed;
    for (const ContentsEntry &entry : contents_)
        listed.append(entry.topic);
    for (const Topic &topic : topics_)
        if (!listed.contains(topic.name))
            problems.append(QStringLiteral("\"%1\" stands nowhere in the contents").arg(topic.name));
    for (const QString &name : required)
        if (!topics_.contains(name))
            problems.append(
                QStringLiteral("a window asks for the topic \"%1\", which does not exist").arg(name));
}

} // namespace quorvik::help
