#include "find/HelpWords.h"

#include "find/FoldedWords.h"

#include <QFile>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int FewestLetters = 3;
constexpr QChar FieldMark = u'\t';
constexpr QChar Listed = u';';
/** A line of a parameter begins with it. */
constexpr QChar Numbered = u'@';

} // namespace

QString HelpWords::Essence(const QString &text)
{
    QStringList words = FoldedWords(text);
    words.removeIf([](const QString &word) { return word.size() < FewestLetters; });
    words.removeDuplicates();
    return words.join(u' ');
}

QByteArray HelpWords::ToText() const
{
    QStringList lines;
    for (const Topic &topic : topics)
        lines.append(
            QStringList{topic.page, topic.title, topic.chapter, topic.keywords.join(Listed), topic.words}
                .join(FieldMark));
    QList<int> numbers = parameters.keys();
    std::ranges::sort(numbers);
    for (const int number : numbers)
        lines.append(Numbered + QString::number(number) + FieldMark + parameters[number]);
    return (lines.join(u'\n') + u'\n').toUtf8();
}

HelpWords HelpWords::FromText(const QByteArray &text)
{
    constexpr int topicFields = 5;
    HelpWords words;
    const QStringList lines = QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList fields = line.split(FieldMark);
        if (line.startsWith(Numbered) && fields.size() == 2)
            words.parameters.insert(fields[0].mid(1).toInt(), fields[1]);
        else if (fields.size() == topicFields)
            words.topics.append(
                {fields[0], fields[1], fields[2], fields[3].split(Listed, Qt::SkipEmptyParts), fields[4]});
    }
    return words;
}

HelpWords HelpWords::Load(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? FromText(file.readAll()) : HelpWords();
}

const HelpWords::Topic *HelpWords::Of(const QString &page) const
{
    const auto found = std::ranges::find(topics, page, &Topic::page);
    return found == topics.end() ? nullptr : &*found;
}

} // namespace quorvik
