#include "history/forms/ExportHistory.h"

#include "history/forms/HistoryPages.h"
#include "platform/AtomicFile.h"
#include "settings/Report.h"

#include <QFile>
#include <QFileInfo>

namespace quorvik
{

namespace
{

constexpr int RowsBetweenWords = 500;

} // namespace

ExportHistory::ExportHistory(QString path, QString journalPath, HistoryReport report)
    : path_(std::move(path))
    , journalPath_(std::move(journalPath))
    , report_(std::move(report))
{
}

ExportHistory::~ExportHistory()
{
    Cancel();
    wait();
}

bool ExportHistory::CountRow()
{
    if (++rows_ % RowsBetweenWords == 0)
        Q_EMIT Advanced(rows_);
    return !isCancelled_;
}

void ExportHistory::run()
{
    AtomicFile target(path_);
    failure_ = target.Create();
    if (!failure_.isEmpty())
        return;
    QFile file(target.SiblingPath());
    if (!file.open(QIODevice::WriteOnly)) {
        failure_ = file.errorString();
        return;
    }
    failure_ = Write(file);
    file.close();
    if (failure_.isEmpty() && file.error() != QFileDevice::NoError)
        failure_ = QStringLiteral("\"%1\" could not be written: %2").arg(path_, file.errorString());
    if (failure_.isEmpty() && !isCancelled_)
        failure_ = target.Commit();
}

QString ExportHistory::Write(QFile &file)
{
    // Its own, for a reader belongs to one thread.
    JournalReader reader(journalPath_);
    if (QFileInfo(path_).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) != 0) {
        file.write(HistoryCsvHead(report_));
        return ReadHistory(reader, report_.filter, [this, &file](const QStringList &fields) {
            const QByteArray line = CsvLine(fields);
            return file.write(line) == line.size() && CountRow();
        });
    }
    HistoryPages pages(file, report_);
    return ReadHistory(reader, report_.filter, [this, &file, &pages](const QStringList &fields) {
        pages.Add(fields);
        return file.error() == QFileDevice::NoError && CountRow();
    });
}

} // namespace quorvik
