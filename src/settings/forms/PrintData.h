#pragma once

#include "settings/ReportLayout.h"

class QPagedPaintDevice;

namespace quorvik
{

/**
 * Prints one copy of the report as a document of its own.
 * @return an empty text, or why nothing could be printed.
 */
QString PrintData(QPagedPaintDevice &device, const ReportContent &content);

} // namespace quorvik
