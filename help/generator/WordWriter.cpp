#include "generator/WordWriter.h"

#include <QFile>
#include <QRegularExpression>

namespace quorvik::help
{

namespace
{

/** Markdown without what nobody reads: the targets of links and pictures. */
QString ReadableText(QString markdown)
{
    static const QRegularExpression target(QStringLiteral("\\]\\([^)]*\\)|<br>"));
    return markdown.replace(target, QStringLiteral(" "));
}

/** The rows of parameters go to these, the rest of the text comes back. */
QString TakeRows(const QString &text, QHash<int, QString> &parameters)
{
    static const QRegularExpression row(QStringLiteral("^@(\\d+)(?:\\.\\.(\\d+))? +(.*)$"));
    QStringList rest;
    const QStringList lines = text.split(u'\n');
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = row.match(line);
        if (!match.hasMatch()) {
            rest.append(line);
            continue;
        }
        const int first = match.captured(1).toInt();
        const int last = match.captured(2).isEmpty() ? first : match.captured(2).toInt();
        for (int p = first; p <= last; ++p)
            parameters[p] += u' ' + match.captured(3);
    }
    return rest.join(u'\n');
}

} // namespace

HelpWords CollectWords(const Topics &topics)
{
    HelpWords words;
    QString chapter;
    QHash<QString, QString> chapters;
    for (const ContentsEntry &entry : topics.Contents()) {
        if (entry.topic.isEmpty())
            chapter = entry.title;
        else
            chapters.insert(entry.topic, entry.depth > 0 ? chapter : QString());
    }
    for (const Topic &topic : topics.All()) {
        const QString text = TakeRows(ReadableText(topic.markdown), words.parameters);
        words.topics.append(
            {topic.name, topic.title, chapters.value(topic.name), topic.keywords, HelpWords::Essence(text)});
    }
    for (QString &text : words.parameters)
        text = HelpWords::Essence(text);
    return words;
}

void WriteWords(const Topics &topics, const QString &outFolder, QStringList &problems)
{
    QFile file(outFolder + QStringLiteral("/quorvik.words"));
    const QByteArray text = CollectWords(topics).ToText();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        problems.append(file.fileName() + QStringLiteral(": ") + file.errorString());
}

} // namespace quorvik::help
