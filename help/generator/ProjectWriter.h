#pragma once

#include "generator/Topics.h"

namespace quorvik::help
{

/** Writes the Qt Help project of the pages, with contents and index. */
void WriteProject(const Topics &topics, const QStringList &files, const QString &outFolder,
                  QStringList &problems);

} // namespace quorvik::help
