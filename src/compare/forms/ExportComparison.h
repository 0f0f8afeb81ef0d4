#pragma once

#include "compare/CompareReport.h"

namespace quorvik
{

/**
 * Writes a comparison to a file: a PDF document where the path ends in ".pdf", else comma-separated values.
 * The file is written whole or not at all.
 * @return an empty text, or why it was not written.
 */
QString ExportComparison(const QString &path, const CompareReport &report);

} // namespace quorvik
