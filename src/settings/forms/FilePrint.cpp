#include "settings/forms/FilePrint.h"

#include "platform/Asker.h"
#include "settings/forms/FormViewParameters.h"
#include "settings/forms/PrintData.h"

#include <QGuiApplication>
#include <QPrintDialog>
#include <QPrinter>

namespace quorvik
{

namespace
{

std::optional<PrinterChoice> ShowPrinterDialog(QPrinter &printer, QWidget *owner)
{
    QPrintDialog dialog(&printer, owner);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return PrinterChoice{printer.copyCount(), !printer.outputFileName().isEmpty()};
}

/** The hourglass pointer, for as long as it lives. */
class Hourglass
{
public:
    Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(Hourglass)
};

} // namespace

FilePrint::FilePrint(Desk &desk)
    : ShowPrinter(ShowPrinterDialog)
    , desk_(desk)
{
}

void FilePrint::mnuFilePrint_Click(QWidget *owner)
{
    QPrinter printer(QPrinter::HighResolution);
    const std::optional<PrinterChoice> choice = ShowPrinter(printer, owner);
    if (!choice)
        return;
    if (choice->toFile) {
        desk_.asker.MsgBox(QStringLiteral("Print to file not currently supported!"), MsgButtons::Ok,
                           MsgIcon::None, QString());
        return;
    }
    // The copies are printed one by one here, so the spooler must not multiply them again.
    printer.setCopyCount(1);
    for (int copy = 1; copy <= choice->copies; ++copy) {
        if (BeforeCopy)
            BeforeCopy(printer, copy);
        QString failure;
        {
            const Hourglass hourglass;
            failure = PrintData(printer, DescribeReport(desk_.model, RowsToPrint()));
        }
        if (!failure.isEmpty()) {
            desk_.asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, QString());
            return;
        }
    }
}

QList<ReportRow> FilePrint::RowsToPrint() const
{
    const int position = desk_.forms.FindOpenBlock(FormViewParameters::Caption());
    if (position > 0)
        if (const auto *list = qobject_cast<FormViewParameters *>(desk_.forms.At(position)))
            return list->Rows();
    return CollectRows(desk_.model, ReportFilter::All);
}

} // namespace quorvik
