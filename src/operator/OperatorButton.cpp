#include "operator/OperatorButton.h"

#include "desktop/BoxColors.h"
#include "platform/Guard.h"

#include <QPainter>
#include <QPainterPath>
#include <array>

namespace quorvik
{

namespace
{

struct Look {
    QRgb colour; ///< white is readable on it
    const char *word;
    const char *accessibleName;
    bool isSolid; ///< coloured all over even while not lit
};

constexpr std::array<Look, 3> Looks = {{
    {0xff2e7d32, "RUN", "Run", false},
    {0xffc62828, "STOP", "Stop", true},
    {0xff1565c0, "JOG", "Jog", false},
}};

/** Half-way between a button's text and its face: readable in any palette, and still no command. */
QColor Faded(const QPalette &palette)
{
    return Mixed(palette.color(QPalette::Active, QPalette::ButtonText),
                 palette.color(QPalette::Active, QPalette::Button), 0.5);
}

/** The symbol within a square of side 1 around the origin. */
QPainterPath SymbolPath(OperatorSymbol symbol)
{
    QPainterPath path;
    switch (symbol) {
    case OperatorSymbol::Run:
        path.addPolygon(QPolygonF({{-0.38, -0.5}, {0.5, 0}, {-0.38, 0.5}}));
        path.closeSubpath();
        break;
    case OperatorSymbol::Stop:
        path.addRect(QRectF(-0.45, -0.45, 0.9, 0.9));
        break;
    case OperatorSymbol::Jog:
        // A step forward up to a bar: it moves only as long as it is held.
        path.addPolygon(QPolygonF({{-0.5, -0.42}, {0.2, 0}, {-0.5, 0.42}}));
        path.closeSubpath();
        path.addRect(QRectF(0.3, -0.42, 0.2, 0.84));
        break;
    }
    return path;
}

} // namespace

OperatorButton::OperatorButton(OperatorSymbol symbol, QWidget *parent)
    : QPushButton(parent)
    , symbol_(symbol)
{
    setAccessibleName(QLatin1String(Looks.at(std::size_t(symbol)).accessibleName));
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void OperatorButton::SetLit(bool isLit)
{
    isLit_ = isLit;
    setAccessibleDescription(isLit ? QStringLiteral("on") : QString());
    update();
}

QSize OperatorButton::sizeHint() const
{
    return QSize(7, 6) * fontMetrics().height();
}

void OperatorButton::paintEvent(QPaintEvent *)
{
    Guarded([this] {
        const Look &look = Looks.at(std::size_t(symbol_));
        const bool isSolid = isLit_ || (look.isSolid && isEnabled());
        const bool isDark = palette().color(QPalette::Window).lightness() < 128;
        const QColor colour(look.colour);
        QColor face = isSolid ? colour : palette().color(QPalette::Button);
        if (isDown())
            face = face.darker(125);
        else if (underMouse() && isEnabled())
            face = face.lighter(112);
        QColor ink = colour;
        QColor wordInk = palette().color(QPalette::ButtonText);
        if (isSolid)
            ink = wordInk = Qt::white;
        else if (!isEnabled())
            ink = wordInk = Faded(palette());
        else if (isDark)
            ink = colour.lighter(170);

        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double unit = fontMetrics().height();
        QRectF box = QRectF(rect()).adjusted(2, 2, -2, -2);
        if (!isDown()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(0, 0, 0, 60));
            painter.drawRoundedRect(box.translated(0, 1.5), unit * 0.4, unit * 0.4);
        }
        painter.setBrush(face);
        painter.setPen(
            QPen(isEnabled() || isSolid ? colour.darker(isSolid ? 140 : 100) : Faded(palette()), 2));
        painter.drawRoundedRect(box, unit * 0.4, unit * 0.4);
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(
                QPen(isSolid ? QColor(Qt::white) : palette().color(QPalette::Highlight), 1.5, Qt::DotLine));
            painter.drawRoundedRect(box.adjusted(4, 4, -4, -4), unit * 0.25, unit * 0.25);
        }

        const double wordHeight = unit * 1.5;
        const QRectF symbolBox = box.adjusted(0, unit * 0.5, 0, -wordHeight);
        const double side = std::min(symbolBox.height(), symbolBox.width() * 0.42);
        painter.save();
        painter.translate(symbolBox.center());
        painter.scale(side, side);
        painter.fillPath(SymbolPath(symbol_), ink);
        painter.restore();

        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        painter.setPen(wordInk);
        painter.drawText(QRectF(box.left(), box.bottom() - wordHeight, box.width(), wordHeight),
                         Qt::AlignCenter,
                         QLatin1String(look.word) + (isLit_ ? QStringLiteral(" ON") : QString()));
    });
}

} // namespace quorvik
