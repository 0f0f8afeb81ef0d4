#include "settings/forms/FilePrint.h"

#include "platform/Asker.h"
#include "settings/forms/FormViewParameters.h"
#include "settings/forms/PrintData.h"

#include <QGuiApplication>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace quorvik
{

namespace
{

/** What leads to a file instead. */
const QString &ToAFile()
{
    static const QString sentence =
        QStringLiteral("Export in the window View Parameters writes the list to a file.");
    return sentence;
}

/** Without a printer the dialog would offer nothing but a file, which is refused. */
std::optional<PrinterChoice> ShowPrinterDialog(Asker &asker, QPrinter &printer, QWidget *owner)
{
    const QStringList printers = QPrinterInfo::availablePrinterNames();
    if (printers.isEmpty()) {
        asker.MsgBox(QStringLiteral("No printer is installed.\r\n\r\n") + ToAFile(), MsgButtons::Ok,
                     MsgIcon::Exclamation, QString());
        return std::nullopt;
    }
    // Where none of them is the default one, the dialog would begin with the file.
    const QString usual = QPrinterInfo::defaultPrinterName();
    printer.setPrinterName(usual.isEmpty() ? printers.first() : usual);
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
    : ShowPrinter([&desk](QPrinter &printer, QWidget *owner) {
        return ShowPrinterDialog(desk.asker, printer, owner);
    })
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
        desk_.asker.MsgBox(QStringLiteral("Print to file not currently supported!\r\n\r\n") + ToAFile(),
                           MsgButtons::Ok, MsgIcon::None, QString());
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
            failure = PrintData(printer, DescribeReport(desk_.document, RowsToPrint()));
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
    return CollectRows(desk_.table, ReportFilter::All);
}

} // namespace quorvik
