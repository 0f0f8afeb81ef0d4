#include "generator/PageWriter.h"

#include "find/HelpWords.h"
#include "model/Conversions.h"
#include "model/Document.h"
#include "model/Faults.h"
#include "model/ParameterTable.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <algorithm>
#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

namespace quorvik::help
{

namespace
{

const QString &PageFrame()
{
    static const QString frame =
        QStringLiteral("<html><head><meta charset=\"utf-8\"><title>%1</title><style>"
                       "body{font-family:sans-serif;margin:12px} h1{font-size:x-large} h2{font-size:large} "
                       "table{margin-top:8px;margin-bottom:8px} "
                       "th{text-align:left;background-color:#dfe6ea;color:#000000} td,th{padding:3px 8px}"
                       "</style></head><body>%2</body></html>\n");
    return frame;
}

/** Markdown with tables to the inside of an HTML body. */
QString ToHtml(const QString &markdown)
{
    cmark_gfm_core_extensions_ensure_registered();
    cmark_parser *parser = cmark_parser_new(CMARK_OPT_UNSAFE);
    cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension("table"));
    const QByteArray utf8 = markdown.toUtf8();
    cmark_parser_feed(parser, utf8.constData(), std::size_t(utf8.size()));
    cmark_node *document = cmark_parser_finish(parser);
    char *html = cmark_render_html(document, CMARK_OPT_UNSAFE, cmark_parser_get_syntax_extensions(parser));
    const QString result = QString::fromUtf8(html);
    std::free(html);
    cmark_node_free(document);
    cmark_parser_free(parser);
    // The viewer draws a table's lines only where the table asks for them.
    return QString(result).replace(QStringLiteral("<table>"),
                                   QStringLiteral("<table border=\"1\" cellspacing=\"0\">"));
}

QString AccessWords(std::int32_t attributes)
{
    if (attributes & Attr::ReadOnly)
        return QStringLiteral("read only");
    return attributes & Attr::Icr ? QStringLiteral("at stop only") : QStringLiteral("read/write");
}

/** What a parameter does cannot be told in the words of its name alone. Words that begin alike count as one
 * word. */
bool RepeatsName(const QString &meaning, const QString &name)
{
    constexpr int fewestOwnWords = 3;
    constexpr int fewestLetters = 4; // shorter ones join words and tell nothing
    constexpr int stem = 4;
    const QStringList nameWords = HelpWords::Essence(name).split(u' ', Qt::SkipEmptyParts);
    const QStringList words = HelpWords::Essence(meaning).split(u' ', Qt::SkipEmptyParts);
    return std::ranges::count_if(words, [&nameWords](const QString &word) {
               return word.size() >= fewestLetters &&
                      std::ranges::none_of(
                          nameWords, [&word](const QString &of) { return word.startsWith(of.left(stem)); });
           }) < fewestOwnWords;
}

} // namespace

PageWriter::PageWriter(const ParameterTable &table, const Topics &topics, QString pictureFolder,
                       QString outFolder)
    : table_(table)
    , topics_(topics)
    , pictureFolder_(std::move(pictureFolder))
    , outFolder_(std::move(outFolder))
{
}

void PageWriter::SetChanges(const QString &changes)
{
    const QString heading = QStringLiteral("\n## ");
    const qsizetype first = changes.indexOf(heading);
    if (first < 0)
        return;
    const qsizetype text = changes.indexOf(u'\n', first + heading.size()) + 1;
    const qsizetype next = changes.indexOf(heading, text);
    changes_ = changes.mid(text, next < 0 ? -1 : next - text);
    // On a page of its own they stand a step higher.
    changes_.replace(QStringLiteral("\n### "), QStringLiteral("\n## "));
}

void PageWriter::WriteAll(QStringList &problems)
{
    QDir().mkpath(outFolder_);
    for (const Topic &topic : topics_.All()) {
        const QString body = ToHtml(Expand(topic, problems));
        CheckLinks(body, topic.name, problems);
        QFile file(outFolder_ + u'/' + topic.name);
        const QByteArray html = PageFrame().arg(topic.title.toHtmlEscaped(), body).toUtf8();
        if (!file.open(QIODevice::WriteOnly) || file.write(html) != html.size())
            problems.append(file.fileName() + QStringLiteral(": ") + file.errorString());
        files_.append(topic.name);
    }
}

