#pragma once

#include "history/HistoryReport.h"

#include <QThread>
#include <atomic>

class QFile;

namespace quorvik
{

/**
 * Writes a part of the journal to a file, in a thread of its own: a PDF document where the path ends in
 * ".pdf", else comma-separated values. The file is written whole or not at all.
 */
class ExportHistory : public QThread
{
    Q_OBJECT

public:
    ExportHistory(QString path, QString journalPath, HistoryReport report);
    /** Gives it up, where it is not done yet. */
    ~ExportHistory() override;

    void Cancel() { isCancelled_ = true; }
    bool IsCancelled() const { return isCancelled_; }
    int Rows() const { return rows_; }
    /** Once it has finished: an empty text, or why the file was not written. */
    const QString &Failure() const { return failure_; }

Q_SIGNALS:
    /** Now and then: so many rows are written. */
    void Advanced(int rows);

protected:
    void run() override;

private:
    QString Write(QFile &file);
    /** @return whether to go on. */
    bool CountRow();

    const QString path_;
    const QString journalPath_;
    const HistoryReport report_;
    std::atomic<bool> isCancelled_ = false;
    std::atomic<int> rows_ = 0;
    QString failure_;
};

} // namespace quorvik
