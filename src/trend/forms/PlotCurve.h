#pragma once

#include "trend/forms/PlotReduction.h"
#include "trend/forms/Plotting.h"

namespace quorvik
{

/** The part of the time that is seen, in microseconds. */
struct PlotWindow {
    qint64 fromUs = 0;
    qint64 toUs = 1;
    bool isMoving = false; ///< the next picture comes at once, so this one must not cost much
};

/** What is painted within the frame of a plot, over its grid. */
class PlotLayer : public QCPLayerable
{
public:
    /** @param rect is the frame, and must outlive it. */
    PlotLayer(QCPAxisRect *rect, const QString &layer);

    const QCPAxisRect &Rect() const { return *rect_; }

protected:
    QRect clipRect() const override { return rect_->rect(); }
    void applyDefaultAntialiasingHint(QCPPainter *painter) const override;
    double XOf(const PlotWindow &window, qint64 timeUs) const;

    QCPAxisRect *rect_;
};

/** The line of a channel. */
class PlotCurve : public PlotLayer
{
public:
    PlotCurve(QCPAxisRect *rect, QCPAxis *scale, int param, std::int32_t attributes);

    int Param() const { return param_; }
    const QPen &Pen() const { return pen_; }
    void SetPen(const QPen &pen) { pen_ = pen; }
    /** @param samples of the channel, shiftUs is added to their times */
    void Update(const SampleRing &samples, qint64 shiftUs, const PlotWindow &window);
    const PlotReduction &Reduction() const { return reduction_; }
    /** Shown numbers of what is seen; nothing where nothing is. */
    std::optional<QCPRange> Extent() const;
    /** Where the line crosses a time, as it was painted last; nothing in a gap and beyond the ends. */
    std::optional<double> HeightAt(qint64 timeUs) const;
    /** The smallest difference of two shown numbers. */
    double Resolution() const { return factor_; }

protected:
    void draw(QCPPainter *painter) override;

private:
    QPointF At(const PlotPoint &point) const;
    /** Draws line_, and empties it. */
    void DrawRun(QCPPainter *painter, bool isSmooth);
    void DrawSamples(QCPPainter *painter);

    QCPAxis *scale_;
    int param_;
    double factor_;
    QPen pen_;
    PlotReduction reduction_;
    PlotWindow window_;
    qint64 shiftUs_ = 0;
    double perUs_ = 0; ///< pixels
    double perRaw_ = 0;
    double zeroY_ = 0;
    QPolygonF line_; ///< kept for its memory
};

} // namespace quorvik
