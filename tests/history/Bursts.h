#pragma once

#include "history/JournalEntry.h"
#include "model/ParameterNumbers.h"

namespace quorvik::testing
{

/** Makes batches of one action each, whose title says how many rows it has. */
class Bursts
{
public:
    JournalBatch Next(int rows, JournalTime time = JournalTime::Now())
    {
        JournalBatch batch;
        batch.actions.push_back({.number = ++actions,
                                 .time = time,
                                 .origin = Origin::EditDialog,
                                 .title = QString::number(rows),
                                 .setName = QStringLiteral("unnamed")});
        for (int i = 0; i < rows; ++i) {
            batch.rows.push_back({.action = actions,
                                  .sequence = ++sequences,
                                  .time = time,
                                  .param = Param::Reference0 + i,
                                  .name = QStringLiteral("Reference %1").arg(i),
                                  .rawBefore = i,
                                  .rawAfter = sequences,
                                  .textBefore = QStringLiteral("%1 %").arg(i),
                                  .textAfter = QStringLiteral("%1 %").arg(sequences),
                                  .result = EntryResult::Queued});
            batch.results.push_back(
                {.sequence = sequences, .time = time, .result = EntryResult::Acknowledged});
        }
        return batch;
    }

    int actions = 0;
    int sequences = 0;
};

} // namespace quorvik::testing
