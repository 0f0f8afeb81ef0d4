// Where what is on the plots' board.

#include "trend/forms/PlotBoard.h"

#include <cmath>

namespace quorvik
{

QRect PlotBoard::Frames() const
{
    QRect all;
    for (const QCPAxisRect *const frame : FramesInOrder())
        all = all.united(frame->rect());
    return all;
}

QRect PlotBoard::RectOf(int plot) const
{
    QRect rect;
    if (plot >= 0 && std::size_t(plot) < areas_.size())
        for (const QCPAxisRect *const frame :
             {areas_[std::size_t(plot)].frame, areas_[std::size_t(plot)].laneFrame})
            if (frame != nullptr)
                rect = rect.united(frame->rect());
    return rect;
}

int PlotBoard::PlotAt(int y) const
{
    for (std::size_t plot = 0; plot < areas_.size(); ++plot)
        if (y <= RectOf(int(plot)).bottom())
            return int(plot);
    return int(areas_.size());
}

qint64 PlotBoard::TimeAt(double x) const
{
    const QRect frames = Frames();
    return window_.fromUs + qint64(std::llround((x - frames.left()) * double(window_.toUs - window_.fromUs) /
                                                std::max(1, frames.width())));
}

double PlotBoard::XOf(qint64 timeUs) const
{
    const QRect frames = Frames();
    return frames.left() +
           double(timeUs - window_.fromUs) * frames.width() / double(window_.toUs - window_.fromUs);
}

const PlotScale *PlotBoard::ScaleAt(const QPoint &position) const
{
    for (const PlotArea &area : areas_)
        for (const PlotScale &scale : area.scales) {
            const QRect frame = area.frame->rect();
            const bool isBeside = position.y() >= frame.top() && position.y() <= frame.bottom() &&
                                  (position.x() < frame.left() || position.x() > frame.right());
            if (isBeside && scale.axis->selectTest(position, false) >= 0)
                return &scale;
        }
    return nullptr;
}

QString PlotBoard::TextAt(const QPoint &position) const
{
    for (const PlotArea &area : areas_)
        for (const auto &marks : area.marks)
            if (QString text = marks->TextAt(position); !text.isEmpty())
                return text;
    return {};
}

void PlotBoard::HoldScale(const PlotScale &scale, const QCPRange &range)
{
    held_[scale.key] = range;
}

} // namespace quorvik
