#include "trend/forms/PlotBoard.h"

#include "model/Conversions.h"
#include "platform/TimeUnits.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotColours.h"
#include "trend/forms/PlotScales.h"

#include <QDateTime>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr double LaneLines = 1.5; // height of a lane in lines of text
constexpr double LaneLinesAlone = 3.2;
constexpr double LaneStretch = 0.6; // of a frame of lanes beside one of curves
constexpr double LinesPerValue = 2.6;
constexpr double WidthPerTime = 1.7;
constexpr int TickLength = 4;
constexpr int LeastFrameHeight = 40;

bool IsLane(const TrendTrack &track)
{
    return IsEnumerated(TypeCode(track.channel.attributes));
}

} // namespace

PlotBoard::PlotBoard(QCustomPlot &canvas, TrendView &view)
    : canvas_(canvas)
    , view_(view)
    , margins_(new QCPMarginGroup(&canvas))
    , timeTicker_(new TimeTicker)
{
    canvas_.plotLayout()->clear();
    canvas_.plotLayout()->setRowSpacing(0);
}

PlotBoard::~PlotBoard()
{
    Clear();
}

void PlotBoard::Clear()
{
    areas_.clear();
    canvas_.plotLayout()->clear();
}

void PlotBoard::Rebuild()
{
    Clear();
    for (int plot = 0; plot < view_.PlotCount(); ++plot)
        AddArea(plot);
    LayOut();
    ApplyLook();
}

QCPAxisRect *PlotBoard::AddFrame()
{
    auto *frame = new QCPAxisRect(&canvas_, false);
    QCPAxis *const time = frame->addAxis(QCPAxis::atBottom);
    time->setTicker(timeTicker_);
    time->setSubTicks(false);
    time->grid()->setVisible(true);
    time->setTickLength(0, TickLength);
    QCPAxis *const values = frame->addAxis(QCPAxis::atLeft);
    values->setRange(0, 1);
    values->setTicks(false);
    values->setTickLabels(false);
    values->grid()->setVisible(false);
    frame->setMarginGroup(QCP::msLeft | QCP::msRight, margins_);
    const int row = canvas_.plotLayout()->rowCount();
    canvas_.plotLayout()->addElement(row, 0, frame);
    return frame;
}

void PlotBoard::AddArea(int plot)
{
    PlotArea &area = areas_.emplace_back();
    std::vector<const TrendTrack *> lanes;
    for (const TrendCurve &curve : view_.Curves()) {
        const TrendTrack *const track = view_.Shown().TrackOf(curve.param);
        if (curve.plot != plot || !curve.isVisible || track == nullptr)
            continue;
        if (IsLane(*track)) {
            lanes.push_back(track);
            continue;
        }
        if (area.frame == nullptr)
            area.frame = AddFrame();
        AddCurve(area, plot, *track, curve.hasOwnScale);
    }
    if (area.frame == nullptr && lanes.empty())
        area.frame = AddFrame();
    if (!lanes.empty())
        area.laneFrame = AddFrame();
    for (const TrendTrack *const track : lanes) {
        auto &lane = area.lanes.emplace_back(
            std::make_unique<PlotLane>(area.laneFrame, track->channel.param, track->channel.attributes));
        lane->SetPlace(int(area.lanes.size()) - 1, int(lanes.size()));
    }
    for (QCPAxisRect *const frame : {area.frame, area.laneFrame})
        if (frame != nullptr)
            area.marks.push_back(std::make_unique<PlotMarks>(frame, plot == 0 && area.marks.empty()));
}

PlotScale &PlotBoard::ScaleOf(PlotArea &area, int plot, int param, std::int32_t attributes, bool isOwn)
{
    const QString unit = UnitText(attributes);
    const QString key = isOwn ? QStringLiteral("%1 of %2").arg(plot).arg(param)
                              : QStringLiteral("%1 in %2").arg(plot).arg(unit);
    const auto found = std::ranges::find(area.scales, key, &PlotScale::key);
    if (found != area.scales.end())
        return *found;
    const auto count = area.scales.size();
    QCPAxis *const axis = count == 0
                              ? area.frame->axis(QCPAxis::atLeft)
                              : area.frame->addAxis(count % 2 == 1 ? QCPAxis::atRight : QCPAxis::atLeft);
    axis->setTicker(QSharedPointer<QCPAxisTicker>(new ValueTicker));
    axis->setTicks(true);
    axis->setTickLabels(true);
    axis->setSubTicks(false);
    axis->setTickLength(0, TickLength);
    axis->setLabel(unit);
    axis->grid()->setVisible(count == 0);
    return area.scales.emplace_back(PlotScale{key, axis, {}, -1});
}

