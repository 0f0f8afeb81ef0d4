#pragma once

#include <QColor>
#include <QPalette>

class QPainter;
class QRectF;

namespace quorvik
{

/** The colour of what carries a signal: a lit lamp, a level, a made contact. */
QColor SignalColor();

/** Two palette colours mixed; 0 gives the first and 1 the second. */
QColor Mixed(const QColor &first, const QColor &second, double share);

/** A round lamp that fills the rectangle. */
void PaintLamp(QPainter &painter, const QRectF &place, bool lit, const QPalette &palette);

} // namespace quorvik
