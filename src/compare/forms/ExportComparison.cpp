#include "compare/forms/ExportComparison.h"

#include "desktop/UsualPaper.h"
#include "platform/AtomicFile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPageLayout>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

namespace quorvik
{

namespace
{

constexpr double Margin = 12; ///< of the paper, in millimetres
constexpr int FontPoints = 8;
constexpr double CellPadding = 2;

void AddRow(QTextTable *table, int row, const QStringList &texts, const QTextCharFormat &format)
{
    for (int column = 0; column < texts.size(); ++column)
        table->cellAt(row, column).firstCursorPosition().insertText(texts[column], format);
}

/** The title, what was compared, and the rows under heads that come again on each page. */
void Fill(QTextDocument &document, const CompareReport &report)
{
    QTextCursor cursor(&document);
    QTextCharFormat plain;
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    QTextCharFormat title = bold;
    title.setFontPointSize(FontPoints * 1.5);
    cursor.insertText(QStringLiteral("Comparison of Sarvex Parameters"), title);
    for (const QStringList &line : ReportHeading(report)) {
        cursor.insertBlock();
        cursor.insertText(line.first() + QStringLiteral(": "), bold);
        cursor.insertText(line.mid(1).join(QStringLiteral("; ")), plain);
    }
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("Rows: %1").arg(report.rows.size()), plain);

    const QStringList heads = ReportHeads(report);
    QTextTableFormat form;
    form.setHeaderRowCount(1);
    form.setCellPadding(CellPadding);
    form.setCellSpacing(0);
    form.setBorderCollapse(true);
    form.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    QTextTable *table = cursor.insertTable(int(report.rows.size()) + 1, int(heads.size()), form);
    AddRow(table, 0, heads, bold);
    for (std::size_t i = 0; i < report.rows.size(); ++i)
        AddRow(table, int(i) + 1, ReportFields(report.rows[i]), plain);
}

QByteArray AsPdf(const CompareReport &report)
{
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    QPdfWriter writer(&pdf);
    writer.setPageLayout(QPageLayout(UsualPaper(), QPageLayout::Landscape,
                                     QMarginsF(Margin, Margin, Margin, Margin), QPageLayout::Millimeter));
    writer.setTitle(QStringLiteral("Comparison of Sarvex Parameters"));
    QTextDocument document;
    QFont font = document.defaultFont();
    font.setPointSize(FontPoints);
    document.setDefaultFont(font);
    Fill(document, report);
    document.print(&writer);
    return pdf.data();
}

} // namespace

QString ExportComparison(const QString &path, const CompareReport &report)
{
    const bool isPdf = QFileInfo(path).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) == 0;
    return AtomicFile::Write(path, isPdf ? AsPdf(report) : ReportAsCsv(report));
}

} // namespace quorvik
