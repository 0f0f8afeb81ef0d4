#include "settings/forms/PrintData.h"

#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>

namespace quorvik
{

namespace
{

struct ReportFonts {
    QFont body;
    QFont underlined;
    QFont title;
};

ReportFonts MakeFonts()
{
    QFont body(QStringLiteral("Courier New"), 10);
    // Where it is missing, fonts of the same widths take its place.
    body.setFamilies({QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"),
                      QStringLiteral("Nimbus Mono PS"), QStringLiteral("FreeMono")});
    body.setStyleHint(QFont::Monospace);
    body.setFixedPitch(true);
    ReportFonts fonts{body, body, body};
    fonts.underlined.setUnderline(true);
    fonts.title.setPointSize(12);
    fonts.title.setBold(true);
    return fonts;
}

const QFont &FontOf(const ReportFonts &fonts, ReportFont font)
{
    switch (font) {
    case ReportFont::Underlined:
        return fonts.underlined;
    case ReportFont::Title:
        return fonts.title;
    case ReportFont::Body:
        break;
    }
    return fonts.body;
}

/** Draws pages whose places are in inches on a device with so many dots to the inch. */
class PagePainter
{
public:
    PagePainter(QPainter &painter, QPagedPaintDevice &device, const ReportFonts &fonts)
        : painter_(painter)
        , device_(device)
        , fonts_(fonts)
        , dotsX_(device.logicalDpiX())
        , dotsY_(device.logicalDpiY())
    {
        painter_.setPen(QPen(Qt::black, dotsY_ / 100));
    }

    void Draw(const ReportPage &page)
    {
        for (const PlacedText &placed : page.texts) {
            const QFont &font = FontOf(fonts_, placed.font);
            painter_.setFont(font);
            painter_.drawText(
                QPointF(placed.x * dotsX_, placed.y * dotsY_ + QFontMetricsF(font, &device_).ascent()),
                placed.text);
        }
        for (const PlacedRule &rule : page.rules)
            painter_.drawLine(QPointF(rule.left * dotsX_, rule.y * dotsY_),
                              QPointF(rule.right * dotsX_, rule.y * dotsY_));
    }

private:
    QPainter &painter_;
    QPagedPaintDevice &device_;
    const ReportFonts &fonts_;
    double dotsX_;
    double dotsY_;
};

} // namespace

QString PrintData(QPagedPaintDevice &device, const ReportContent &content)
{
    QString failure = QStringLiteral("The report could not be printed.");
    QPainter painter;
    if (!painter.begin(&device))
        return failure;
    const ReportFonts fonts = MakeFonts();
    const QFontMetricsF body(fonts.body, &device);
    const QSizeF paper = device.pageLayout().paintRect(QPageLayout::Inch).size();
    const double dotsX = device.logicalDpiX();
    const double dotsY = device.logicalDpiY();
    const ReportMetrics metrics{
        paper.width(), paper.height(), body.lineSpacing() / dotsY,
        QFontMetricsF(fonts.title, &device).lineSpacing() / dotsY,
        [&body, dotsX](const QString &text) { return body.horizontalAdvance(text) / dotsX; }};

    PagePainter pages(painter, device, fonts);
    bool isFirst = true;
    for (const ReportPage &page : LayOutReport(content, metrics)) {
        if (!isFirst && !device.newPage())
            return failure;
        isFirst = false;
        pages.Draw(page);
    }
    return painter.end() ? QString() : failure;
}

} // namespace quorvik
