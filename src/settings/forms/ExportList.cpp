#include "settings/forms/ExportList.h"

#include "desktop/SaveDialog.h"
#include "desktop/UsualPaper.h"
#include "platform/AtomicFile.h"
#include "settings/forms/PrintData.h"

#include <QBuffer>
#include <QFileDialog>
#include <QFileInfo>
#include <QPdfWriter>

namespace quorvik
{

namespace
{

struct ExportKind {
    QString filter;
    QString suffix;
};

const ExportKind &CsvKind()
{
    static const ExportKind kind{QStringLiteral("Comma-separated values (*.csv)"), QStringLiteral("csv")};
    return kind;
}

const ExportKind &PdfKind()
{
    static const ExportKind kind{QStringLiteral("PDF document (*.pdf)"), QStringLiteral("pdf")};
    return kind;
}

} // namespace

std::optional<QString> ShowExportDialog(const QString &folder, QWidget *owner, SettingsStore &settings,
                                        Asker &asker)
{
    QFileDialog dialog(owner, QStringLiteral("Export"));
    dialog.setNameFilters({CsvKind().filter, PdfKind().filter});
    dialog.setDefaultSuffix(CsvKind().suffix);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(filter == PdfKind().filter ? PdfKind().suffix : CsvKind().suffix);
    });
    return RunExportDialog(dialog, folder, settings, asker);
}

QString ExportRows(const QString &path, const Document &document, const QList<ReportRow> &rows)
{
    if (QFileInfo(path).suffix().compare(PdfKind().suffix, Qt::CaseInsensitive) != 0)
        return AtomicFile::Write(path, RowsAsCsv(rows));
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setPageSize(UsualPaper());
        writer.setTitle(QStringLiteral("Sarvex Parameters"));
        if (QString failure = PrintData(writer, DescribeReport(document, rows)); !failure.isEmpty())
            return failure;
    }
    return AtomicFile::Write(path, pdf.data());
}

} // namespace quorvik
