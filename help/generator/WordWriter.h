#pragma once

#include "find/HelpWords.h"
#include "generator/Topics.h"

namespace quorvik::help
{

/** What topics and parameters are found by: titles, index, and the words of the texts. */
HelpWords CollectWords(const Topics &topics);

/** Writes them as quorvik.words. */
void WriteWords(const Topics &topics, const QString &outFolder, QStringList &problems);

} // namespace quorvik::help
