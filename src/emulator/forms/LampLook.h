#pragma once

#include <QColor>
#include <QPalette>

class QPainter;
class QRectF;

namespace quorvik
{

/** The colour of what carries a signal: a lit lamp, a level, a made contact. */
QColor SignalColor();

/** A round lamp that fills the rectangle. */
void PaintLamp(QPainter &painter, const QRectF &place, bool lit, const QPalette &palette);

} // namespace quorvik
