#include "wizards/frame/WizardPicture.h"

#include "desktop/BoxColors.h"
#include "platform/RuntimeFailure.h"

#include <QPainter>
#include <QRegularExpression>
#include <QResource>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <algorithm>

static void LoadPictures()
{
    Q_INIT_RESOURCE(pictures);
}

namespace quorvik
{

namespace
{

/** A file with its colours and texts in place, as text. */
QString Filled(const PictureFile &picture, const Ink &ink)
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

    static const QRegularExpression place(QStringLiteral("\\{(\\w+)\\}"));
    const QString svg = QString::fromUtf8(drawn);
    QString filled;
    qsizetype done = 0;
    for (const auto &match : place.globalMatch(svg)) {
        filled += svg.mid(done, match.capturedStart() - done);
        filled += picture.texts.value(match.captured(1).toLatin1()).toHtmlEscaped();
        done = match.capturedEnd();
    }
    return filled + svg.mid(done);
}

/** What is left of a file in its states: the drawing, and the texts in it. */
std::pair<QByteArray, QStringList> Shown(const PictureFile &picture, const Ink &ink)
{
    const QStringList states = QString::fromLatin1(picture.states).split(u' ');
    const auto isState = [&](const QString &word) { return states.contains(word); };
    QByteArray drawing;
    QStringList texts;
    QXmlStreamReader in(Filled(picture, ink));
    QXmlStreamWriter out(&drawing);
    in.setNamespaceProcessing(false);
    while (!in.atEnd()) {
        in.readNext();
        const QStringList classes =
            in.attributes().value(QLatin1String("class")).toString().split(u' ', Qt::SkipEmptyParts);
        if (in.isStartElement() && !classes.isEmpty() && std::ranges::none_of(classes, isState)) {
            in.skipCurrentElement();
            continue;
        }
        if (in.isCharacters() && !in.isWhitespace())
            texts += in.text().toString();
        out.writeCurrentToken(in);
    }
    return {drawing, texts};
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

WizardPicture::WizardPicture(QWidget *parent, const QString &description, FileFunction file)
    : QWidget(parent)
    , file_(std::move(file))
{
    setObjectName(QStringLiteral("Image1"));
    setAccessibleName(description);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QString WizardPicture::Text() const
{
    return Shown(file_(), Ink(palette())).second.join(u' ');
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
    try {
        QSvgRenderer(Shown(file_(), ink).first)
            .render(&painter, QRectF(Origin(), QSizeF(CanvasWidth, CanvasHeight) * Unit()));
    } catch (const RuntimeFailure &) {
        // A picture is decoration: what cannot be worked out is told where it is asked for, not at each
        // paint.
    }
}

} // namespace quorvik
