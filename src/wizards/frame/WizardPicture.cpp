#include "wizards/frame/WizardPicture.h"

#include "desktop/BoxColors.h"
#include "platform/RuntimeFailure.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <QResource>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>

static void LoadPictures()
{
    Q_INIT_RESOURCE(pictures);
}

namespace quorvik
{

namespace
{

void SetTextHeight(QPainter &painter, qreal height, bool bold)
{
    QFont font = painter.font();
    // The canvas is scaled, so pixels are canvas units here.
    font.setPixelSize(int(std::lround(height)));
    font.setBold(bold);
    painter.setFont(font);
}

struct FilledFile {
    QByteArray svg;
    QStringList texts;
};

/** A file as it is to be shown. */
FilledFile Filled(const PictureFile &picture, const Ink &ink)
{
    LoadPictures();
    QByteArray drawn =
        QResource(QStringLiteral(":/pictures/%1.svg").arg(QLatin1String(picture.name))).uncompressedData();
    // The colours of the files; QColor writes in lower case, so none is replaced twice.
    const std::pair<const char *, QColor> colors[] = {{"#1A1A1A", ink.line},   {"#A8A8A8", ink.faint},
                                                      {"#F5F5F5", ink.body},   {"#E6EEF7", ink.ground},
                                                      {"#2A6FB5", ink.accent}, {"#FFFFFF", ink.onAccent}};
    for (const auto &[inFile, color] : colors)
        drawn.replace(inFile, color.name().toLatin1());

    const QStringList states = QString::fromLatin1(picture.states).split(u' ');
    const auto isLeftOut = [&](const QString &classes) {
        const QStringList words = classes.split(u' ', Qt::SkipEmptyParts);
        return !words.isEmpty() &&
               std::ranges::none_of(words, [&](const QString &word) { return states.contains(word); });
    };
    static const QRegularExpression place(QStringLiteral("\\{(\\w+)\\}"));
    FilledFile filled;
    QXmlStreamReader in(drawn);
    QXmlStreamWriter out(&filled.svg);
    in.setNamespaceProcessing(false);
    while (!in.atEnd()) {
        in.readNext();
        if (in.isStartElement() && isLeftOut(in.attributes().value(QLatin1String("class")).toString())) {
            in.skipCurrentElement();
        } else if (in.isCharacters() && !in.isWhitespace()) {
            QString text = in.text().toString();
            if (const auto match = place.match(text); match.hasMatch())
                text.replace(match.capturedStart(), match.capturedLength(),
                             picture.texts.value(match.captured(1).toLatin1()));
            out.writeCharacters(text);
            if (!text.isEmpty())
                filled.texts += text;
        } else {
            out.writeCurrentToken(in);
        }
    }
    return filled;
}

} // namespace

Ink::Ink(const QPalette &palette)
    : line(palette.color(QPalette::Text))
    , faint(Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.32))
    , body(Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.04))
    , ground(Mixed(palette.color(QPalette::Base), palette.color(QPalette::Highlight), 0.10))
    , accent(palette.color(QPalette::Highlight))
    , onAccent(palette.color(QPalette::HighlightedText))
{
}

WizardPicture::WizardPicture(QWidget *parent, const QString &description, DrawFunction draw)
    : QWidget(parent)
    , draw_(std::move(draw))
{
    setObjectName(QStringLiteral("Image1"));
    setAccessibleName(description);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

WizardPicture::WizardPicture(QWidget *parent, const QString &description, FileFunction file)
    : WizardPicture(parent, description, [this](QPainter &painter, const Ink &ink) {
        QSvgRenderer(Filled(file_(), ink).svg).render(&painter, QRectF(0, 0, CanvasWidth, CanvasHeight));
    })
{
    file_ = std::move(file);
}

QString WizardPicture::Text() const
{
    return file_ ? Filled(file_(), Ink(palette())).texts.join(u' ') : QString();
}

QSize WizardPicture::sizeHint() const
{
    const int width = int(fontMetrics().height() * 13);
    return {width, width * CanvasHeight / CanvasWidth};
}

qreal WizardPicture::Unit() const
{
    return std::min(width() / qreal(CanvasWidth), height() / qreal(CanvasHeight));
}

QPointF WizardPicture::Origin() const
{
    return {(width() - CanvasWidth * Unit()) / 2, (height() - CanvasHeight * Unit()) / 2};
}

void WizardPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Ink ink(palette());
    painter.fillRect(rect(), ink.ground);
    painter.translate(Origin());
    painter.scale(Unit(), Unit());
    try {
        draw_(painter, ink);
    } catch (const RuntimeFailure &) {
        // A picture is decoration: what cannot be worked out is told where it is asked for, not at each
        // paint.
    }
}

void UsePen(QPainter &painter, const QColor &color, qreal width)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

void UseShape(QPainter &painter, const QColor &color, const QColor &fill, qreal width)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(fill);
}

void DrawArrow(QPainter &painter, QPointF from, QPointF to)
{
    constexpr qreal headLength = 9;
    constexpr qreal headWidth = 7;
    const QLineF line(from, to);
    const QPointF along = (to - from) / line.length();
    const QPointF across(-along.y(), along.x());
    const QPointF neck = to - along * headLength;
    painter.drawLine(from, neck);
    QPainterPath head(to);
    head.lineTo(neck + across * headWidth / 2);
    head.lineTo(neck - across * headWidth / 2);
    head.closeSubpath();
    painter.fillPath(head, painter.pen().color());
}

void DrawCaption(QPainter &painter, QPointF centre, const QString &text, qreal height, bool bold)
{
    SetTextHeight(painter, height, bold);
    const QRectF box(centre.x() - 200, centre.y() - height, 400, 2 * height);
    painter.drawText(box, Qt::AlignCenter, text);
}

void DrawCaptionRight(QPainter &painter, QPointF left, const QString &text, qreal height)
{
    SetTextHeight(painter, height, false);
    painter.drawText(QRectF(left.x(), left.y() - height, 400, 2 * height), Qt::AlignLeft | Qt::AlignVCenter,
                     text);
}

} // namespace quorvik
