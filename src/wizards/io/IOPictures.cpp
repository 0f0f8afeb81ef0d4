#include "wizards/io/IOPictures.h"

#include "platform/Numbers.h"

#include <QPainter>

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

QString ShownValue(const ValuesView &view, const ValuePair &values, std::size_t index)
{
    if (!view.IsListed())
        return values.texts[index];
    const int pick = values.picks[index];
    return pick >= 0 && pick < view.items.size() ? view.items.at(pick) : QString();
}

/** A picture of two captions with a value to each. */
PictureFile PairPicture(const char *name, const ValuesView &view, const ValuePair &values)
{
    return {name,
            {},
            {{"caption1", view.captions[0]},
             {"value1", ShownValue(view, values, 0)},
             {"caption2", view.captions[1]},
             {"value2", ShownValue(view, values, 1)}}};
}

const char *PolarityState(bool bipolar)
{
    return bipolar ? "bipolar" : "unipolar";
}

} // namespace

PictureFile BranchPicture(const IOSetup &setup)
{
    return {"branch", setup.IsInputBranch() ? "inputs" : "outputs"};
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

PictureFile AnalogTypePicture(const IOSetup &setup)
{
    const bool voltage = setup.analogType == VoltageSignal;
    return {"analog-type",
            PolarityState(setup.polarity == Bipolar),
            {{"unit", voltage ? QStringLiteral("V") : QStringLiteral("mA")},
             {"full", QString::number(setup.FullScale())}}};
}

PictureFile CalibrationPicture(const IOSetup &setup)
{
    const QString unit = setup.ActualUnit();
    const auto actual = [&](const QString &text) {
        return unit.isEmpty() || !IsNumeric(text) ? QString() : setup.ActualText(text) + u' ' + unit;
    };
    return {"scale",
            PolarityState(setup.IsBipolarAnalog()),
            {{"left", setup.calTexts[0]},
             {"right", setup.calTexts[1]},
             {"low", actual(setup.calTexts[0])},
             {"high", actual(setup.calTexts[1])},
             {"axis", unit.isEmpty() ? QStringLiteral("Hertz") : QStringLiteral("Calibration")},
             {"up", unit}}};
}

PictureFile InputValuesPicture(const IOSetup &setup)
{
    const ValuesView view = setup.InputValuesView();
    if (setup.IsDigitalInput())
        return PairPicture("two-states", view, setup.inputValues);
    return {"scale",
            PolarityState(setup.IsBipolarAnalog()),
            {{"low", view.hasFirst ? ShownValue(view, setup.inputValues, 0) : QStringLiteral("0")},
             {"high", ShownValue(view, setup.inputValues, 1)},
             {"axis", QStringLiteral("Input")},
             {"up", view.unit}}};
}

PictureFile OutputValuesPicture(const IOSetup &setup)
{
    const ValuesView view = setup.OutputValuesView();
    if (setup.outputType == RelayOutput || setup.IsDigitalMode())
        return PairPicture("switching", view, setup.outputValues);
    return {"scale",
            PolarityState(false),
            {{"low", setup.outputValues.texts[0]},
             {"high", setup.outputValues.texts[1]},
             {"axis", QStringLiteral("Source")},
             {"up", view.unit}}};
}

} // namespace quorvik
