#include "trend/forms/TrendExport.h"

#include "desktop/SaveDialog.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/AtomicFile.h"
#include "platform/Guard.h"
#include "platform/Progress.h"
#include "trend/TrendCsv.h"

#include <QFile>
#include <QFileDialog>
#include <QThread>
#include <atomic>
#include <memory>

namespace quorvik
{

namespace
{

constexpr int Steps = 100;

/** Writes the file; runs in a thread of its own. @return empty, or what failed. */
QString WriteWhole(const QString &path, const TrendData &data, const std::function<bool(double)> &goOn)
{
    AtomicFile file(path);
    if (QString failure = file.Create(); !failure.isEmpty())
        return failure;
    QFile sibling(file.SiblingPath());
    if (!sibling.open(QIODevice::WriteOnly))
        return QStringLiteral("\"%1\" cannot be written: %2.").arg(path, sibling.errorString());
    if (QString failure = WriteTrendCsv(data, sibling, goOn); !failure.isEmpty())
        return failure;
    if (!sibling.flush())
        return QStringLiteral("\"%1\" cannot be written: %2.").arg(path, sibling.errorString());
    sibling.close();
    return file.Commit();
}

QString FilterOf(const QString &suffix)
{
    if (suffix == QStringLiteral("csv"))
        return QStringLiteral("Comma-separated values (*.csv)");
    if (suffix == QStringLiteral("pdf"))
        return QStringLiteral("PDF document (*.pdf)");
    return QStringLiteral("%1 picture (*.%2)").arg(suffix.toUpper(), suffix);
}

} // namespace

std::optional<QString> ShowTrendExportDialog(const QString &suffix, const QString &folder, QWidget *owner,
                                             SettingsStore &settings, Asker &asker)
{
    QFileDialog dialog(owner, QStringLiteral("Export"));
    dialog.setNameFilter(FilterOf(suffix));
    dialog.setDefaultSuffix(suffix);
    return RunExportDialog(dialog, folder, settings, asker);
}

TrendExportResult ExportTrendCsv(const QString &path, const TrendDataPtr &data, Asker &asker)
{
    std::atomic<bool> isCancelled = false;
    QString failure;
    Progress progress(QStringLiteral("Exporting Recording"), 0, Steps);
    const auto goOn = [&](double part) {
        QMetaObject::invokeMethod(
            &progress, [&progress, part] { progress.Advance(int(part * Steps)); }, Qt::QueuedConnection);
        return !isCancelled.load();
    };
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            failure = WriteWhole(path, *data, goOn);
        } catch (const RuntimeFailure &raised) {
            // Told by the program's own thread.
            failure = raised.Sentence();
        }
    }));
    On(thread.get(), &QThread::finished, &progress, [&progress] { progress.End(); });
    On(&progress, &Progress::CancelWanted, thread.get(), [&isCancelled] { isCancelled = true; });
    thread->start();
    asker.ShowProgress(progress);
    thread->wait();
    if (isCancelled)
        return {QStringLiteral("Nothing was exported.")};
    if (!failure.isEmpty())
        return {failure, true};
    return {QStringLiteral("Exported to \"%1\".").arg(FileTitle(path))};
}

} // namespace quorvik
