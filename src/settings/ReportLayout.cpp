#include "settings/ReportLayout.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "settings/LineWrap.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

constexpr double PageWidth = 8.5;
constexpr double PageHeight = 11;
constexpr double EdgeAllowance = 0.01;
constexpr double RightInset = 0.5;
constexpr double BottomInset = 1;
constexpr int NotesLineLength = 77;
constexpr double ColumnGap = 0.05;
constexpr std::array<double, ReportColumns> ColumnOffsets = {0, 1, 5, 6};

/** The locale's long time with seconds, without the time zone that some locales put behind it. */
QString LongTimeFormat(const QLocale &locale)
{
    static const QRegularExpression zone(QStringLiteral("\\s*\\(?\\bt+\\b\\)?"));
    return locale.timeFormat(QLocale::LongFormat).remove(zone);
}

/** Half of what the page lacks to the size it is assumed to have, and never outside the printable area. */
double OffsetFor(double assumed, double scale)
{
    return std::max((assumed - scale) / 2, 0.0) + EdgeAllowance;
}

/** Fills pages from top to bottom. */
class PageFiller
{
public:
    explicit PageFiller(const ReportMetrics &metrics)
        : metrics_(metrics)
        , leftOffset_(OffsetFor(PageWidth, metrics.scaleWidth))
        , topOffset_(OffsetFor(PageHeight, metrics.scaleHeight))
        , rightEdge_(std::min(PageWidth - leftOffset_ - RightInset, metrics.scaleWidth))
        // A line is begun at the limit at the lowest, so it must fit below it.
        , bottomLimit_(
              std::min(PageHeight - topOffset_ - BottomInset, metrics.scaleHeight - metrics.bodyLine))
    {
        NewPage();
    }

    void NewPage()
    {
        pages_.append(ReportPage{});
        y_ = topOffset_;
        const QString head = QStringLiteral("Page %1").arg(pages_.size());
        Place(rightEdge_ - metrics_.BodyWidth(head), ReportFont::Body, head);
        y_ += metrics_.bodyLine;
    }

    bool IsFull() const { return y_ > bottomLimit_; }

    void Print(const QString &text, ReportFont font = ReportFont::Body)
    {
        Place(leftOffset_, font, text);
        y_ += font == ReportFont::Title ? metrics_.titleLine : metrics_.bodyLine;
    }

    void PrintRule()
    {
        const double half = metrics_.bodyLine / 2;
        pages_.last().rules.append({leftOffset_, rightEdge_, y_ + half});
        y_ += 2 * half;
    }

    /** Prints a text in as many lines as it needs to stay on the paper. */
    void PrintBroken(const QString &text)
    {
        for (const QString &line : Broken(text, rightEdge_ - leftOffset_))
            Print(line);
    }

    /** Prints a row, in as many lines as its widest text needs in its column. */
    void PrintColumns(const ReportRow &row, ReportFont font = ReportFont::Body)
    {
        const double top = y_;
        for (int column = 0; column < ReportColumns; ++column) {
            double y = top;
            for (const QString &line : Broken(ReportField(row, column), WidthOf(column))) {
                pages_.last().texts.append({LeftOf(column), y, font, line});
                y += metrics_.bodyLine;
            }
            y_ = std::max(y_, y);
        }
    }

    /** Whether a row of several lines still fits on the page; one of a single line always does. */
    bool HasRoomFor(const ReportRow &row) const
    {
        qsizetype lines = 1;
        for (int column = 0; column < ReportColumns; ++column)
            lines = std::max(lines, Broken(ReportField(row, column), WidthOf(column)).size());
        return lines == 1 || y_ + double(lines) * metrics_.bodyLine <= metrics_.scaleHeight;
    }

    QList<ReportPage> TakePages() { return std::move(pages_); }

private:
    double LeftOf(int column) const { return leftOffset_ + ColumnOffsets[std::size_t(column)]; }
    double WidthOf(int column) const
    {
        const double right =
            column + 1 < ReportColumns ? LeftOf(column + 1) - ColumnGap : metrics_.scaleWidth;
        return right - LeftOf(column);
    }

    /** The text in pieces of at most that width, never torn inside a character; at least one. */
    QStringList Broken(QString text, double width) const
    {
        QStringList lines;
        while (metrics_.BodyWidth(text) > width) {
            QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
            qsizetype fitting = characters.toNextBoundary();
            for (qsizetype next = fitting; next > 0 && metrics_.BodyWidth(text.left(next)) <= width;
                 next = characters.toNextBoundary())
                fitting = next;
            if (fitting <= 0 || fitting >= text.size())
                break;
            lines.append(text.left(fitting));
            text.remove(0, fitting);
        }
        lines.append(text);
        return lines;
    }

    void Place(double x, ReportFont font, const QString &text)
    {
        pages_.last().texts.append({x, y_, font, text});
    }

    const ReportMetrics &metrics_;
    double leftOffset_;
    double topOffset_;
    double rightEdge_;
    double bottomLimit_;
    double y_ = 0;
    QList<ReportPage> pages_;
};

} // namespace

ReportContent DescribeReport(const Document &document, const QList<ReportRow> &rows)
{
    const QLocale locale;
    const QDateTime now = QDateTime::currentDateTime();
    return {QStringLiteral(QUORVIK_VERSION), locale.toString(now.date(), QLocale::ShortFormat),
            locale.toString(now.time(), LongTimeFormat(locale)), document.Notes, rows};
}

QList<ReportPage> LayOutReport(const ReportContent &content, const ReportMetrics &metrics)
{
    static const ReportRow columnHeads{QStringLiteral("Tag"), QStringLiteral("Parameter Name"),
                                       QStringLiteral("Preset"), QStringLiteral("Value")};
    PageFiller pages(metrics);
    pages.Print(QStringLiteral("Sarvex Parameters"), ReportFont::Title);
    pages.Print(QStringLiteral("Quorvik Version: ") + content.versionText, ReportFont::Title);
    pages.Print(content.dateText, ReportFont::Title);
    pages.Print(content.timeText, ReportFont::Title);

    pages.Print(QStringLiteral("Notes:"), ReportFont::Underlined);
    for (const QString &line : WrapNotes(content.notes, NotesLineLength)) {
        pages.PrintBroken(line);
        // Notes of many short lines alone can run over the page.
        if (pages.IsFull())
            pages.NewPage();
    }
    pages.PrintRule();

    const auto beginPage = [&pages] {
        pages.NewPage();
        pages.PrintColumns(columnHeads, ReportFont::Underlined);
    };
    pages.PrintColumns(columnHeads, ReportFont::Underlined);
    for (const ReportRow &row : content.rows) {
        if (!pages.HasRoomFor(row))
            beginPage();
        pages.PrintColumns(row);
        if (pages.IsFull())
            beginPage();
    }
    return pages.TakePages();
}

} // namespace quorvik
