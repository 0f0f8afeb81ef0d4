// What the buttons of the commissioning report do.

#include "desktop/SaveDialog.h"
#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "report/forms/FormCommissioningReport.h"
#include "report/pages/ReportPages.h"

#include <QAccessible>
#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScopeGuard>

namespace quorvik
{

void FormCommissioningReport::Tell(const QString &sentence)
{
    labelOutcome_->setText(sentence);
    labelOutcome_->setVisible(!sentence.isEmpty());
    QAccessibleEvent told(labelOutcome_, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

void FormCommissioningReport::CommandCompare_Click()
{
    if (isBusy_)
        return;
    Tell({});
    const QPointer<FormCommissioningReport> self(this);
    isBusy_ = true;
    // The window may be closed while the drive is read.
    DriveVerification verification = host_.Compare();
    if (!self)
        return;
    isBusy_ = false;
    verification_ = std::move(verification);
    Follow();
}

bool FormCommissioningReport::BringUpToDate()
{
    const QPointer<FormCommissioningReport> self(this);
    if (checkKeep_->isChecked())
        if (const QString failure = host_.KeepPlace(Place()); !failure.isEmpty())
            desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    if (self && desk().table.PortOpen())
        CommandCompare_Click();
    else if (self)
        Follow();
    return self;
}

void FormCommissioningReport::CommandPdf_Click()
{
    if (isBusy_)
        return;
    Tell({});
    const std::optional<QString> path = ChooseFile(pages_->Title() + QStringLiteral(".pdf"));
    if (!path || !BringUpToDate())
        return;
    const QString failure = pages_->WritePdf(*path);
    if (!failure.isEmpty())
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    else
        Tell(QStringLiteral("Saved to \"%1\".").arg(FileTitle(*path)));
}

void FormCommissioningReport::CommandPrint_Click()
{
    if (isBusy_)
        return;
    Tell({});
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageLayout(pages_->Layout());
    printer.setDocName(pages_->Title());
    if (!ChoosePrinter(printer) || !BringUpToDate())
        return;
    printer.setPageLayout(pages_->Layout());
    pages_->Print(printer);
}

bool FormCommissioningReport::ShowPrinterDialog(QPrinter &printer)
{
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        desk().asker.MsgBox(
            QStringLiteral("No printer is installed.\r\n\r\n\"Save as PDF\" writes the report to a file."),
            MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
        return false;
    }
    QPrintDialog dialog(&printer, this);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    return dialog.exec() == QDialog::Accepted;
}

std::optional<QString> FormCommissioningReport::ShowSaveDialog(const QString &name)
{
    QFileDialog dialog(this, QStringLiteral("Save the Report"));
    dialog.setNameFilters({QStringLiteral("PDF (*.pdf)")});
    dialog.setDefaultSuffix(QStringLiteral("pdf"));
    return RunExportDialog(dialog, FilePath(desk().document.FileName) + name, desk().settings, desk().asker);
}

} // namespace quorvik
