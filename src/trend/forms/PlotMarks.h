#pragma once

#include "trend/forms/PlotLane.h"

namespace quorvik
{

/** The letter on the flag of a mark. */
QString MarkLetter(TrendMarkKind kind);
/** Its text as a tool tip says it, with the kind before it. */
QString MarkText(const TrendMark &mark);

/** What happened, as lines through a plot; the first plot has the flags on top. */
class PlotMarks : public PlotLayer
{
public:
    PlotMarks(QCPAxisRect *rect, bool hasFlags);

    void SetLook(const PlotLook &look) { look_ = look; }
    void Update(const std::vector<TrendMark> &marks, const PlotWindow &window);
    /** The texts of the marks whose flag is there, one a line; empty where there is none. */
    QString TextAt(const QPoint &position) const;

protected:
    QRect clipRect() const override;
    void draw(QCPPainter *painter) override;

private:
    struct Line {
        qint64 timeUs = 0;
        TrendMarkKind kind = TrendMarkKind::Note;
        QString text;
    };
    double XOf(const Line &line) const { return PlotLayer::XOf(window_, line.timeUs); }
    QRectF FlagOf(const Line &line) const;
    QPen PenOf(TrendMarkKind kind) const;

    bool hasFlags_;
    PlotLook look_;
    PlotWindow window_;
    std::vector<Line> lines_;
};

} // namespace quorvik
