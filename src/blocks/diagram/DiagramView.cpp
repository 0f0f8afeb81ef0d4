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
constexpr int SmallestText = 8; ///< pixels
constexpr int LargestGrowth = 2;

} // namespace

DiagramView::DiagramView(QWidget *parent)
    : QWidget(parent)
{
    drawing.Changed = [this](const Element &element) {
        QRectF cells = Drawing::Bounds(element);
        if (element.symbol == Symbol::Link)
            cells = drawing.LinkLine(element).boundingRect();
        update(ToPixels(cells.adjusted(-1, -1, 1, 1)).toAlignedRect());
    };
    SetUsualFont();
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
    return fontMetrics().horizontalAdvance(text) / double(Unit());
}

void DiagramView::Finish()
{
    for (const DrawnText &text : drawing.Texts()) {
        QLabel *label = MakeLabel(text.name, text.text, text.bold);
        SetPlainToolTip(label, text.toolTip);
        PlaceText(label, text.at, text.align);
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

double DiagramView::WidthOf(const Standing &text, QFont font, int unit) const
{
    const auto *label = static_cast<const QLabel *>(text.widget);
    font.setBold(label->font().bold());
    const QString &longest = text.longestText.isEmpty() ? label->text() : text.longestText;
    return std::ceil(QFontMetrics(font).horizontalAdvance(longest) + 2) / unit;
}

int DiagramView::TextSizeFor(int unit) const
{
    const QFont usual = parentWidget()->font();
    QFont font = usual;
    int size = QFontInfo(usual).pixelSize() * unit / usualUnit_;
    // Letters grow and shrink in steps of their own; none may take more of the sheet than at the usual size.
    const auto fits = [&] {
        font.setPixelSize(size);
        return std::all_of(standing_.begin(), standing_.end(), [&](const Standing &standing) {
            return !standing.isText || WidthOf(standing, font, unit) <= WidthOf(standing, usual, usualUnit_);
        });
    };
    while (size > SmallestText && !fits())
        --size;
    return std::max(size, SmallestText);
}

void DiagramView::Fit(const QSize &room)
{
    if (!finished_ || usualSize_.isEmpty())
        return;
    const double fits =
        std::min(double(room.width()) / usualSize_.width(), double(room.height()) / usualSize_.height());
    const int usualText = QFontInfo(parentWidget()->font()).pixelSize();
    const int smallest = std::min((SmallestText * usualUnit_ + usualText - 1) / usualText, usualUnit_);
    const int unit = std::clamp(int(usualUnit_ * fits), smallest, LargestGrowth * usualUnit_);
    if (unit == unit_)
        return;
    isFitting_ = true;
    unit_ = unit;
    QFont font;
    if (unit != usualUnit_)
        font.setPixelSize(TextSizeFor(unit));
    setFont(font);
    isFitting_ = false;
    Arrange();
}

QRectF DiagramView::CellsOf(const Standing &standing) const
{
    if (!standing.isText)
        return standing.cells;
    const double width = WidthOf(standing, standing.widget->font(), Unit());
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
    for (const Element &element : drawing.Elements())
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
    DrawingPainter(painter, ink, unit).Paint(drawing, exposed);
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
