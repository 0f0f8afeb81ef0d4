#pragma once

#include "report/CommissioningReport.h"

#include <QPageLayout>
#include <memory>
#include <vector>

class QPagedPaintDevice;
class QPaintDevice;
class QPainter;
class QTextDocument;

namespace quorvik
{

class MapPicture;
class ParameterTable;

/** A commissioning report on paper: the same pages for a printer, a preview and a PDF. Paper is white and
 * text is black, whatever the desktop's colours are. */
class ReportPages
{
public:
    /** @param like gives the factory table, for the map. @param paper A4 or Letter. */
    ReportPages(const CommissioningReport &report, const ParameterTable &like, QPageSize::PageSizeId paper);
    ~ReportPages();
    ReportPages(const ReportPages &) = delete;
    ReportPages &operator=(const ReportPages &) = delete;

    /** Paper, orientation and margins; a printer is to be set to it before Print(). */
    QPageLayout Layout() const { return layout_; }
    /** For the title of a document and the name of a file: "Commissioning Report pump". */
    QString Title() const;
    /** How many pages there are; before the first Print() it is worked out for a resolution of 300. */
    int PageCount();
    /** Draws all pages; the device stands at its first one, and is set to Layout(). */
    void Print(QPagedPaintDevice &device);
    /** Writes them as a PDF file, whole or not at all. @return empty, or why it was not written. */
    QString WritePdf(const QString &path);

private:
    /** A part of the report that begins on a page of its own. */
    struct Part {
        std::unique_ptr<QTextDocument> text; ///< none for the map
        int pages = 1;
    };

    void LayOut(QPaintDevice &device);
    void PaintMap(QPainter &painter, const QSizeF &room) const;
    void PaintFoot(QPainter &painter, int page) const;

    CommissioningReport report_;
    QPageLayout layout_;
    std::vector<Part> parts_;
    std::unique_ptr<MapPicture> map_;
    int pageCount_ = 0;
};

} // namespace quorvik
