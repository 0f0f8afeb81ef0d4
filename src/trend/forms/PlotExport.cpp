#include "trend/forms/PlotExport.h"

#include "desktop/UsualPaper.h"
#include "platform/AtomicFile.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotCanvas.h"
#include "trend/forms/PlotColours.h"
#include "trend/forms/PlotCursors.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace quorvik
{

namespace
{

constexpr int LeastWidth = 900;
constexpr int LeastHeight = 420;
constexpr int Padding = 16;
constexpr int PngScale = 2;
constexpr int PaperMarginMm = 12;
constexpr int PdfDotsPerInch = 600;
constexpr int SwatchWidth = 28;
constexpr double TitleScale = 1.4;
constexpr int FigureColumns = 3; // A, B, and the time between them or nothing

/** The page is measured in pixels of the window: points would be of another size on each device. */
QFont InPixels(QFont font)
{
    font.setPixelSize(QFontInfo(font).pixelSize());
    return font;
}

/** The page that is written, measured in the pixels of the window. */
class Page
{
public:
    Page(PlotCanvas &canvas, const TrendView &view)
        : canvas_(canvas)
        , view_(view)
        , look_(PlotLook::OfPaper(InPixels(canvas.Board().Look().font)))
        , metrics_(look_.font)
        , plots_(std::max(canvas.width(), LeastWidth), std::max(canvas.height(), LeastHeight))
    {
        titleFont_ = look_.font;
        titleFont_.setBold(true);
        titleFont_.setPixelSize(int(titleFont_.pixelSize() * TitleScale));
        for (const TrendCurve &curve : view.Curves())
            if (curve.isVisible && view.Shown().TrackOf(curve.param) != nullptr)
                curves_.push_back(&curve);
    }

    QSize Size() const
    {
        return {plots_.width() + 2 * Padding, HeadHeight() + plots_.height() + FootHeight() + 2 * Padding};
    }

    QString Title() const
    {
        const QString &title = view_.Shown().head.title;
        return title.isEmpty() ? QStringLiteral("Trend") : title;
    }

    void Paint(QCPPainter &painter)
    {
        painter.setMode(QCPPainter::pmVectorized);
        painter.setMode(QCPPainter::pmNoCaching);
        painter.setMode(QCPPainter::pmNonCosmetic);
        painter.fillRect(QRect(QPoint(), Size()), Qt::white);
        painter.translate(Padding, Padding);
        PaintHead(painter);
        painter.translate(0, HeadHeight());
        PaintPlots(painter);
        painter.translate(0, plots_.height());
        PaintFoot(painter);
    }

private:
    int Line() const { return metrics_.height(); }
    int HeadHeight() const
    {
        return QFontMetrics(titleFont_).height() + int(Facts().size()) * Line() + Line() / 2;
    }
    int FootHeight() const { return Line() / 2 + (int(curves_.size()) + 1) * (Line() + 2); }

    QStringList Facts() const
    {
        const TrendHead &head = view_.Shown().head;
        QStringList facts;
        if (head.drive)
            facts.append(head.drive->Text());
        if (!head.setName.isEmpty())
            facts.append(QFileInfo(head.setName).fileName());
        return facts;
    }

    void PaintHead(QCPPainter &painter) const
    {
        painter.setPen(look_.text);
        painter.setFont(titleFont_);
        const QFontMetrics metrics(titleFont_);
        painter.drawText(0, metrics.ascent(), metrics.elidedText(Title(), Qt::ElideRight, plots_.width()));
        painter.setFont(look_.font);
        int y = metrics.height() + metrics_.ascent();
        for (const QString &fact : Facts()) {
            painter.drawText(0, y, metrics_.elidedText(fact, Qt::ElideMiddle, plots_.width()));
            y += Line();
        }
    }

    void PaintPlots(QCPPainter &painter)
    {
        PlotBoard &board = canvas_.Board();
        const PlotLook before = board.Look();
        board.SetLook(look_);
        board.Update(false);
        painter.save();
        canvas_.toPainter(&painter, plots_.width(), plots_.height());
        painter.setClipping(false);
        PaintCursors(painter, board, view_, -1);
        painter.restore();
        board.SetLook(before);
        canvas_.Redraw();
    }

    void PaintFoot(QCPPainter &painter) const
    {
        const int step = Line() + 2;
        const int column = plots_.width() / (FigureColumns + 3);
        const int nameWidth = plots_.width() - FigureColumns * column;
        int y = Line() / 2 + metrics_.ascent();
        painter.setAntialiasing(true);
        painter.setFont(look_.font);
        painter.setPen(look_.text);
        for (const int which : {0, 1})
            if (const QString time = CursorTime(view_, which); !time.isEmpty())
                painter.drawText(nameWidth + which * column, y,
                                 CursorLetter(which) + QStringLiteral(": ") + time);
        if (const QString distance = CursorDistance(view_); !distance.isEmpty())
            painter.drawText(nameWidth + 2 * column, y, QStringLiteral("A to B: ") + distance);
        for (const TrendCurve *const curve : curves_) {
            y += step;
            QPen pen = PlotPen(curve->colour, look_.ground);
            pen.setWidth(2);
            painter.setPen(pen);
            const int middle = y - metrics_.ascent() / 3;
            painter.drawLine(QLineF(0, middle, SwatchWidth, middle));
            painter.setPen(look_.text);
            const QString name = QStringLiteral("(%1) %2")
                                     .arg(curve->param)
                                     .arg(view_.Shown().TrackOf(curve->param)->channel.name);
            painter.drawText(SwatchWidth + Padding / 2, y,
                             metrics_.elidedText(name, Qt::ElideRight, nameWidth - SwatchWidth - Padding));
            for (const int which : {0, 1})
                painter.drawText(nameWidth + which * column, y, ValueAtCursor(view_, curve->param, which));
        }
    }

    PlotCanvas &canvas_;
    const TrendView &view_;
    PlotLook look_;
    QFontMetrics metrics_;
    QFont titleFont_;
    QSize plots_;
    std::vector<const TrendCurve *> curves_;
};

bool PaintOn(QPaintDevice &device, Page &page, double scale)
{
    QCPPainter painter;
    if (!painter.begin(&device))
        return false;
    painter.scale(scale, scale);
    page.Paint(painter);
    return painter.end();
}

bool MakePng(QBuffer &file, Page &page)
{
    QImage image(page.Size() * PngScale, QImage::Format_RGB32);
    return !image.isNull() && PaintOn(image, page, PngScale) && image.save(&file, "PNG");
}

bool MakeSvg(QBuffer &file, Page &page)
{
    QSvgGenerator writer;
    writer.setOutputDevice(&file);
    writer.setSize(page.Size());
    writer.setViewBox(QRect(QPoint(), page.Size()));
    writer.setTitle(page.Title());
    return PaintOn(writer, page, 1);
}

bool MakePdf(QBuffer &file, Page &page)
{
    QPdfWriter writer(&file);
    writer.setTitle(page.Title());
    writer.setResolution(PdfDotsPerInch);
    writer.setPageSize(UsualPaper());
    writer.setPageOrientation(QPageLayout::Landscape);
    writer.setPageMargins(QMarginsF(PaperMarginMm, PaperMarginMm, PaperMarginMm, PaperMarginMm),
                          QPageLayout::Millimeter);
    const double scale = std::min(double(writer.width()) / page.Size().width(),
                                  double(writer.height()) / page.Size().height());
    return PaintOn(writer, page, scale);
}

} // namespace

QString ExportPlots(const QString &path, PlotCanvas &canvas, const TrendView &view)
{
    Page page(canvas, view);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    const QString suffix = QFileInfo(path).suffix().toLower();
    bool isMade = false;
    if (suffix == QStringLiteral("svg"))
        isMade = MakeSvg(file, page);
    else if (suffix == QStringLiteral("pdf"))
        isMade = MakePdf(file, page);
    else if (suffix == QStringLiteral("png"))
        isMade = MakePng(file, page);
    else
        return QStringLiteral("A picture is written as .png, .svg or .pdf.");
    if (!isMade)
        return QStringLiteral("The picture could not be made.");
    return AtomicFile::Write(path, file.data());
}

} // namespace quorvik