QString PageWriter::Expand(const Topic &topic, QStringList &problems)
{
    static const QRegularExpression picture(QStringLiteral("^( *)!\\[(.*)\\]\\(picture:(.*)\\)\\s*$"));
    QStringList result;
    bool inRows = false;
    const QStringList lines = topic.markdown.split(u'\n');
    for (const QString &line : lines) {
        const bool isRow = line.startsWith(u'@');
        if (isRow && !inRows) {
            result.append({QString(), QStringLiteral("| Parameter | Range | Factory | Access | Meaning |"),
                           QStringLiteral("|---|---|---|---|---|")});
        }
        inRows = isRow;
        const QRegularExpressionMatch match = picture.match(line);
        if (isRow)
            result.append(ParameterRow(line, topic.name, problems));
        else if (match.hasMatch())
            // Indented, it belongs to the step of a list above it.
            result.append(u'\n' + match.captured(1) +
                          Picture(match.captured(3), match.captured(2), topic.name, problems));
        else if (line.contains(QStringLiteral("](picture:")))
            problems.append(topic.name + QStringLiteral(": a picture stands alone in its line: ") + line);
        else if (line.trimmed() == QStringLiteral("{{parameters}}"))
            result.append(TableOfParameters());
        else if (line.trimmed() == QStringLiteral("{{faults}}"))
            result.append(SectionsOfFaults());
        else if (line.trimmed() == QStringLiteral("{{changes}}"))
            result.append(changes_);
        else
            result.append(line);
    }
    return result.join(u'\n');
}

QString PageWriter::ParameterRow(const QString &line, const QString &topic, QStringList &problems) const
{
    static const QRegularExpression form(QStringLiteral("^@(\\d+)(?:\\.\\.(\\d+))? +(\\S.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    const int first = match.captured(1).toInt();
    const int last = match.captured(2).isEmpty() ? first : match.captured(2).toInt();
    if (!match.hasMatch() || last < first || last > table_.UpperBound()) {
        problems.append(topic + QStringLiteral(": no row of a parameter: ") + line);
        return {};
    }
    const ParamRecord &record = table_[first];
    if (RepeatsName(match.captured(3), record.Name))
        problems.append(topic + QStringLiteral(": the row of (%1) says no more than its name: ").arg(first) +
                        line);
    const QString numbers =
        last == first ? QStringLiteral("(%1)").arg(first) : QStringLiteral("(%1 to %2)").arg(first).arg(last);
    return QStringLiteral("| %1 %2 | %3 | %4 | %5 | %6 |")
        .arg(numbers, record.Name, LimitsText(record), ValueText(record.Preset, record.Attributes),
             AccessWords(record.Attributes), match.captured(3));
}

QString PageWriter::TableOfParameters() const
{
    QStringList rows = {QString(), QStringLiteral("| Number | Name | Range | Factory | Access |"),
                        QStringLiteral("|---|---|---|---|---|")};
    for (int p = 0; p <= table_.FileLastParam; ++p) {
        const ParamRecord &record = table_[p];
        rows.append(QStringLiteral("| %1 | %2 | %3 | %4 | %5 |")
                        .arg(QString::number(p), record.Name, LimitsText(record),
                             ValueText(record.Preset, record.Attributes), AccessWords(record.Attributes)));
    }
    return rows.join(u'\n');
}

QString PageWriter::SectionsOfFaults()
{
    QString sections;
    for (const Fault &fault : AllFaults()) {
        sections += QStringLiteral("\n## %1\n\n%2\n\nLikely causes, the likeliest first:\n\n")
                        .arg(fault.name, fault.meaning);
        int number = 0;
        for (const QString &cause : fault.causes)
            sections += QStringLiteral("%1. %2\n").arg(++number).arg(cause);
        QStringList links;
        for (const QString &topic : fault.topics)
            links.append(QStringLiteral("[%1](%2.htm)")
                             .arg(topic, QString(topic).replace(u' ', QStringLiteral("%20"))));
        sections += QStringLiteral("\nWhat to check: %1\n\nWhere to look: %2.\n")
                        .arg(fault.check, links.join(QStringLiteral(", then ")));
    }
    return sections;
}

QString PageWriter::Picture(const QString &name, const QString &caption, const QString &topic,
                            QStringList &problems)
{
    const QString file = name + QStringLiteral(".png");
    const QString source = pictureFolder_ + u'/' + file;
    if (!QFile::exists(source)) {
        problems.append(topic + QStringLiteral(": there is no picture of ") + name);
        return {};
    }
    if (!pictures_.contains(file)) {
        pictures_.insert(file);
        files_.append(file);
        QFile::remove(outFolder_ + u'/' + file);
        QFile::copy(source, outFolder_ + u'/' + file);
    }
    return QStringLiteral("<p><img src=\"%1\" alt=\"%2\"></p>\n").arg(file, caption.toHtmlEscaped());
}

void PageWriter::CheckLinks(const QString &html, const QString &topic, QStringList &problems) const
{
    static const QRegularExpression link(QStringLiteral("href=\"([^\"#]+)"));
    QRegularExpressionMatchIterator matches = link.globalMatch(html);
    while (matches.hasNext()) {
        const QString target =
            QString::fromUtf8(QByteArray::fromPercentEncoding(matches.next().captured(1).toUtf8()));
        if (!topics_.All().contains(target))
            problems.append(topic + QStringLiteral(": the link to \"%1\" leads nowhere").arg(target));
    }
}

} // namespace quorvik::help
