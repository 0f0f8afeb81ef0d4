#pragma once

#include "link/ValueStates.h"

#include <QColor>

class QFont;
class QPainter;
class QRectF;

namespace quorvik
{

/**
 * How the state of a value is drawn on the body that it stands on: text at half strength in a dashed outline
 * for what may be out of date, italics for what is computed, and at the left edge a question mark, an arrow
 * or a corner. The body keeps its colour.
 */
class ValueMark
{
public:
    ValueMark(ValueState state, const QColor &body);

    /** Whether nothing is added to the value. */
    bool IsPlain() const { return state_ == ValueState::Live || state_ == ValueState::Set; }
    /** Whether a dashed outline stands in the body, and with it text at half strength. */
    bool HasOutline() const;
    /** The colour of the text. */
    QColor Ink() const;
    /** The font of the text. */
    QFont TextFont(QFont font) const;
    /** What the mark takes of a body's left end, 0 for none. */
    double Room(const QFont &font, double height) const;
    /** Draws outline and mark in the painter's font; the text is the caller's. */
    void Draw(QPainter &painter, const QRectF &body) const;

private:
    double QuestionWidth(const QFont &font) const;

    ValueState state_;
    QColor body_;
};

} // namespace quorvik
