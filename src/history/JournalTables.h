#pragma once

#include <QStringList>
#include <cstdint>

namespace quorvik::JournalTables
{

/** The mark of a journal's file, and the version of its tables. */
inline constexpr std::uint32_t ApplicationId = 0x51525648;
inline constexpr int Version = 1;

/** The statements that make the tables of a new journal. Rows are added and never changed; only what is too
 * old is let go of. Runs number their actions, rows and connections themselves, from 1. */
const QStringList &Statements();

} // namespace quorvik::JournalTables
