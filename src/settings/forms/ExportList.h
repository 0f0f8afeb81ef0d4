#pragma once

#include "settings/Report.h"

#include <optional>

class QWidget;

namespace quorvik
{

class Asker;
class SettingsStore;
class Document;
class SettingsStore;

/** Lets the user choose the file to export to, *.csv or *.pdf, and asks before one is replaced; nothing
 * stands for a cancel. */
std::optional<QString> ShowExportDialog(const QString &folder, QWidget *owner, SettingsStore &settings,
                                        Asker &asker);

/**
 * Writes the rows in their order to a file: the printed report where the path ends in ".pdf", else
 * comma-separated values. The file is written whole or not at all.
 * @return an empty text, or why it was not written.
 */
QString ExportRows(const QString &path, const Document &document, const QList<ReportRow> &rows);

} // namespace quorvik
