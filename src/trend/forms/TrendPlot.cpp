#include "trend/forms/TrendPlot.h"

#include "desktop/ParameterMime.h"
#include "desktop/PlainText.h"
#include "platform/Clock.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotCanvas.h"
#include "trend/forms/PlotColours.h"
#include "trend/forms/PlotCursors.h"
#include "trend/forms/PlotExport.h"

#include <QDropEvent>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int FrameMs = 50;
constexpr int SlowestFrameMs = 100;
constexpr int RestPerWork = 8; // a picture that took long is followed by a pause of so many times as long

} // namespace

TrendPlot::TrendPlot(TrendView &view, QWidget *parent)
    : QWidget(parent)
    , view_(view)
    , canvas_(new PlotCanvas(view, this))
{
    setObjectName(QStringLiteral("TrendPlot"));
    canvas_->setObjectName(QStringLiteral("PlotCanvas"));
    canvas_->setAccessibleName(QStringLiteral("Trend plots"));
    setFocusProxy(canvas_);
    setAcceptDrops(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(canvas_);

    const auto rebuild = [this] {
        canvas_->Board().Rebuild();
        canvas_->Refresh();
        Speak();
    };
    On(&view, &TrendView::CurvesChanged, this, rebuild);
    On(&view, &TrendView::DataChanged, this, rebuild);
    On(&view, &TrendView::WindowChanged, this, [this] {
        canvas_->Refresh();
        if (!view_.Follows())
            Speak();
    });
    On(&view, &TrendView::CursorsChanged, this, [this] {
        canvas_->update();
        Speak();
    });
    On(&frames_, &QTimer::timeout, this, [this] { Tick(); });
    frames_.setInterval(FrameMs);
    canvas_->Board().Rebuild();
    FollowLook();
    Speak();
}

TrendPlot::~TrendPlot() = default;

QColor TrendPlot::ColourOf(int colour) const
{
    return PlotColour(colour, palette().color(QPalette::Base));
}

QPen TrendPlot::PenOf(int colour) const
{
    return PlotPen(colour, palette().color(QPalette::Base));
}

void TrendPlot::FitValues()
{
    canvas_->Board().FreeScales();
    canvas_->Refresh();
}

QString TrendPlot::Export(const QString &path)
{
    return ExportPlots(path, *canvas_, view_);
}

qint64 TrendPlot::Amount() const
{
    qint64 amount = qint64(view_.Shown().marks.size());
    for (const TrendTrack &track : view_.Shown().tracks)
        amount += track.samples.Appended();
    return amount;
}

void TrendPlot::Tick()
{
    if (!view_.IsLive())
        return;
    const qint64 amount = Amount();
    if (amount == amount_)
        return;
    amount_ = amount;
    view_.Advance();
    if (!view_.Follows() && view_.ToUs() < view_.Shown().FirstUs())
        return;
    const qint64 beganUs = MicrosecondsUp();
    canvas_->Redraw();
    const qint64 workMs = (MicrosecondsUp() - beganUs) / UsPerMs;
    frames_.setInterval(int(std::clamp<qint64>(workMs * RestPerWork, FrameMs, SlowestFrameMs)));
}

void TrendPlot::FollowLook()
{
    canvas_->Board().SetLook(PlotLook::Of(palette(), font()));
    canvas_->Refresh();
}

void TrendPlot::Speak()
{
    SetSpokenText(canvas_, SpokenPlots(view_));
}

void TrendPlot::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange)
        Guarded([this] { FollowLook(); });
}

void TrendPlot::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    frames_.start();
    canvas_->Refresh();
}

void TrendPlot::hideEvent(QHideEvent *event)
{
    frames_.stop();
    QWidget::hideEvent(event);
}

int TrendPlot::PlotFor(const QPoint &position) const
{
    return std::min(canvas_->Board().PlotAt(canvas_->mapFrom(this, position).y()), TrendView::MostPlots - 1);
}

void TrendPlot::dragEnterEvent(QDragEnterEvent *event)
{
    if (ParameterOf(*event->mimeData()))
        event->acceptProposedAction();
}

void TrendPlot::dragMoveEvent(QDragMoveEvent *event)
{
    canvas_->ShowDrop(PlotFor(event->position().toPoint()));
    event->acceptProposedAction();
}

void TrendPlot::dragLeaveEvent(QDragLeaveEvent *)
{
    canvas_->ShowDrop(std::nullopt);
}

void TrendPlot::dropEvent(QDropEvent *event)
{
    Guarded([&] {
        canvas_->ShowDrop(std::nullopt);
        const std::optional<int> p = ParameterOf(*event->mimeData());
        if (!p)
            return;
        const int plot = PlotFor(event->position().toPoint());
        event->acceptProposedAction();
        if (view_.CurveOf(*p) != nullptr)
            view_.Move(*p, plot);
        else
            Q_EMIT ParameterDropped(*p, plot);
    });
}

} // namespace quorvik
