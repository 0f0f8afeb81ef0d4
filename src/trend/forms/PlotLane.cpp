#include "trend/forms/PlotLane.h"

#include "desktop/BoxColors.h"
#include "model/ShownText.h"

#include <QPalette>
#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

constexpr int TextPadding = 4;
constexpr int RowGap = 2;
constexpr double GridShare = 0.86;
constexpr double FaintShare = 0.5;
constexpr QRgb PaperGrid = 0xDDDDDD;
constexpr QRgb PaperFaint = 0x777777;
constexpr QRgb PaperChosen = 0x1E7AD2;

} // namespace

PlotLook PlotLook::Of(const QPalette &palette, const QFont &font)
{
    const QColor ground = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    return {ground,
            text,
            Mixed(text, ground, GridShare),
            Mixed(text, ground, FaintShare),
            palette.color(QPalette::Highlight),
            font};
}

PlotLook PlotLook::OfPaper(const QFont &font)
{
    return {Qt::white, Qt::black, QColor(PaperGrid), QColor(PaperFaint), QColor(PaperChosen), font};
}

PlotLane::PlotLane(QCPAxisRect *rect, int param, std::int32_t attributes)
    : PlotLayer(rect, QStringLiteral("main"))
    , param_(param)
    , attributes_(attributes)
{
}

void PlotLane::SetPlace(int number, int count)
{
    number_ = number;
    count_ = count;
}

void PlotLane::SetLook(const PlotLook &look, const QColor &colour)
{
    look_ = look;
    colour_ = colour;
}

void PlotLane::Update(const SampleRing &samples, const PlotWindow &window)
{
    window_ = window;
    const qint64 columnUs = std::max<qint64>(1, (window.toUs - window.fromUs) / std::max(1, rect_->width()));
    reduction_.Update(samples, window.fromUs, window.toUs, columnUs);
    bands_.clear();
    for (const PlotPoint &point : reduction_.Points()) {
        const bool isJoined = !bands_.empty() && !point.isBreak;
        // The old value is known to its last sample; between two samples the text of the older one stands.
        if (isJoined)
            bands_.back().toUs = point.timeUs;
        if (!isJoined || bands_.back().rawValue != point.rawValue)
            bands_.push_back({point.timeUs, point.timeUs, point.rawValue});
    }
}

QColor PlotLane::ShadeOf(std::int32_t rawValue) const
{
    // Neighbouring values differ; off is the palest.
    static constexpr std::array<double, 4> shares = {0.86, 0.25, 0.6, 0.0};
    const auto place = std::size_t(std::uint32_t(rawValue) % shares.size());
    return Mixed(colour_, look_.ground, shares[place]);
}

QRect PlotLane::clipRect() const
{
    // The name stands beside the frame.
    return {rect_->outerRect().left(), rect_->top(), rect_->right() - rect_->outerRect().left() + 1,
            rect_->height()};
}

QRectF PlotLane::Row() const
{
    const double height = double(rect_->height()) / count_;
    return {double(rect_->left()), rect_->top() + number_ * height + RowGap, double(rect_->width()),
            height - 2 * RowGap};
}

void PlotLane::draw(QCPPainter *painter)
{
    const QRectF row = Row();
    painter->setFont(look_.font);
    painter->setPen(look_.text);
    const QRectF beside(rect_->outerRect().left(), row.top(),
                        rect_->left() - rect_->outerRect().left() - 2 * TextPadding, row.height());
    painter->drawText(beside, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("(%1)").arg(param_));
    for (const Band &band : bands_)
        DrawBand(painter, band, row);
}

void PlotLane::DrawBand(QCPPainter *painter, const Band &band, const QRectF &row) const
{
    const double left = std::max(XOf(window_, band.fromUs), row.left());
    const double right = std::min(XOf(window_, band.toUs), row.right());
    if (right < left)
        return;
    const QRectF rect(left, row.top(), std::max(1.0, right - left), row.height());
    const QColor shade = ShadeOf(band.rawValue);
    painter->fillRect(rect, shade);
    painter->setPen(QPen(colour_, 0));
    painter->drawLine(rect.topLeft(), rect.topRight());
    painter->drawLine(rect.bottomLeft(), rect.bottomRight());
    painter->drawLine(rect.topLeft(), rect.bottomLeft());
    const double room = rect.width() - 2 * TextPadding;
    const QFontMetricsF metrics(look_.font);
    if (room < metrics.averageCharWidth() * 2)
        return;
    const QString text = ShownText(band.rawValue, attributes_);
    if (metrics.horizontalAdvance(text) > room)
        return;
    painter->setPen(ContrastingText(shade));
    painter->drawText(rect.adjusted(TextPadding, 0, -TextPadding, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
}

} // namespace quorvik
