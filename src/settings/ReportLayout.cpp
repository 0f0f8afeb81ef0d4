#include "settings/ReportLayout.h"

#include "model/Model.h"
#include "settings/LineWrap.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
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

    void PrintColumns(const ReportRow &row, ReportFont font = ReportFont::Body)
    {
        for (int column = 0; column < ReportColumns; ++column)
            Place(leftOffset_ + ColumnOffsets[std::size_t(column)], font, ReportField(row, column));
        y_ += metrics_.bodyLine;
    }

    QList<ReportPage> TakePages() { return std::move(pages_); }

private:
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

ReportContent DescribeReport(const Model &model, const QList<ReportRow> &rows)
{
    const QLocale locale;
    const QDateTime now = QDateTime::currentDateTime();
    return {QStringLiteral(QUORVIK_VERSION), locale.toString(now.date(), QLocale::ShortFormat),
            locale.toString(now.time(), LongTimeFormat(locale)), model.Notes, rows};
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
        pages.Print(line);
        // Notes of many short lines alone can run over the page.
        if (pages.IsFull())
            pages.NewPage();
    }
    pages.PrintRule();

    pages.PrintColumns(columnHeads, ReportFont::Underlined);
    for (const ReportRow &row : content.rows) {
        pages.PrintColumns(row);
        if (pages.IsFull()) {
            pages.NewPage();
            pages.PrintColumns(columnHeads, ReportFont::Underlined);
        }
    }
    return pages.TakePages();
}

} // namespace quorvik
