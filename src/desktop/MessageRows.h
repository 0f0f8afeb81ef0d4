#pragma once

#include <QString>

class QTextDocument;

namespace quorvik
{

/** Where a page of the help quotes a message of the program. */
struct MessageRow {
    int position = -1; ///< in the document; -1 where no row quotes it
    int score = 0;     ///< how many letters of the message the row's first column has
};

/**
 * Looks through the tables of a page. A row's first column quotes messages; three points stand there for what
 * differs from case to case.
 */
MessageRow RowOfMessage(const QTextDocument &page, const QString &message);

} // namespace quorvik
