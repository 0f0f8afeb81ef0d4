#include "wizards/io/IOPictures.h"

#include "platform/Numbers.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace quorvik
{

namespace
{

void DrawTerminal(QPainter &painter, const Ink &ink, const QRectF &box, bool chosen)
{
    UseShape(painter, ink.line, chosen ? ink.accent : ink.body, chosen ? 2.2 : 1.4);
    painter.drawRect(box);
    const QPointF centre = box.center();
    const qreal radius = box.height() * 0.28;
    UseShape(painter, chosen ? ink.onAccent : ink.line, Qt::transparent, 1.3);
    painter.drawEllipse(centre, radius, radius);
    const QPointF slot(radius * 0.7, radius * 0.7);
    painter.drawLine(centre - slot, centre + slot);
}

/** A rail of terminals, with the wire of the chosen one. */
void DrawRail(QPainter &painter, const Ink &ink, const QString &prefix, int count, int chosen, bool outgoing)
{
    constexpr qreal pitch = 32;
    const qreal top = 180 - count * pitch / 2;
    for (int i = 0; i < count; ++i) {
        const QRectF box(110, top + i * pitch, 44, pitch - 3);
        DrawTerminal(painter, ink, box, i == chosen);
        painter.setPen(ink.line);
        const QString text = count > 1 ? prefix + u' ' + QString::number(i + 1) : prefix;
        DrawCaptionRight(painter, {160, box.center().y()}, text, 12);
        if (i != chosen)
            continue;
        UsePen(painter, ink.accent, 3);
        const QPointF far(24, box.center().y());
        const QPointF near(box.left() - 3, box.center().y());
        if (outgoing)
            DrawArrow(painter, near, far);
        else
            DrawArrow(painter, far, near);
    }
}

void DrawParameterBox(QPainter &painter, const Ink &ink, const QRectF &box, int number, const QString &name)
{
    UseShape(painter, ink.line, ink.accent, 1.8);
    painter.drawRoundedRect(box, 6, 6);
    painter.setPen(ink.onAccent);
    DrawCaption(painter, {box.center().x(), box.top() + 19}, QString::number(number), 18, true);
    QFont font = painter.font();
    font.setPixelSize(12);
    font.setBold(false);
    painter.setFont(font);
    painter.drawText(box.adjusted(6, 34, -6, -4), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, name);
}

/** A straight line between two points of a diagram with marks at 0 and at 100 per cent. */
struct Scale {
    QString left;  ///< at 0 per cent, under the axis
    QString right; ///< at 100 per cent
    QString low;   ///< what 0 per cent comes to, beside the line's lower end
    QString high;
    QString axis;
    QString upAxis;
    bool throughZero = false; ///< goes on below zero to the left
};

void DrawScale(QPainter &painter, const Ink &ink, const Scale &scale)
{
    constexpr qreal left = 40;
    constexpr qreal right = 176;
    constexpr qreal bottom = 262;
    constexpr qreal top = 96;
    const QPointF start = scale.throughZero ? QPointF(108, 179) : QPointF(left + 12, bottom - 30);
    const QPointF end(right - 6, top + 24);
    const qreal zeroX = scale.throughZero ? start.x() : left;
    const qreal zeroY = scale.throughZero ? start.y() : bottom;
    UsePen(painter, ink.line, 1.4);
    DrawArrow(painter, {scale.throughZero ? 24 : left, zeroY}, {206, zeroY});
    DrawArrow(painter, {zeroX, bottom}, {zeroX, 70});
    painter.setPen(QPen(ink.faint, 1.2, Qt::DashLine));
    painter.drawLine(QPointF(end.x(), end.y()), QPointF(end.x(), zeroY));
    painter.drawLine(QPointF(end.x(), end.y()), QPointF(zeroX, end.y()));
    if (!scale.throughZero)
        painter.drawLine(start, QPointF(start.x(), zeroY));
    UsePen(painter, ink.accent, 3.5);
    painter.drawLine(scale.throughZero ? start - (end - start) : start, end);
    UseShape(painter, ink.line, ink.accent, 1.4);
    painter.drawEllipse(start, 5, 5);
    painter.drawEllipse(end, 5, 5);
    painter.setPen(ink.line);
    DrawCaption(painter, {start.x() + (scale.throughZero ? 16 : 0), zeroY + 14}, QStringLiteral("0 %"), 12,
                true);
    DrawCaption(painter, {end.x(), zeroY + 14}, QStringLiteral("100 %"), 12, true);
    DrawCaption(painter, {start.x() + (scale.throughZero ? 20 : 0), zeroY + 29}, scale.left, 11);
    DrawCaption(painter, {end.x(), zeroY + 29}, scale.right, 11);
    if (scale.throughZero)
        DrawCaption(painter, {start.x() - 48, start.y() - 14}, scale.low, 12);
    else
        DrawCaptionRight(painter, {start.x() + 12, start.y() + 2}, scale.low, 12);
    DrawCaption(painter, {end.x() - 4, end.y() - 16}, scale.high, 12);
    DrawCaption(painter, {110, bottom + (scale.throughZero ? 18 : 48)}, scale.axis, 11);
    DrawCaptionRight(painter, {zeroX + 9, 74}, scale.upAxis, 11);
}

QString ShownValue(const ValuesView &view, const ValuePair &values, std::size_t index)
{
    if (!view.IsListed())
        return values.texts[index];
    const int pick = values.picks[index];
    return pick >= 0 && pick < view.items.size() ? view.items.at(pick) : QString();
}

/** What two states of a contact come to: input open and closed, output on and off. */
void DrawTwoStates(QPainter &painter, const Ink &ink, const ValuesView &view, const ValuePair &values)
{
    for (std::size_t i = 0; i < 2; ++i) {
        const qreal y = 120 + qreal(i) * 110;
        const bool open = i == 0;
        painter.setPen(ink.line);
        DrawCaption(painter, {110, y - 36}, view.captions[i], 12, true);
        UsePen(painter, ink.line, 2);
        painter.drawLine(QPointF(16, y), QPointF(38, y));
        painter.drawLine(QPointF(72, y), QPointF(90, y));
        UsePen(painter, ink.accent, 3);
        painter.drawLine(QPointF(38, y), open ? QPointF(68, y - 18) : QPointF(72, y));
        UseShape(painter, ink.line, ink.ground, 1.5);
        painter.drawEllipse(QPointF(38, y), 4, 4);
        painter.drawEllipse(QPointF(72, y), 4, 4);
        UsePen(painter, ink.line, 2);
        DrawArrow(painter, {90, y}, {122, y});
        const QRectF box(124, y - 16, 84, 32);
        UseShape(painter, ink.line, ink.body, 1.6);
        painter.drawRoundedRect(box, 4, 4);
        DrawCaption(painter, box.center(), ShownValue(view, values, i), 13, true);
    }
}

/** The source crossing the level that turns an output on, and the one that turns it off. */
void DrawSwitching(QPainter &painter, const Ink &ink, const ValuesView &view, const ValuePair &values)
{
    constexpr qreal onLevel = 116;
    constexpr qreal offLevel = 160;
    UsePen(painter, ink.line, 1.4);
    DrawArrow(painter, {20, 220}, {208, 220});
    DrawArrow(painter, {20, 220}, {20, 66});
    painter.setPen(QPen(ink.faint, 1.3, Qt::DashLine));
    painter.drawLine(QPointF(20, onLevel), QPointF(200, onLevel));
    painter.drawLine(QPointF(20, offLevel), QPointF(200, offLevel));
    QPainterPath source(QPointF(76, 212));
    source.cubicTo({112, 206}, {112, 84}, {136, 84});
    source.cubicTo({160, 84}, {160, 206}, {198, 212});
    UsePen(painter, ink.line, 2);
    painter.drawPath(source);
    UsePen(painter, ink.accent, 3.5);
    painter.drawPolyline(QPolygonF{{20, 296}, {115, 296}, {115, 264}, {164, 264}, {164, 296}, {200, 296}});
    painter.setPen(ink.line);
    DrawCaptionRight(painter, {26, onLevel - 9}, view.captions[0], 11);
    DrawCaptionRight(painter, {26, onLevel + 10}, ShownValue(view, values, 0), 12);
    DrawCaptionRight(painter, {26, offLevel - 9}, view.captions[1], 11);
    DrawCaptionRight(painter, {26, offLevel + 10}, ShownValue(view, values, 1), 12);
    DrawCaptionRight(painter, {26, 282}, QStringLiteral("Output"), 11);
}

} // namespace

void DrawInputsAndOutputs(QPainter &painter, const Ink &ink)
{
    DrawDrive(painter, ink, {55, 100}, 110);
    UsePen(painter, ink.accent, 3);
    for (int i = 0; i < 3; ++i) {
        const qreal y = 130 + i * 40;
        DrawArrow(painter, {10, y}, {50, y});
        DrawArrow(painter, {170, y}, {210, y});
    }
}

void DrawBranch(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    DrawDrive(painter, ink, {60, 110}, 100);
    for (int i = 0; i < 3; ++i) {
        const qreal y = 135 + i * 38;
        UsePen(painter, setup.IsInputBranch() ? ink.accent : ink.faint, setup.IsInputBranch() ? 3.5 : 2);
        DrawArrow(painter, {10, y}, {55, y});
        UsePen(painter, setup.IsInputBranch() ? ink.faint : ink.accent, setup.IsInputBranch() ? 2 : 3.5);
        DrawArrow(painter, {165, y}, {210, y});
    }
    painter.setPen(ink.line);
    DrawCaption(painter, {34, 96}, QStringLiteral("Inputs"), 13, setup.IsInputBranch());
    DrawCaption(painter, {186, 96}, QStringLiteral("Outputs"), 13, !setup.IsInputBranch());
}

void DrawInputTerminals(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    switch (setup.inputType) {
    case DigitalInput:
        DrawRail(painter, ink, QStringLiteral("DI"), 7, setup.input, false);
        break;
    case FrequencyInput:
        DrawRail(painter, ink, QStringLiteral("FI"), 1, setup.input, false);
        break;
    default:
        DrawRail(painter, ink, QStringLiteral("AI"), 5, setup.IsAnalogInput() ? setup.input : NoChoice,
                 false);
        break;
    }
}

void DrawOutputTerminals(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    switch (setup.outputType) {
    case RelayOutput:
        DrawRail(painter, ink, QStringLiteral("RO"), 3, setup.output, true);
        break;
    case FreqDigOutput:
        DrawRail(painter, ink, setup.IsDigitalMode() ? QStringLiteral("DO") : QStringLiteral("FO"), 1,
                 setup.output, true);
        break;
    default:
        DrawRail(painter, ink, QStringLiteral("AO"), 2,
                 setup.outputType == AnalogOutput ? setup.output : NoChoice, true);
        break;
    }
}

void DrawDestination(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    DrawTerminal(painter, ink, {85, 70, 50, 40}, false);
    UsePen(painter, ink.line, 2);
    DrawArrow(painter, {110, 112}, {110, 176});
    DrawParameterBox(painter, ink, {25, 180, 170, 76}, setup.Destination,
                     setup.Table().ParamTable[setup.Destination].Name);
}

void DrawSource(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    DrawParameterBox(painter, ink, {25, 86, 170, 76}, setup.Source,
                     setup.Table().ParamTable[setup.Source].Name);
    UsePen(painter, ink.line, 2);
    DrawArrow(painter, {110, 162}, {110, 226});
    DrawTerminal(painter, ink, {85, 230, 50, 40}, false);
}

void DrawAnalogType(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    const bool voltage = setup.analogType == VoltageSignal;
    const bool bipolar = setup.polarity == Bipolar;
    const QString unit = voltage ? QStringLiteral("V") : QStringLiteral("mA");
    const QString full = QString::number(setup.FullScale());

    UsePen(painter, ink.line, 2);
    painter.drawPolyline(QPolygonF{{60, 70}, {60, 52}, {160, 52}, {160, 62}});
    painter.drawPolyline(QPolygonF{{60, 110}, {60, 128}, {160, 128}, {160, 118}});
    DrawMachine(painter, ink, {60, 90}, 20, unit, true);
    DrawTerminal(painter, ink, {144, 62, 32, 26}, false);
    DrawTerminal(painter, ink, {144, 92, 32, 26}, false);

    const qreal zero = bipolar ? 240 : 300;
    UsePen(painter, ink.line, 1.4);
    DrawArrow(painter, {44, zero}, {208, zero});
    DrawArrow(painter, {44, 310}, {44, 162});
    QPainterPath wave(QPointF(44, zero));
    for (int x = 44; x <= 196; x += 2) {
        const qreal phase = (x - 44) / 152.0 * 2 * M_PI;
        const qreal height = bipolar ? 60 * std::sin(phase) : 60 * (1 - std::cos(phase));
        wave.lineTo(x, zero - height);
    }
    UsePen(painter, ink.accent, 3);
    painter.drawPath(wave);
    painter.setPen(ink.line);
    DrawCaption(painter, {22, 180}, QStringLiteral("+") + full, 12);
    DrawCaption(painter, {30, zero}, QStringLiteral("0"), 12);
    if (bipolar)
        DrawCaption(painter, {22, 300}, QStringLiteral("-") + full, 12);
    DrawCaption(painter, {64, 162}, unit, 12, true);
}

void DrawCalibration(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    const QString unit = setup.ActualUnit();
    const auto actual = [&](const QString &text) {
        return unit.isEmpty() || !IsNumeric(text) ? QString() : setup.ActualText(text) + u' ' + unit;
    };
    DrawScale(painter, ink,
              {setup.calTexts[0], setup.calTexts[1], actual(setup.calTexts[0]), actual(setup.calTexts[1]),
               unit.isEmpty() ? QStringLiteral("Hertz") : QStringLiteral("Calibration"), unit,
               setup.IsBipolarAnalog()});
}

void DrawInputValues(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    const ValuesView view = setup.InputValuesView();
    if (setup.IsDigitalInput()) {
        DrawTwoStates(painter, ink, view, setup.inputValues);
        return;
    }
    DrawScale(painter, ink,
              {{},
               {},
               view.hasFirst ? ShownValue(view, setup.inputValues, 0) : QStringLiteral("0"),
               ShownValue(view, setup.inputValues, 1),
               QStringLiteral("Input"),
               view.unit,
               setup.IsBipolarAnalog()});
}

void DrawOutputValues(QPainter &painter, const Ink &ink, const IOSetup &setup)
{
    const ValuesView view = setup.OutputValuesView();
    if (setup.outputType == RelayOutput || setup.IsDigitalMode()) {
        DrawSwitching(painter, ink, view, setup.outputValues);
        return;
    }
    DrawScale(painter, ink,
              {{},
               {},
               setup.outputValues.texts[0],
               setup.outputValues.texts[1],
               QStringLiteral("Source"),
               view.unit,
               false});
}

} // namespace quorvik
