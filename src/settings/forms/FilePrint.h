#pragma once

#include "desktop/Desk.h"
#include "settings/Report.h"

#include <optional>

class QPrinter;
class QWidget;

namespace quorvik
{

/** What the user chose in the printer dialog. */
struct PrinterChoice {
    int copies = 1;
    bool toFile = false; ///< the dialog's print-to-file mark
};

/** The Print command: the printer dialog and the copies. */
class FilePrint
{
public:
    explicit FilePrint(Desk &desk);

    /** Lets the user choose a printer; nothing stands for a cancel. The program shows the platform's dialog.
     */
    std::function<std::optional<PrinterChoice>(QPrinter &printer, QWidget *owner)> ShowPrinter;
    /** Runs before each copy, 1 and up, which is a document of its own. Empty in the program. */
    std::function<void(QPrinter &printer, int copy)> BeforeCopy;

    /** Prints the rows of the open parameter list, in its order, or else the whole table. */
    void mnuFilePrint_Click(QWidget *owner);

private:
    QList<ReportRow> RowsToPrint() const;

    Desk &desk_;
};

} // namespace quorvik
