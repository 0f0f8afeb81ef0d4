#include "settings/forms/ExportList.h"

#include "settings/forms/PrintData.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QPageSize>
#include <QPdfWriter>
#include <QSaveFile>

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

QPageSize UsualPaper()
{
    const bool isMetric = QLocale().measurementSystem() == QLocale::MetricSystem;
    return QPageSize(isMetric ? QPageSize::A4 : QPageSize::Letter);
}

} // namespace

std::optional<QString> ShowExportDialog(const QString &folder, QWidget *owner)
{
    QFileDialog dialog(owner, QStringLiteral("Export"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({CsvKind().filter, PdfKind().filter});
    dialog.setDefaultSuffix(CsvKind().suffix);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(filter == PdfKind().filter ? PdfKind().suffix : CsvKind().suffix);
    });
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.selectedFiles().value(0);
}

QString ExportRows(const QString &path, const Model &model, const QList<ReportRow> &rows)
{
    QSaveFile file(path);
    const auto failure = [&file] {
        return QStringLiteral("The file could not be written: ") + file.errorString() + u'.';
    };
    if (!file.open(QIODevice::WriteOnly))
        return failure();
    if (QFileInfo(path).suffix().compare(PdfKind().suffix, Qt::CaseInsensitive) == 0) {
        QPdfWriter writer(&file);
        writer.setPageSize(UsualPaper());
        writer.setTitle(QStringLiteral("Sarvex Parameters"));
        QString printFailure = PrintData(writer, DescribeReport(model, rows));
        if (!printFailure.isEmpty())
            return printFailure;
    } else {
        file.write(RowsAsCsv(rows));
    }
    return file.commit() ? QString() : failure();
}

} // namespace quorvik
