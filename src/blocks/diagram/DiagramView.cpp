#include "blocks/diagram/DiagramView.h"

#include "blocks/diagram/DrawingPainter.h"
#include "desktop/PlainText.h"

#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double Margin = 2;
constexpr double TextHeight = 2;
constexpr double SmallestText = 8; ///< pixels of the screen
constexpr int LargestGrowth = 2;
constexpr double Tolerance = 0.15; ///< cells by which a text may be wider than at the usual size

} // namespace

DiagramView::DiagramView(QWidget *parent)
    : QWidget(parent)
{
    SetUsualFont();
}

void DiagramView::Show(Drawing &drawing)
{
    drawing_ = &drawing;
    drawing.Changed = [this](const Element &element) {
        QRectF cells = Drawing::Bounds(element);
        if (element.symbol == Symbol::Link)
            cells = drawing_->LinkLine(element).boundingRect();
        update(ToPixels(cells.adjusted(-1, -1, 1, 1)).toAlignedRect());
    };
    drawing.TextChanged = [this](int index) {
        if (index < labels_.size())
            labels_.at(index)->setText(drawing_->Texts().at(index).text);
    };
}

void DiagramView::Place(QWidget *widget, const QRectF &cells)
{
    const auto found = std::find_if(standing_.begin(), standing_.end(),
                                    [&](const Standing &standing) { return standing.widget == widget; });
    if (found == standing_.end())
        standing_.append({widget, cells, {}, {}, {}, false});
    else
        found->cells = cells;
    if (finished_)
        widget->setGeometry(ToPixels(cells).toAlignedRect());
}

void DiagramView::PlaceText(QLabel *label, const QPointF &at, Qt::Alignment align, const QString &longestText)
{
    label->setAlignment(align | Qt::AlignVCenter);
    standing_.append({label, {}, at, align, longestText, true});
}

QLabel *DiagramView::MakeLabel(const QString &name, const QString &text, bool bold)
{
    auto *label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setObjectName(name);
    label->setText(text);
    if (bold) {
        QFont strong;
        strong.setBold(true);
        label->setFont(strong);
    }
    return label;
}

double DiagramView::TextWidth(const QString &text) const
{
    return fontMetrics().horizontalAdvance(text) / Unit();
}

void DiagramView::Finish()
{
    for (const DrawnText &text : drawing_->Texts()) {
        QLabel *label = MakeLabel(text.name, text.text, text.bold);
        SetPlainToolTip(label, text.toolTip);
        PlaceText(label, text.at, text.align, text.longestText);
        labels_.append(label);
    }
    finished_ = true;
    Arrange();
}

int DiagramView::UnitOf(const QFont &font)
{
    return (QFontMetrics(font).height() + 1) / 2;
}

void DiagramView::SetUsualFont()
{
    setFont(QFont());
    usualUnit_ = UnitOf(parentWidget()->font());
    unit_ = usualUnit_;
}

double DiagramView::WidthOf(const Standing &text, QFont font)
{
    const auto *label = static_cast<const QLabel *>(text.widget);
    font.setBold(label->font().bold());
    return QFontMetricsF(font).horizontalAdvance(text.longestText.isEmpty() ? label->text()
                                                                            : text.longestText);
}

QFont DiagramView::FontFor(double unit) const
{
    const QFont usual = parentWidget()->font();
    const double pixel = 1 / devicePixelRatioF();
    const double smallest = SmallestText * pixel;
    double size = QFontInfo(usual).pixelSize() * unit / usualUnit_;
    QFont font = usual;
    // Letters grow and shrink in steps of their own; none may take more of the sheet than at the usual size.
    const auto fits = [&] {
        font.setPointSizeF(std::max(size, smallest) * 72 / logicalDpiY());
        return std::all_of(standing_.begin(), standing_.end(), [&](const Standing &standing) {
            return !standing.isText ||
                   WidthOf(standing, font) / unit <= WidthOf(standing, usual) / usualUnit_ + Tolerance;
        });
    };
    while (!fits() && size > smallest)
        size -= pixel / 2;
    return font;
}

double DiagramView::SmallestScale() const
{
    const double ratio = devicePixelRatioF();
    const double smallest = SmallestText / ratio / QFontInfo(parentWidget()->font()).pixelSize();
    return std::min(std::ceil(smallest * usualUnit_ * ratio) / (usualUnit_ * ratio), 1.0);
}

void DiagramView::Fit(const QSize &room)
{
    if (!finished_ || usualSize_.isEmpty())
        return;
    const double fits =
        std::min(double(room.width()) / usualSize_.width(), double(room.height()) / usualSize_.height());
    ScaleTo(std::min(fits, double(LargestGrowth)));
}

void DiagramView::ScaleTo(double scale)
{
    const double readable = std::max(scale, SmallestScale());
    const double ratio = devicePixelRatioF();
    const double unit =
        readable == 1.0 ? usualUnit_ : std::floor(usualUnit_ * readable * ratio + 1e-6) / ratio;
    if (!finished_ || unit == unit_)
        return;
    isFitting_ = true;
    unit_ = unit;
    setFont(unit == usualUnit_ ? QFont() : FontFor(unit));
    isFitting_ = false;
    Arrange();
}

QRectF DiagramView::CellsOf(const Standing &standing) const
{
    if (!standing.isText)
        return standing.cells;
    const double width = std::ceil(WidthOf(standing, standing.widget->font()) + 2) / Unit();
    double left = standing.at.x();
    if (standing.align & Qt::AlignRight)
        left -= width;
    else if (standing.align & Qt::AlignHCenter)
        left -= width / 2;
    return {left, standing.at.y() - TextHeight / 2, width, TextHeight};
}

void DiagramView::Arrange()
{
    QRectF all;
    for (const Standing &standing : standing_)
        all |= CellsOf(standing);
    for (const Element &element : drawing_->Elements())
        all |= Drawing::Bounds(element);
    all.adjust(-Margin, -Margin, Margin, Margin);
    origin_ = QPointF(std::floor(all.left()), std::floor(all.top()));
    for (const Standing &standing : standing_)
        standing.widget->setGeometry(ToPixels(CellsOf(standing)).toRect());
    const QSizeF size = ToPixels(QRectF(origin_, all.bottomRight())).size();
    setFixedSize(int(std::ceil(size.width())), int(std::ceil(size.height())));
    if (unit_ == usualUnit_)
        usualSize_ = this->size();
}

QRectF DiagramView::ToPixels(const QRectF &cells) const
{
    return {(cells.topLeft() - origin_) * Unit(), cells.size() * Unit()};
}

QPolygonF DiagramView::ToPixels(const QPolygonF &cells) const
{
    QPolygonF pixels;
    for (const QPointF &point : cells)
        pixels.append((point - origin_) * Unit());
    return pixels;
}

void DiagramView::paintEvent(QPaintEvent *event)
{
    const double unit = Unit();
    const QRectF exposed(QPointF(event->rect().topLeft()) / unit + origin_,
                         QSizeF(event->rect().size()) / unit);
    QPainter painter(this);
    painter.translate(-origin_ * unit);
    const DrawingInk ink(palette());
    DrawingPainter(painter, ink, unit).Paint(*drawing_, exposed);
}

void DiagramView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange || !finished_ || isFitting_)
        return;
    isFitting_ = true;
    SetUsualFont();
    isFitting_ = false;
    Arrange();
}

} // namespace quorvik
