#include "settings/LineWrap.h"

#include "platform/RuntimeFailure.h"

#include <QRegularExpression>

namespace quorvik
{

namespace
{

/** Breaks words of more than limit characters into pieces of at most that many, never inside a character. */
QString BreakLongWords(const QString &text, int limit)
{
    QString broken;
    int wordLength = 0;
    for (qsizetype position = 0; position < text.size(); ++position) {
        const QChar character = text.at(position);
        const bool startsPair = character.isHighSurrogate() && position + 1 < text.size();
        const int units = startsPair ? 2 : 1;
        if (character == u' ') {
            wordLength = 0;
        } else if (wordLength + units > limit) {
            broken += u' ';
            wordLength = units;
        } else {
            wordLength += units;
        }
        broken += character;
        if (startsPair)
            broken += text.at(++position);
    }
    return broken;
}

} // namespace

QString LineWrap(const QString &text, int width)
{
    if (text.size() <= width)
        return text;
    // Positions count from 1 and 0 stands for "not found", which sends the scan back to the start: it ends
    // only where a blank lies beyond the width.
    qsizetype pos = 0;
    qsizetype i = 1;
    while (pos <= width && i <= width) {
        const qsizetype blank = text.indexOf(u' ', i - 1) + 1;
        if (blank > width) {
            i = width + 1;
        } else {
            pos = blank;
            i = blank + 1;
        }
    }
    if (pos == 0)
        throw RuntimeFailure(QStringLiteral("A line of text cannot be broken: it holds no blank."));
    return text.left(pos - 1);
}

QStringList WrapNotes(const QString &text, int width)
{
    static const QRegularExpression lineBreak(QStringLiteral("\r\n|[\r\n\u2028\u2029]"));
    QStringList lines;
    for (QString paragraph : text.split(lineBreak)) {
        paragraph.replace(u'\t', u' ');
        // A word as long as the line has its blank beyond it, where LineWrap would fail.
        QString rest = paragraph.size() > width ? BreakLongWords(paragraph, width - 1) : paragraph;
        while (rest.size() > width) {
            // The blank behind the last word is what ends LineWrap's scan; it is never printed.
            const QString line = LineWrap(rest + u' ', width);
            lines.append(line);
            rest.remove(0, line.size() + 1);
        }
        lines.append(rest);
    }
    return lines;
}

} // namespace quorvik
