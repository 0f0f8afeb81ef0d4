#include "history/forms/HistoryPages.h"

#include <QLocale>
#include <QPageLayout>
#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

constexpr double Margin = 12; ///< of the paper, in millimetres
constexpr double FontPoints = 7;
constexpr int DotsPerInch = 300;
constexpr double PointsPerInch = 72;
constexpr double GapPoints = 2; ///< between a text and the edges of its cell

/** Widths of the columns, as parts of a whole; in the order of the heads. */
constexpr std::array<double, 11> Parts = {15, 7, 9, 13, 6, 14, 8, 8, 11, 11, 14};

double InDots(double points)
{
    return points * DotsPerInch / PointsPerInch;
}

constexpr int WordWrap =
    int(Qt::AlignLeft) | int(Qt::AlignTop) | int(Qt::TextWordWrap) | int(Qt::TextWrapAnywhere);

QString Title()
{
    return QStringLiteral("History of Sarvex Parameters");
}

} // namespace

HistoryPages::HistoryPages(QIODevice &device, const HistoryReport &report)
    : report_(report)
    , writer_(&device)
{
    const bool isMetric = QLocale().measurementSystem() == QLocale::MetricSystem;
    writer_.setResolution(DotsPerInch);
    writer_.setPageLayout(QPageLayout(QPageSize(isMetric ? QPageSize::A4 : QPageSize::Letter),
                                      QPageLayout::Landscape, QMarginsF(Margin, Margin, Margin, Margin),
                                      QPageLayout::Millimeter));
    writer_.setTitle(Title());
    double whole = 0;
    for (const double part : Parts)
        whole += part;
    double left = 0;
    for (const double part : Parts) {
        lefts_.push_back(left);
        left += part / whole * writer_.width();
    }
    lefts_.push_back(left);
    plain_.setPointSizeF(FontPoints);
    bold_ = plain_;
    bold_.setBold(true);
    painter_.begin(&writer_);
    BeginPage();
}

HistoryPages::~HistoryPages()
{
    painter_.end();
}

double HistoryPages::RowsEnd() const
{
    // The page's number stands below.
    return writer_.height() - 2 * painter_.fontMetrics().height();
}

QRectF HistoryPages::Cell(int column, double top, double height) const
{
    const auto i = std::size_t(column);
    const double gap = InDots(GapPoints);
    return {lefts_[i] + gap, top + gap, lefts_[i + 1] - lefts_[i] - 2 * gap, height};
}

double HistoryPages::HeightOf(const QStringList &fields) const
{
    const QFontMetricsF metrics = QFontMetricsF(painter_.font(), painter_.device());
    double height = metrics.height();
    for (int column = 0; column < fields.size(); ++column) {
        // Most fit on a line, and that is known fast.
        const QRectF cell = Cell(column, 0, writer_.height());
        if (metrics.horizontalAdvance(fields[column]) > cell.width())
            height = std::max(height, metrics.boundingRect(cell, WordWrap, fields[column]).height());
    }
    return height + 2 * InDots(GapPoints);
}

double HistoryPages::DrawRow(const QStringList &fields, double top)
{
    const double bottom = top + std::min(HeightOf(fields), RowsEnd() - top);
    for (int column = 0; column < fields.size(); ++column)
        painter_.drawText(Cell(column, top, bottom - top), WordWrap, fields[column]);
    painter_.drawLine(QPointF(0, bottom), QPointF(lefts_.back(), bottom));
    return bottom;
}

void HistoryPages::DrawHeading()
{
    QFont title = bold_;
    title.setPointSizeF(FontPoints * 1.5);
    painter_.setFont(title);
    const double line = painter_.fontMetrics().height();
    painter_.drawText(QPointF(0, line), Title());
    top_ = line * 1.5;
    painter_.setFont(plain_);
    for (const QStringList &texts : HistoryHeading(report_)) {
        const QRectF room(0, top_, lefts_.back(), writer_.height());
        QRectF used;
        painter_.drawText(room, WordWrap, texts.join(QStringLiteral(": ")), &used);
        top_ = used.bottom();
    }
    top_ += InDots(FontPoints);
}

void HistoryPages::BeginPage()
{
    if (page_++ > 0)
        writer_.newPage();
    painter_.setPen(QPen(Qt::black, InDots(0.25)));
    painter_.setFont(plain_);
    const QRectF foot(0, 0, lefts_.back(), writer_.height());
    painter_.drawText(foot, int(Qt::AlignRight) | int(Qt::AlignBottom), QStringLiteral("Page %1").arg(page_));
    top_ = 0;
    if (page_ == 1)
        DrawHeading();
    painter_.setFont(bold_);
    top_ = DrawRow(HistoryHeads(), top_);
    painter_.setFont(plain_);
}

void HistoryPages::Add(const QStringList &fields)
{
    if (top_ + HeightOf(fields) > RowsEnd())
        BeginPage();
    top_ = DrawRow(fields, top_);
}

} // namespace quorvik
