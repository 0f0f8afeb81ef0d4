#include "trend/forms/PlotCurve.h"

#include "model/Conversions.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr double DotsFromPixels = 8; // between two samples, on average
constexpr double SpansFromPixels = 4;
constexpr double SampleRadius = 2.2;
constexpr double SpanWidth = 3;
constexpr int SpanAlpha = 90;
constexpr double SmoothWidth = 1.4;
constexpr double FineScreen = 1.5;
/** A curve of more points is drawn without smoothing, and would look no better with it. */
constexpr std::size_t MostSmoothPoints = 4000;

} // namespace

PlotLayer::PlotLayer(QCPAxisRect *rect, const QString &layer)
    : QCPLayerable(rect->parentPlot(), layer, rect)
    , rect_(rect)
{
}

void PlotLayer::applyDefaultAntialiasingHint(QCPPainter *painter) const
{
    painter->setAntialiasing(false);
}

double PlotLayer::XOf(const PlotWindow &window, qint64 timeUs) const
{
    return rect_->left() +
           double(timeUs - window.fromUs) * rect_->width() / double(window.toUs - window.fromUs);
}

PlotCurve::PlotCurve(QCPAxisRect *rect, QCPAxis *scale, int param, std::int32_t attributes)
    : PlotLayer(rect, QStringLiteral("main"))
    , scale_(scale)
    , param_(param)
    , factor_(ShownNumber(1, attributes))
{
}

void PlotCurve::Update(const SampleRing &samples, qint64 shiftUs, const PlotWindow &window)
{
    window_ = window;
    shiftUs_ = shiftUs;
    const qint64 columnUs = std::max<qint64>(1, (window.toUs - window.fromUs) / std::max(1, rect_->width()));
    reduction_.Update(samples, window.fromUs - shiftUs, window.toUs - shiftUs, columnUs);
}

std::optional<QCPRange> PlotCurve::Extent() const
{
    const auto extent = reduction_.Extent();
    if (!extent)
        return std::nullopt;
    return QCPRange(extent->first * factor_, extent->second * factor_);
}

void PlotCurve::draw(QCPPainter *painter)
{
    const std::vector<PlotPoint> &points = reduction_.Points();
    if (points.empty())
        return;
    perUs_ = rect_->width() / double(window_.toUs - window_.fromUs);
    const QCPRange range = scale_->range();
    perRaw_ = factor_ * rect_->height() / range.size();
    zeroY_ = rect_->top() + rect_->height() * range.upper / range.size();

    const bool isPaper = painter->modes().testFlag(QCPPainter::pmNoCaching);
    const bool isSmooth =
        isPaper || (!window_.isMoving && !reduction_.IsReduced() && points.size() < MostSmoothPoints);
    QPen pen = pen_;
    pen.setWidthF(isSmooth ? SmoothWidth : 0);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->setAntialiasing(isSmooth);
    line_.clear();
    line_.reserve(qsizetype(points.size()));
    for (const PlotPoint &point : points) {
        if (point.isBreak)
            DrawRun(painter, isSmooth);
        line_.append(At(point));
    }
    DrawRun(painter, isSmooth);
    if (!reduction_.IsReduced())
        DrawSamples(painter);
}

QPointF PlotCurve::At(const PlotPoint &point) const
{
    return {rect_->left() + double(point.timeUs + shiftUs_ - window_.fromUs) * perUs_,
            zeroY_ - point.rawValue * perRaw_};
}

std::optional<double> PlotCurve::HeightAt(qint64 timeUs) const
{
    const std::vector<PlotPoint> &points = reduction_.Points();
    const qint64 wantedUs = timeUs - shiftUs_;
    const auto next = std::ranges::lower_bound(points, wantedUs, {}, &PlotPoint::timeUs);
    if (next == points.end())
        return std::nullopt;
    if (next->timeUs == wantedUs)
        return At(*next).y();
    if (next == points.begin() || next->isBreak)
        return std::nullopt;
    const auto last = std::prev(next);
    const double part = double(wantedUs - last->timeUs) / double(next->timeUs - last->timeUs);
    return At(*last).y() + part * (At(*next).y() - At(*last).y());
}

void PlotCurve::DrawRun(QCPPainter *painter, bool isSmooth)
{
    if (line_.size() == 1) {
        painter->drawEllipse(line_.first(), 1, 1);
    } else if (line_.size() > 1) {
        painter->drawPolyline(line_);
        // The painter's thinnest line is its fastest by far, and half a pixel wide here.
        if (!isSmooth && mParentPlot->bufferDevicePixelRatio() > FineScreen)
            painter->drawPolyline(line_.translated(1 / FineScreen / 2, 1 / FineScreen / 2));
    }
    line_.clear();
}

void PlotCurve::DrawSamples(QCPPainter *painter)
{
    const std::vector<PlotPoint> &points = reduction_.Points();
    painter->setAntialiasing(true);
    const bool hasDots = double(reduction_.SampleCount()) * DotsFromPixels < rect_->width();
    QColor pale = pen_.color();
    pale.setAlpha(SpanAlpha);
    const QPen spanPen(pale, SpanWidth, Qt::SolidLine, Qt::FlatCap);
    for (const PlotPoint &point : points) {
        const double half = point.spanUs * perUs_ / 2;
        if (!hasDots && 2 * half < SpansFromPixels)
            continue;
        const QPointF at = At(point);
        if (2 * half >= SpansFromPixels) {
            painter->setPen(spanPen);
            painter->drawLine(QLineF(at.x() - half, at.y(), at.x() + half, at.y()));
        }
        if (hasDots) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(pen_.color());
            painter->drawEllipse(at, SampleRadius, SampleRadius);
        }
    }
}

} // namespace quorvik
