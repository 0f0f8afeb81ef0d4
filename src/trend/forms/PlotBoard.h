#pragma once

#include "trend/forms/PlotMarks.h"

#include <map>
#include <memory>

namespace quorvik
{

class TrendView;

/** An axis of values and the curves that are measured by it. */
struct PlotScale {
    QString key; ///< the same as long as the scale means the same
    QCPAxis *axis = nullptr;
    std::vector<PlotCurve *> curves;
    int colour = -1; ///< of its only curve; -1 where it has several
};

/** One of the plots under each other: a frame with curves, one with lanes, or both. */
struct PlotArea {
    QCPAxisRect *frame = nullptr;
    QCPAxisRect *laneFrame = nullptr;
    std::vector<PlotScale> scales;
    std::vector<std::unique_ptr<PlotCurve>> curves;
    std::vector<std::unique_ptr<PlotCurve>>
        overlays; ///< in the order of the view's, those of a curve together
    std::vector<std::unique_ptr<PlotLane>> lanes;
    std::vector<std::unique_ptr<PlotMarks>> marks;
};

/** Lays the plots of a view out on a canvas, and brings the recording's data to them. */
class PlotBoard
{
public:
    /** Both must outlive it. */
    PlotBoard(QCustomPlot &canvas, TrendView &view);
    ~PlotBoard();
    PlotBoard(const PlotBoard &) = delete;
    PlotBoard &operator=(const PlotBoard &) = delete;

    /** The curves or their arrangement are others. */
    void Rebuild();
    void SetLook(const PlotLook &look);
    const PlotLook &Look() const { return look_; }
    /** Brings in what there is to see. @param isMoving the next picture comes at once. */
    void Update(bool isMoving);

    const std::vector<PlotArea> &Areas() const { return areas_; }
    /** What all frames have together: left, right, from the first one's top to the last one's bottom. */
    QRect Frames() const;
    /** The number of the plot at a height; that of one past the last below it. */
    int PlotAt(int y) const;
    QRect RectOf(int plot) const;
    qint64 TimeAt(double x) const;
    double XOf(qint64 timeUs) const;
    /** The scale whose numbers are there; null elsewhere. */
    const PlotScale *ScaleAt(const QPoint &position) const;
    /** The text of the marks there; empty where there are none. */
    QString TextAt(const QPoint &position) const;

    /** Keeps a scale as it is set, whatever the values do. */
    void HoldScale(const PlotScale &scale, const QCPRange &range);
    void FreeScale(const PlotScale &scale) { held_.erase(scale.key); }
    void FreeScales() { held_.clear(); }

    /** What times on the axis are counted from. */
    qint64 OriginUs() const;
    QString OriginText() const;

private:
    void Clear();
    void AddArea(int plot);
    QCPAxisRect *AddFrame();
    PlotScale &ScaleOf(PlotArea &area, int plot, int param, std::int32_t attributes, bool isOwn);
    void AddCurve(PlotArea &area, int plot, const TrendTrack &track, bool isOwn);
    void LayOut();
    void ApplyLook();
    void ApplyLook(QCPAxis *axis, const QColor &colour) const;
    void UpdateScale(PlotScale &scale);
    void UpdateTime(QCPAxisRect *frame);
    std::vector<QCPAxisRect *> FramesInOrder() const;

    QCustomPlot &canvas_;
    TrendView &view_;
    PlotLook look_;
    std::vector<PlotArea> areas_;
    std::map<QString, QCPRange> held_;
    QCPMarginGroup *margins_;
    QSharedPointer<QCPAxisTicker> timeTicker_;
    PlotWindow window_;
};

} // namespace quorvik
