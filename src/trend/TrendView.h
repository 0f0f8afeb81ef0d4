#pragma once

#include "trend/TrendData.h"

#include <QObject>
#include <array>
#include <map>
#include <optional>
#include <vector>

namespace quorvik
{

class TrendRecorder;

/** A channel as it is drawn. */
struct TrendCurve {
    int param = 0;
    int plot = 0;   ///< which of the plots under each other, from 0
    int colour = 0; ///< index into the colours of the curves
    bool isVisible = true;
    bool hasOwnScale = false; ///< else that of its plot, together with the others of the same unit
};

/** A recording that is laid over the shown one. */
struct TrendOverlay {
    TrendDataPtr data;
    QString title;
    qint64 shiftUs = 0; ///< added to its times: brings its trigger to that of the shown recording
};

/**
 * What the trend window shows and how, without any widget: which recording, its curves and plots, the time
 * that is seen, cursors, overlays. Plot, legend and figures follow it and change it, and know nothing of each
 * other.
 */
class TrendView : public QObject
{
    Q_OBJECT

public:
    static constexpr int MostPlots = 6;
    static constexpr qint64 LeastSpanUs = 1000;

    /** @param recorder is shown until something else is; must outlive it. */
    explicit TrendView(TrendRecorder &recorder);

    /** The recording under way, a frozen copy of it, a capture, or one from a file. */
    const TrendData &Shown() const { return kept_ ? *kept_ : Live(); }
    const TrendData &Live() const;
    bool IsLive() const { return !kept_; }
    /** A recording of before is shown: not merely the live one frozen. */
    bool IsOther() const { return kept_ && !isFrozen_; }
    /** Shows another recording, all of it. */
    void Show(TrendDataPtr data);
    void ShowLive();
    /** Stops the picture and not the recording; false goes on with the live one. */
    void Freeze(bool frozen);
    bool IsFrozen() const { return isFrozen_; }

    const std::vector<TrendCurve> &Curves() const { return curves_; }
    const TrendCurve *CurveOf(int param) const;
    int PlotCount() const; ///< 1 at least
    /** Puts it into a plot; one past the last makes a new one. Plots that become empty go. */
    void Move(int param, int plot);
    void SetVisible(int param, bool visible);
    void SetOwnScale(int param, bool own);
    /** These curves in this arrangement; a channel without a curve gets one of its own accord. */
    void Arrange(std::vector<TrendCurve> curves);

    qint64 FromUs() const { return fromUs_; }
    qint64 ToUs() const { return toUs_; }
    /** Ends following, unless it is the follow mode itself that moves. */
    void SetWindow(qint64 fromUs, qint64 toUs);
    /** Smaller than 1 shows less, around a time that stays where it is. */
    void Zoom(double factor, qint64 aroundUs);
    /** Moves by a part of what is seen. */
    void Scroll(double part);
    void ShowAll();
    /** The newest sample stays at the right edge. */
    void SetFollow(bool follow);
    bool Follows() const { return follows_; }
    /** The clock went on; moves the window where it follows. */
    void Advance();

    std::optional<qint64> Cursor(int which) const { return cursors_[std::size_t(which)]; } ///< 0 or 1
    void SetCursor(int which, std::optional<qint64> timeUs);

    const std::vector<TrendOverlay> &Overlays() const { return overlays_; }
    void AddOverlay(TrendDataPtr data, const QString &title);
    void RemoveOverlays();

Q_SIGNALS:
    void DataChanged();   ///< Shown() is another recording
    void CurvesChanged(); ///< curves, plots, or overlays are others
    void WindowChanged(); ///< another time is seen, or the follow mode changed
    void CursorsChanged();

private:
    void FollowChannels();
    void DropEmptyPlots();
    void AlignOverlays();
    bool IsFree(int colour) const;
    int FreeColour() const;
    qint64 AlignedUs(const TrendData &data) const;

    TrendRecorder &recorder_;
    TrendDataPtr kept_;
    bool isFrozen_ = false;
    std::vector<TrendCurve> curves_;
    std::map<int, TrendCurve> rested_; ///< how curves were drawn that the shown recording does not have
    std::vector<TrendOverlay> overlays_;
    std::array<std::optional<qint64>, 2> cursors_;
    qint64 fromUs_ = 0;
    qint64 toUs_ = 10'000'000;
    qint64 liveSpanUs_ = 10'000'000; ///< what was seen of the live recording before another one was shown
    bool follows_ = true;
};

} // namespace quorvik
