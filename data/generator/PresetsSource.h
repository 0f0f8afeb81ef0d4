#pragma once

#include "model/ParamTable.h"

#include <QString>

namespace quorvik
{

/**
 * Turns the factory table's source into records: one line for each parameter from 0 up, after a line of
 * headings, in words and shown units. Computes Attributes.
 *
 * @param csv the whole source; fields are parted by commas, never quoted.
 * @param records takes the table; undefined after a failure.
 * @return an empty text, or which line cannot be expressed and why.
 */
QString ParsePresets(const QString &csv, RecordArray &records);

/** Writes the factory table to a file. @return an empty text, or why it was not written. */
QString WritePresets(const RecordArray &records, const QString &path);

/** The table for people, as a Markdown page. */
QString ParametersPage(const RecordArray &records);

} // namespace quorvik
