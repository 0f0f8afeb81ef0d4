#pragma once

#include "trend/TrendData.h"

#include <QString>
#include <optional>

class QWidget;

namespace quorvik
{

class Asker;
class SettingsStore;

/** Lets the user choose the file to export to, and asks before one is replaced; nothing for a cancel.
 * @param suffix "csv", "png", "svg" or "pdf". */
std::optional<QString> ShowTrendExportDialog(const QString &suffix, const QString &folder, QWidget *owner,
                                             SettingsStore &settings, Asker &asker);

/**
 * Writes a recording as comma-separated values, whole or not at all, beside the program's own thread, with a
 * progress that can be cancelled.
 * @return the sentence that tells how it ended. isFailed tells one that went wrong.
 */
struct TrendExportResult {
    QString sentence;
    bool isFailed = false;
};
TrendExportResult ExportTrendCsv(const QString &path, const TrendDataPtr &data, Asker &asker);

} // namespace quorvik
