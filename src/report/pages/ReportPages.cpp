#include "report/pages/ReportPages.h"

#include "map/MapPicture.h"
#include "model/PathFunctions.h"
#include "platform/AtomicFile.h"
#include "report/pages/ReportHtml.h"
#include "trend/TrendStore.h"
#include "trend/forms/RecordingPicture.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double MarginMm = 15;
constexpr double FootMm = 10; ///< of the page, for its number and the line above it
constexpr double HeadingMm = 12;
constexpr int PdfDotsPerInch = 600;
constexpr double MmPerInch = 25.4;
constexpr double PixelsPerInch = 96; ///< of pictures in rich text
constexpr double TextPoints = 9;
constexpr double FootPoints = 7.5;
constexpr double LeastMapPoints = 5; ///< of the map's texts; below it the map is turned
constexpr double PointsPerInch = 72;
constexpr double CellPadding = 3; ///< of a row that stands as it comes, in pixels, as its rich text says

double InDots(const QPaintDevice &device, double mm)
{
    return mm * device.logicalDpiX() / MmPerInch;
}

QFont TextFont(double points)
{
    QFont font(QStringLiteral("sans-serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(points);
    // With a trace of spacing no letters are joined to one sign, which a search in the PDF would not find.
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.05);
    return font;
}

/** The set of a report as a table: of what is not known, nothing is taken for a link. */
ParameterTable TableOfReport(const CommissioningReport &report, const ParameterTable &like)
{
    ParameterTable table(like);
    for (int p = 0; p <= table.UpperBound(); ++p) {
        const auto known = report.rawValues.find(p);
        table.Row(p).Value = known == report.rawValues.end() ? 0 : known->second;
    }
    return table;
}

std::unique_ptr<QTextDocument> MakeDocument(const QString &html)
{
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(TextFont(TextPoints));
    document->setDocumentMargin(0);
    document->setDefaultStyleSheet(
        QStringLiteral("h1{font-size:18pt} h2{font-size:12pt; margin-top:14px; margin-bottom:4px} "
                       "h3{font-size:10pt; margin-top:10px; margin-bottom:2px} body{color:#000000}"));
    QTextOption option = document->defaultTextOption();
    option.setWrapMode(QTextOption::WordWrap);
    document->setDefaultTextOption(option);
    document->setHtml(html);
    return document;
}

/** The place of a row's text in the document, in dots. */
QRectF RowPlace(const QTextDocument &document, const QTextTable &table, int row)
{
    QRectF place;
    for (int column = 0; column < table.columns(); ++column) {
        const QTextTableCell cell = table.cellAt(row, column);
        for (QTextBlock block = cell.firstCursorPosition().block();
             block.isValid() && block.position() <= cell.lastPosition(); block = block.next())
            place |= document.documentLayout()->blockBoundingRect(block);
    }
    return place;
}

void PadRow(const QTextTable &table, int row, double pixels)
{
    // The table is laid out once, and not for each cell.
    QTextCursor edit = table.cellAt(row, 0).firstCursorPosition();
    edit.beginEditBlock();
    for (int column = 0; column < table.columns(); ++column) {
        QTextTableCell cell = table.cellAt(row, column);
        QTextTableCellFormat format = cell.format().toTableCellFormat();
        format.setTopPadding(pixels);
        cell.setFormat(format);
    }
    edit.endEditBlock();
}

/** A row of several lines that the end of a page would tear goes to the next page as a whole. */
void KeepRowsWhole(QTextDocument &document, double pixelsPerDot)
{
    const double height = document.pageSize().height();
    for (const QTextFrame *frame : document.rootFrame()->childFrames()) {
        const auto *table = qobject_cast<const QTextTable *>(frame);
        if (!table || table->format().headerRowCount() == 0)
            continue;
        // What an earlier layout needed counts for that alone.
        for (int row = 1; row < table->rows(); ++row)
            if (table->cellAt(row, 0).format().toTableCellFormat().topPadding() > CellPadding)
                PadRow(*table, row, CellPadding);
        for (int row = 1; row < table->rows(); ++row) {
            const QRectF place = RowPlace(document, *table, row);
            const double end = (std::floor(place.top() / height) + 1) * height;
            if (place.bottom() > end && place.height() < height / 2)
                PadRow(*table, row, CellPadding + (end - place.top()) * pixelsPerDot);
        }
    }
}

} // namespace

ReportPages::ReportPages(const CommissioningReport &report, const ParameterTable &like,
                         QPageSize::PageSizeId paper)
    : report_(report)
    , layout_(QPageSize(paper), QPageLayout::Portrait, QMarginsF(MarginMm, MarginMm, MarginMm, MarginMm),
              QPageLayout::Millimeter)
{
    if (!report_.rawValues.empty())
        map_ = std::make_unique<MapPicture>(TableOfReport(report_, like));

    // Read here alone, so that printing anew needs no file.
    TrendStore store{QString()};
    ParameterTable table(like);
    std::vector<std::pair<QString, QImage>> pictures;
    const auto picture = [&](const CommissioningRecording &recording) {
        QString failure;
        const TrendDataPtr data = store.Load(recording.path, &failure);
        QImage image = data ? PictureOf(data, table) : QImage();
        if (image.isNull())
            return QString();
        QString address = QStringLiteral("recording:%1").arg(pictures.size());
        pictures.emplace_back(address, std::move(image));
        return address;
    };
    const double width = layout_.paintRect(QPageLayout::Millimeter).width() / MmPerInch * PixelsPerInch;
    const QString back = BackHtml(report_, picture, int(width));

    parts_.push_back({MakeDocument(FrontHtml(report_, QStringLiteral("Commissioning report")))});
    parts_.push_back({});
    parts_.push_back({MakeDocument({})});
    QTextDocument &rest = *parts_.back().text;
    for (const auto &[address, image] : pictures)
        rest.addResource(QTextDocument::ImageResource, QUrl(address), image);
    rest.setHtml(back);
}

