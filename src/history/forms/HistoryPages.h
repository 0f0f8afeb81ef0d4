#pragma once

#include "history/HistoryReport.h"

#include <QFont>
#include <QPainter>
#include <QPdfWriter>
#include <vector>

class QIODevice;

namespace quorvik
{

/** The history on pages of a PDF document, each with its heads and its number. A row goes out as it comes, so
 * that the number of rows does not matter. */
class HistoryPages
{
public:
    HistoryPages(QIODevice &device, const HistoryReport &report);
    ~HistoryPages();
    HistoryPages(const HistoryPages &) = delete;
    HistoryPages &operator=(const HistoryPages &) = delete;

    void Add(const QStringList &fields);

private:
    void BeginPage();
    void DrawHeading();
    /** @return where the next one begins. */
    double DrawRow(const QStringList &fields, double top);
    double HeightOf(const QStringList &fields) const;
    double RowsEnd() const;
    /** The field's part of the page. */
    QRectF Cell(int column, double top, double height) const;

    const HistoryReport report_;
    QPdfWriter writer_;
    QPainter painter_;
    QFont plain_;
    QFont bold_;
    std::vector<double> lefts_; ///< of the columns, and of the right edge
    int page_ = 0;
    double top_ = 0; ///< of the next row
};

} // namespace quorvik
