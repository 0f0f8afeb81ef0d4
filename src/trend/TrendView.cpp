#include "trend/TrendView.h"

#include "platform/Guard.h"
#include "trend/TrendRecorder.h"

#include <algorithm>
#include <set>
#include <utility>

namespace quorvik
{

TrendView::TrendView(TrendRecorder &recorder)
    : recorder_(recorder)
{
    On(&recorder, &TrendRecorder::ChannelsChanged, this, [this] { FollowChannels(); });
    On(&recorder, &TrendRecorder::StateChanged, this, [this] {
        // A new recording is what its maker wants to see.
        if (recorder_.IsRunning() && recorder_.Data().FirstUs() >= recorder_.Data().LastUs() && !IsOther())
            ShowLive();
    });
    On(&recorder, &TrendRecorder::Aligned, this, [this] {
        AlignOverlays();
        if (!overlays_.empty())
            Q_EMIT CurvesChanged();
    });
    FollowChannels();
}

const TrendData &TrendView::Live() const
{
    return recorder_.Data();
}

void TrendView::Show(TrendDataPtr data)
{
    if (!IsOther())
        liveSpanUs_ = toUs_ - fromUs_;
    kept_ = std::move(data);
    isFrozen_ = false;
    follows_ = false;
    cursors_ = {};
    FollowChannels();
    AlignOverlays();
    Q_EMIT DataChanged();
    ShowAll();
    Q_EMIT CursorsChanged();
}

void TrendView::ShowLive()
{
    // As much of it as before the other recording.
    if (IsOther())
        fromUs_ = toUs_ - liveSpanUs_;
    kept_.reset();
    isFrozen_ = false;
    follows_ = true;
    cursors_ = {};
    FollowChannels();
    AlignOverlays();
    Q_EMIT DataChanged();
    Q_EMIT CursorsChanged();
    Advance();
}

void TrendView::Freeze(bool frozen)
{
    if (frozen == isFrozen_ || IsOther())
        return;
    if (!frozen) {
        ShowLive();
        return;
    }
    kept_ = recorder_.Snapshot();
    isFrozen_ = true;
    follows_ = false;
    Q_EMIT DataChanged();
    Q_EMIT WindowChanged();
}

const TrendCurve *TrendView::CurveOf(int param) const
{
    const auto found = std::ranges::find(curves_, param, &TrendCurve::param);
    return found == curves_.end() ? nullptr : &*found;
}

int TrendView::PlotCount() const
{
    int last = 0;
    for (const TrendCurve &curve : curves_)
        last = std::max(last, curve.plot);
    return last + 1;
}

bool TrendView::IsFree(int colour) const
{
    return std::ranges::find(curves_, colour, &TrendCurve::colour) == curves_.end();
}

int TrendView::FreeColour() const
{
    int colour = 0;
    while (!IsFree(colour))
        ++colour;
    return colour;
}

void TrendView::FollowChannels()
{
    const TrendData &data = Shown();
    std::erase_if(curves_, [&](const TrendCurve &curve) {
        if (data.TrackOf(curve.param) != nullptr)
            return false;
        rested_[curve.param] = curve;
        return true;
    });
    for (const TrendTrack &track : data.tracks) {
        const int p = track.channel.param;
        if (CurveOf(p) != nullptr)
            continue;
        // After a look at another recording, or a change of the channels, it is drawn as before.
        if (const auto rested = rested_.find(p); rested != rested_.end()) {
            TrendCurve curve = rested->second;
            if (!IsFree(curve.colour))
                curve.colour = FreeColour();
            curves_.push_back(curve);
            continue;
        }
        // Beside the one that came before it: what is chosen together is compared.
        const int plot = curves_.empty() ? 0 : curves_.back().plot;
        curves_.push_back({.param = p, .plot = plot, .colour = FreeColour()});
    }
    DropEmptyPlots();
    Q_EMIT CurvesChanged();
}

void TrendView::DropEmptyPlots()
{
    std::set<int> used;
    for (const TrendCurve &curve : curves_)
        used.insert(curve.plot);
    for (TrendCurve &curve : curves_)
        curve.plot = int(std::distance(used.begin(), used.find(curve.plot)));
}

void TrendView::Move(int param, int plot)
{
    const auto found = std::ranges::find(curves_, param, &TrendCurve::param);
    if (found == curves_.end())
        return;
    found->plot = std::clamp(plot, 0, std::min(PlotCount(), MostPlots - 1));
    DropEmptyPlots();
    Q_EMIT CurvesChanged();
}

void TrendView::SetVisible(int param, bool visible)
{
    const auto found = std::ranges::find(curves_, param, &TrendCurve::param);
    if (found == curves_.end() || found->isVisible == visible)
        return;
    found->isVisible = visible;
    Q_EMIT CurvesChanged();
}

void TrendView::SetOwnScale(int param, bool own)
{
    const auto found = std::ranges::find(curves_, param, &TrendCurve::param);
    if (found == curves_.end() || found->hasOwnScale == own)
        return;
    found->hasOwnScale = own;
    Q_EMIT CurvesChanged();
}

void TrendView::Arrange(std::vector<TrendCurve> curves)
{
    curves_ = std::move(curves);
    for (TrendCurve &curve : curves_)
        curve.plot = std::clamp(curve.plot, 0, MostPlots - 1);
    FollowChannels();
}

void TrendView::SetWindow(qint64 fromUs, qint64 toUs)
{
    fromUs_ = fromUs;
    toUs_ = std::max(toUs, fromUs + LeastSpanUs);
    follows_ = false;
    Q_EMIT WindowChanged();
}

void TrendView::Zoom(double factor, qint64 aroundUs)
{
    const double longest = 2.0 * recorder_.Timings().mostKeepMs * 1000.0;
    const double span = std::clamp(double(toUs_ - fromUs_) * factor, double(LeastSpanUs), longest);
    if (follows_) {
        // The right edge is where it looks.
        fromUs_ = toUs_ - qint64(span);
        Q_EMIT WindowChanged();
        return;
    }
    const double part = double(aroundUs - fromUs_) / double(toUs_ - fromUs_);
    const qint64 from = aroundUs - qint64(part * span);
    SetWindow(from, from + qint64(span));
}

void TrendView::Scroll(double part)
{
    const auto shift = qint64(part * double(toUs_ - fromUs_));
    SetWindow(fromUs_ + shift, toUs_ + shift);
}

void TrendView::ShowAll()
{
    qint64 first = Shown().FirstUs();
    qint64 last = Shown().LastUs();
    for (const TrendOverlay &overlay : overlays_) {
        first = std::min(first, overlay.data->FirstUs() + overlay.shiftUs);
        last = std::max(last, overlay.data->LastUs() + overlay.shiftUs);
    }
    SetWindow(first, last);
}

void TrendView::SetFollow(bool follow)
{
    if (follow && !IsLive())
        ShowLive();
    follows_ = follow;
    Q_EMIT WindowChanged();
    Advance();
}

void TrendView::Advance()
{
    if (!follows_ || !IsLive())
        return;
    const qint64 span = toUs_ - fromUs_;
    const qint64 last = Shown().LastUs();
    if (last == toUs_)
        return;
    toUs_ = last;
    fromUs_ = last - span;
    Q_EMIT WindowChanged();
}

void TrendView::SetCursor(int which, std::optional<qint64> timeUs)
{
    cursors_[std::size_t(which)] = timeUs;
    Q_EMIT CursorsChanged();
}

qint64 TrendView::AlignedUs(const TrendData &data) const
{
    return data.triggerUs.value_or(data.FirstUs());
}

void TrendView::AlignOverlays()
{
    for (TrendOverlay &overlay : overlays_)
        overlay.shiftUs = AlignedUs(Shown()) - AlignedUs(*overlay.data);
}

void TrendView::AddOverlay(TrendDataPtr data, const QString &title)
{
    overlays_.push_back({std::move(data), title, 0});
    AlignOverlays();
    Q_EMIT CurvesChanged();
}

void TrendView::RemoveOverlays()
{
    overlays_.clear();
    Q_EMIT CurvesChanged();
}

} // namespace quorvik
