// The map on paper: printer and PDF file.

#include "desktop/SaveDialog.h"
#include "desktop/UsualPaper.h"
#include "map/FormMap.h"
#include "map/MapView.h"
#include "model/Document.h"
#include "model/PathFunctions.h"
#include "model/ShownText.h"
#include "platform/Asker.h"
#include "platform/AtomicFile.h"

#include <QBuffer>
#include <QFileDialog>
#include <QLabel>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace quorvik
{

namespace
{

constexpr double MarginMm = 10; ///< of the paper
constexpr double TitleHeight = 30;
constexpr double TitlePixels = 16;

} // namespace

void FormMap::PaintPage(QPagedPaintDevice &device) const
{
    QPainter painter(&device);
    const QSizeF map = view_->Layout().Size() + QSizeF(0, TitleHeight);
    const double scale =
        std::min(painter.viewport().width() / map.width(), painter.viewport().height() / map.height());
    painter.scale(scale, scale);
    QFont title = font();
    title.setPixelSize(int(TitlePixels));
    title.setBold(true);
    painter.setFont(title);
    painter.setPen(Qt::black);
    const QRectF line(0, 0, map.width(), TitleHeight);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, windowTitle());
    painter.setFont(MapPainter::TextFont(font()));
    const QStringList facts{
        ShownText(desk().table.Value(Param::DriveModel), desk().table[Param::DriveModel].Attributes),
        desk().document.Title(), desk().Now().toString(QStringLiteral("yyyy-MM-dd HH:mm"))};
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, facts.join(QStringLiteral(", ")));
    painter.translate(0, TitleHeight);
    MapPainter(model_, view_->Layout())
        .Paint(painter, MapPainter::PaperPalette(), {}, QRectF(QPointF(), map));
}

bool FormMap::ShowPrinterDialog(QPrinter &printer)
{
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        desk().asker.MsgBox(
            QStringLiteral("No printer is installed.\r\n\r\n\"Save as PDF\" writes the map to a file."),
            MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
        return false;
    }
    QPrintDialog dialog(&printer, this);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    return dialog.exec() == QDialog::Accepted;
}

void FormMap::CommandPrint_Click()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    if (ChoosePrinter(printer))
        PaintPage(printer);
}

std::optional<QString> FormMap::ShowSaveDialog(const QString &folder)
{
    QFileDialog dialog(this, QStringLiteral("Save the Map"));
    dialog.setNameFilters({QStringLiteral("PDF (*.pdf)")});
    dialog.setDefaultSuffix(QStringLiteral("pdf"));
    return RunExportDialog(dialog, folder + QStringLiteral("Map of the Drive.pdf"), desk().settings,
                           desk().asker);
}

void FormMap::CommandPdf_Click()
{
    const std::optional<QString> path = ChooseFile(FilePath(desk().document.FileName));
    if (!path)
        return;
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setPageLayout(QPageLayout(UsualPaper(), QPageLayout::Landscape,
                                         QMarginsF(MarginMm, MarginMm, MarginMm, MarginMm),
                                         QPageLayout::Millimeter));
        writer.setTitle(windowTitle());
        PaintPage(writer);
    }
    const QString failure = AtomicFile::Write(*path, pdf.data());
    if (!failure.isEmpty())
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    else
        labelCard_->setText(QStringLiteral("Saved to \"%1\".").arg(FileTitle(*path)));
}

} // namespace quorvik
