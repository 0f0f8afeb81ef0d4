#include "desktop/MessageRows.h"

#include <QRegularExpression>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

namespace quorvik
{

namespace
{

/** Shorter pieces, such as a quotation mark before three points, say nothing. */
constexpr int LeastPiece = 6;

int ScoreOf(const QString &quote, const QString &message)
{
    static const QRegularExpression gap(QStringLiteral(R"(\.\.\.|\x{2028}|(?<=[.!?]) )"));
    int score = 0;
    for (const QString &piece : quote.split(gap))
        if (const QString words = piece.simplified();
            words.size() >= LeastPiece && message.contains(words, Qt::CaseInsensitive))
            score += int(words.size());
    return score;
}

QString TextOf(const QTextTableCell &cell)
{
    QTextCursor text = cell.firstCursorPosition();
    text.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
    return text.selectedText();
}

} // namespace

MessageRow RowOfMessage(const QTextDocument &page, const QString &message)
{
    const QString plain = message.simplified();
    MessageRow best;
    for (const QTextFrame *frame : page.rootFrame()->childFrames()) {
        const auto *table = qobject_cast<const QTextTable *>(frame);
        for (int row = 0; table && row < table->rows(); ++row) {
            const QTextTableCell cell = table->cellAt(row, 0);
            if (const int score = ScoreOf(TextOf(cell), plain); score > best.score)
                best = {cell.firstPosition(), score};
        }
    }
    return best;
}

} // namespace quorvik