ReportPages::~ReportPages() = default;

QString ReportPages::Title() const
{
    return QStringLiteral("Commissioning Report ") + QFileInfo(report_.setName).completeBaseName();
}

void ReportPages::LayOut(QPaintDevice &device)
{
    const QRectF room = layout_.paintRect(QPageLayout::Millimeter);
    const QSizeF page(InDots(device, room.width()), InDots(device, room.height() - FootMm));
    pageCount_ = 0;
    for (Part &part : parts_) {
        if (part.text) {
            part.text->documentLayout()->setPaintDevice(&device);
            part.text->setPageSize(page);
            KeepRowsWhole(*part.text, PixelsPerInch / device.logicalDpiY());
            part.pages = part.text->pageCount();
        }
        pageCount_ += part.pages;
    }
}

int ReportPages::PageCount()
{
    if (pageCount_ == 0) {
        QBuffer nowhere;
        nowhere.open(QIODevice::WriteOnly);
        QPdfWriter writer(&nowhere);
        writer.setPageLayout(layout_);
        LayOut(writer);
    }
    return pageCount_;
}

void ReportPages::PaintMap(QPainter &painter, const QSizeF &room) const
{
    const double dotsPerMm = painter.device()->logicalDpiX() / MmPerInch;
    QFont font = TextFont(TextPoints * 1.3);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRectF(0, 0, room.width(), HeadingMm * dotsPerMm), Qt::AlignLeft | Qt::AlignTop,
                     QStringLiteral("Links in force and the blocks that they use"));
    const QRectF place(0, HeadingMm * dotsPerMm, room.width(), room.height() - HeadingMm * dotsPerMm);
    if (!map_) {
        painter.setFont(TextFont(TextPoints));
        painter.drawText(place, int(Qt::AlignLeft) | int(Qt::AlignTop) | int(Qt::TextWordWrap),
                         QStringLiteral("Nothing is known of the links of this set."));
        return;
    }
    const QSizeF map = map_->Size();
    const double upright = std::min(place.width() / map.width(), place.height() / map.height());
    const double turned = std::min(place.width() / map.height(), place.height() / map.width());
    const double points = QFontInfo(MapPainter::TextFont(font)).pixelSize() * upright * PointsPerInch /
                          painter.device()->logicalDpiY();
    const bool isTurned = points < LeastMapPoints && turned > upright;
    const double scale = isTurned ? turned : upright;
    painter.save();
    painter.translate(place.topLeft());
    if (isTurned) {
        painter.translate(0, map.width() * scale);
        painter.rotate(-90);
    }
    painter.scale(scale, scale);
    painter.setFont(TextFont(TextPoints));
    map_->Paint(painter);
    painter.restore();
}

void ReportPages::PaintFoot(QPainter &painter, int page) const
{
    const QPaintDevice &device = *painter.device();
    const QRectF room = layout_.paintRect(QPageLayout::Millimeter);
    const double width = InDots(device, room.width());
    const double bottom = InDots(device, room.height());
    const double height = InDots(device, FootMm / 2);
    painter.setFont(TextFont(FootPoints));
    painter.setPen(QPen(Qt::black, InDots(device, 0.1)));
    const QRectF line(0, bottom - height, width, height);
    painter.drawLine(line.topLeft(), line.topRight());
    painter.drawText(line, Qt::AlignRight | Qt::AlignBottom,
                     QStringLiteral("Page %1 of %2").arg(page).arg(pageCount_));
    const QString facts = report_.setName + QStringLiteral(", ") + report_.made;
    painter.drawText(
        line, Qt::AlignLeft | Qt::AlignBottom,
        QFontMetricsF(painter.font(), painter.device()).elidedText(facts, Qt::ElideMiddle, width * 3 / 4));
}

void ReportPages::Print(QPagedPaintDevice &device)
{
    LayOut(device);
    QPainter painter(&device);
    int page = 0;
    for (const Part &part : parts_)
        for (int ofPart = 0; ofPart < part.pages; ++ofPart) {
            if (page++ > 0)
                device.newPage();
            if (part.text) {
                const QSizeF size = part.text->pageSize();
                QAbstractTextDocumentLayout::PaintContext context;
                context.palette.setColor(QPalette::Text, Qt::black);
                context.clip = QRectF(QPointF(0, ofPart * size.height()), size);
                painter.save();
                painter.translate(0, -context.clip.top());
                painter.setClipRect(context.clip);
                part.text->documentLayout()->draw(&painter, context);
                painter.restore();
            } else {
                const QRectF room = layout_.paintRect(QPageLayout::Millimeter);
                PaintMap(painter, {InDots(device, room.width()), InDots(device, room.height() - FootMm)});
            }
            PaintFoot(painter, page);
        }
}

QString ReportPages::WritePdf(const QString &path)
{
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setResolution(PdfDotsPerInch);
        writer.setPageLayout(layout_);
        writer.setTitle(Title());
        writer.setCreator(report_.program);
        Print(writer);
    }
    return AtomicFile::Write(path, pdf.data());
}

} // namespace quorvik
