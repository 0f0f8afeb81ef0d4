#pragma once

#include "operations/EntryRules.h"

namespace quorvik
{

/**
 * The raw value of an entry as a command line gives it: as a window shows it, with or without its unit; of a
 * list one of its texts; of an input or link the number or name of a parameter; "raw:123" for a raw value.
 * @param table holds the drive's values and limits, as rules do.
 */
TypedEntry EntryOfText(const ParameterTable &table, const EntryRules &rules, int p, const QString &text);

} // namespace quorvik