void PlotBoard::AddCurve(PlotArea &area, int plot, const TrendTrack &track, bool isOwn)
{
    const TrendChannel &channel = track.channel;
    PlotScale &scale = ScaleOf(area, plot, channel.param, channel.attributes, isOwn);
    const TrendCurve &drawn = *view_.CurveOf(channel.param);
    for (const TrendOverlay &overlay : view_.Overlays()) {
        if (overlay.data->TrackOf(channel.param) == nullptr)
            continue;
        area.overlays.push_back(
            std::make_unique<PlotCurve>(area.frame, scale.axis, channel.param, channel.attributes));
        scale.curves.push_back(area.overlays.back().get());
    }
    area.curves.push_back(
        std::make_unique<PlotCurve>(area.frame, scale.axis, channel.param, channel.attributes));
    const bool isFirst = std::ranges::all_of(
        scale.curves, [&](const PlotCurve *curve) { return curve->Param() == channel.param; });
    scale.colour = isFirst ? drawn.colour : -1;
    scale.curves.push_back(area.curves.back().get());
}

std::vector<QCPAxisRect *> PlotBoard::FramesInOrder() const
{
    std::vector<QCPAxisRect *> frames;
    for (const PlotArea &area : areas_)
        for (QCPAxisRect *const frame : {area.frame, area.laneFrame})
            if (frame != nullptr)
                frames.push_back(frame);
    return frames;
}

void PlotBoard::LayOut()
{
    const QFontMetrics metrics(look_.font);
    const int line = metrics.height();
    for (std::size_t plot = 0; plot < areas_.size(); ++plot) {
        const PlotArea &area = areas_[plot];
        const int top = plot == 0 ? line + 4 : line;
        if (area.frame != nullptr) {
            area.frame->setMargins({0, top, 0, 0});
            area.frame->setMinimumSize(LeastFrameHeight, LeastFrameHeight);
        }
        if (area.laneFrame == nullptr)
            continue;
        const bool isAlone = area.frame == nullptr;
        const auto count = double(area.lanes.size());
        area.laneFrame->setMargins({0, isAlone ? top : line / 2 + 2, 0, 0});
        area.laneFrame->setSizeConstraintRect(QCPLayoutElement::scrInnerRect);
        area.laneFrame->setMinimumSize(LeastFrameHeight, int(count * LaneLines * line));
        const bool isOnly = isAlone && areas_.size() == 1;
        area.laneFrame->setMaximumSize(QWIDGETSIZE_MAX,
                                       isOnly ? QWIDGETSIZE_MAX
                                              : int(count * (isAlone ? LaneLinesAlone : LaneLines) * line));
    }
    const std::vector<QCPAxisRect *> frames = FramesInOrder();
    const int least = metrics.horizontalAdvance(QStringLiteral("(9999)")) + 12;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const bool isLast = i + 1 == frames.size();
        frames[i]->setAutoMargins(QCP::msLeft | QCP::msRight | (isLast ? QCP::msBottom : QCP::msNone));
        frames[i]->setMinimumMargins({least, 0, line, isLast ? 2 * line + 8 : 0});
        frames[i]->axis(QCPAxis::atBottom)->setTickLabels(isLast);
        canvas_.plotLayout()->setRowStretchFactor(int(i), 1);
    }
    for (const PlotArea &area : areas_)
        if (area.laneFrame != nullptr && areas_.size() > 1) {
            const auto at = std::ranges::find(frames, area.laneFrame);
            canvas_.plotLayout()->setRowStretchFactor(int(at - frames.begin()), LaneStretch);
        }
}

void PlotBoard::SetLook(const PlotLook &look)
{
    look_ = look;
    LayOut();
    ApplyLook();
}

void PlotBoard::ApplyLook(QCPAxis *axis, const QColor &colour) const
{
    const QPen pen(look_.faint, 0);
    axis->setBasePen(pen);
    axis->setTickPen(pen);
    axis->setTickLabelFont(look_.font);
    axis->setLabelFont(look_.font);
    axis->setTickLabelColor(colour);
    axis->setLabelColor(colour);
    axis->grid()->setPen(QPen(look_.grid, 0));
    axis->grid()->setZeroLinePen(QPen(Qt::NoPen));
}

