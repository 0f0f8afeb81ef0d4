#include "batch/BatchOutput.h"

#include "platform/Terminal.h"
#include "settings/Report.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <utility>

namespace quorvik
{

namespace
{

/** A text without what would move a terminal's cursor. */
QString Printable(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar &c : text)
        if (c != u'\n' && (c.unicode() < 0x20 || (c.unicode() >= 0x7F && c.unicode() < 0xA0)))
            c = QChar(u'\uFFFD');
    return text;
}

QString CellText(const QVariant &value)
{
    if (value.isNull())
        return {};
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    return value.toString();
}

QByteArray TextLine(const QList<OutputColumn> &columns, const QStringList &cells)
{
    QString line;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const OutputColumn &column = columns.at(i);
        // A row stays a row.
        const QString cell = Printable(cells.at(i)).replace(u'\n', u' ');
        line += column.isRight ? cell.rightJustified(column.width) : cell.leftJustified(column.width);
        line += QStringLiteral("  ");
    }
    while (line.endsWith(u' '))
        line.chop(1);
    return line.toUtf8() + '\n';
}

} // namespace

BatchOutput::BatchOutput(std::FILE *out, std::FILE *errors, Format format)
    : out_(out)
    , errors_(errors)
    , format_(format)
    , isTerminal_(IsTerminal(errors))
{
}

void BatchOutput::Print(const QByteArray &line)
{
    EndProgress();
    isBroken_ =
        isBroken_ ||
        std::fwrite(line.constData(), 1, std::size_t(line.size()), out_) != std::size_t(line.size()) ||
        std::fflush(out_) != 0;
}

void BatchOutput::Begin(const QString &type, const QList<OutputColumn> &columns)
{
    type_ = type;
    columns_ = columns;
    isHeadingDue_ = true;
}

void BatchOutput::PrintHeading()
{
    if (!std::exchange(isHeadingDue_, false) || format_ == Format::Json)
        return;
    QStringList headings;
    for (const OutputColumn &column : columns_)
        headings << (format_ == Format::Csv ? column.key : column.heading);
    Print(format_ == Format::Csv ? CsvLine(headings) : TextLine(columns_, headings));
}

void BatchOutput::Row(const QVariantList &values)
{
    PrintHeading();
    if (format_ == Format::Json) {
        QJsonObject object{{QStringLiteral("type"), type_}};
        for (qsizetype i = 0; i < columns_.size(); ++i)
            object.insert(columns_.at(i).key, QJsonValue::fromVariant(values.at(i)));
        Print(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
        return;
    }
    QStringList cells;
    for (const QVariant &value : values)
        cells << CellText(value);
    Print(format_ == Format::Csv ? CsvLine(cells) : TextLine(columns_, cells));
}

void BatchOutput::Say(const QString &sentence)
{
    if (isQuiet_)
        return;
    if (format_ == Format::Text)
        Print(Printable(sentence).toUtf8() + '\n');
    else
        Complain(sentence);
}

void BatchOutput::Complain(const QString &sentence)
{
    EndProgress();
    std::fputs((Printable(sentence).toUtf8() + '\n').constData(), errors_);
    std::fflush(errors_);
}

void BatchOutput::ShowProgress(const QString &line)
{
    if (!isTerminal_ || isQuiet_)
        return;
    std::fputs(("\r\x1b[K" + Printable(line).replace(u'\n', u' ').toUtf8()).constData(), errors_);
    std::fflush(errors_);
    isProgressShown_ = true;
}

void BatchOutput::EndProgress()
{
    if (!std::exchange(isProgressShown_, false))
        return;
    std::fputs("\r\x1b[K", errors_);
    std::fflush(errors_);
}

} // namespace quorvik