void PlotBoard::ApplyLook()
{
    canvas_.setBackground(QBrush(look_.ground));
    for (QCPAxisRect *const frame : FramesInOrder())
        for (QCPAxis *const axis : frame->axes())
            ApplyLook(axis, look_.text);
    const auto colourOf = [this](int param) { return view_.CurveOf(param)->colour; };
    for (PlotArea &area : areas_) {
        for (PlotScale &scale : area.scales) {
            if (scale.colour >= 0)
                ApplyLook(scale.axis, PlotColour(scale.colour, look_.ground));
            if (&scale == &area.scales.front())
                scale.axis->grid()->setZeroLinePen(QPen(look_.faint, 0));
        }
        for (auto &curve : area.curves)
            curve->SetPen(PlotPen(colourOf(curve->Param()), look_.ground));
        for (auto &overlay : area.overlays)
            overlay->SetPen(PlotOverlayPen(colourOf(overlay->Param()), look_.ground));
        for (auto &lane : area.lanes)
            lane->SetLook(look_, PlotColour(colourOf(lane->Param()), look_.ground));
        for (auto &marks : area.marks)
            marks->SetLook(look_);
    }
}

void PlotBoard::Update(bool isMoving)
{
    window_ = {view_.FromUs(), std::max(view_.ToUs(), view_.FromUs() + 1), isMoving};
    const TrendData &data = view_.Shown();
    static const SampleRing nothing;
    const auto samplesOf = [](const TrendData &recording, int param) -> const SampleRing & {
        const TrendTrack *const track = recording.TrackOf(param);
        return track == nullptr ? nothing : track->samples;
    };
    for (QCPAxisRect *const frame : FramesInOrder())
        UpdateTime(frame);
    for (PlotArea &area : areas_) {
        for (auto &curve : area.curves)
            curve->Update(samplesOf(data, curve->Param()), 0, window_);
        std::size_t next = 0;
        for (auto &curve : area.curves)
            for (const TrendOverlay &overlay : view_.Overlays())
                if (overlay.data->TrackOf(curve->Param()) != nullptr && next < area.overlays.size())
                    area.overlays[next++]->Update(samplesOf(*overlay.data, curve->Param()), overlay.shiftUs,
                                                  window_);
        for (auto &lane : area.lanes)
            lane->Update(samplesOf(data, lane->Param()), window_);
        for (auto &marks : area.marks)
            marks->Update(data.marks, window_);
        for (PlotScale &scale : area.scales)
            UpdateScale(scale);
    }
}

void PlotBoard::UpdateScale(PlotScale &scale)
{
    QCPAxis *const axis = scale.axis;
    const int line = QFontMetrics(look_.font).height();
    axis->ticker()->setTickCount(std::max(2, int(axis->axisRect()->height() / (LinesPerValue * line))));
    if (const auto held = held_.find(scale.key); held != held_.end()) {
        axis->setRange(held->second);
        return;
    }
    std::optional<QCPRange> extent;
    double resolution = 0;
    for (const PlotCurve *const curve : scale.curves) {
        resolution = std::max(resolution, curve->Resolution());
        if (const std::optional<QCPRange> own = curve->Extent()) {
            extent = extent.value_or(*own);
            extent->expand(*own);
        }
    }
    if (extent)
        axis->setRange(ScaleFor(axis->range(), extent->lower, extent->upper, resolution));
}

void PlotBoard::UpdateTime(QCPAxisRect *frame)
{
    QCPAxis *const time = frame->axis(QCPAxis::atBottom);
    const qint64 origin = OriginUs();
    time->setRange(double(window_.fromUs - origin) / UsPerSecond,
                   double(window_.toUs - origin) / UsPerSecond);
    const int width = QFontMetrics(look_.font).horizontalAdvance(QStringLiteral("00000.00"));
    timeTicker_->setTickCount(std::max(2, int(frame->width() / (WidthPerTime * width))));
    if (!time->tickLabels())
        return;
    const bool isLong = std::max(std::abs(time->range().lower), std::abs(time->range().upper)) >= MinutesFrom;
    time->setLabel((isLong ? QStringLiteral("Time from ") : QStringLiteral("Seconds from ")) + OriginText());
}

qint64 PlotBoard::OriginUs() const
{
    const TrendData &data = view_.Shown();
    return data.triggerUs.value_or(data.head.beganUs);
}

QString PlotBoard::OriginText() const
{
    const TrendData &data = view_.Shown();
    QString what = data.triggerUs ? QStringLiteral("the trigger") : QStringLiteral("the beginning");
    if (data.head.beganUtcMs == 0)
        return what;
    const QDateTime clock = QDateTime::fromMSecsSinceEpoch(data.UtcMsAt(OriginUs()), Qt::OffsetFromUTC,
                                                           data.head.offsetMinutes * SecondsPerMinute);
    return what + clock.toString(QStringLiteral("' at 'hh:mm:ss.zzz' on 'yyyy-MM-dd"));
}

} // namespace quorvik
