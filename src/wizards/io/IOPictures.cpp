#include "wizards/io/IOPictures.h"

#include "platform/Numbers.h"

namespace quorvik
{

namespace
{

/** A rail of terminals, with the wire of the chosen one. */
PictureFile RailPicture(const QString &prefix, int count, int chosen, bool outgoing)
{
    constexpr int pitch = 32;
    const int top = 180 - count * pitch / 2;
    PictureFile picture{"rail", outgoing ? "out" : "in"};
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        picture.states += " terminal" + number;
        picture.texts["name" + number] = count > 1 ? prefix + u' ' + QString::number(i + 1) : prefix;
    }
    if (chosen >= 0 && chosen < count)
        picture.states += " chosen";
    picture.texts["top"] = QString::number(top);
    picture.texts["chosen"] = QString::number(top + chosen * pitch);
    return picture;
}

/** A terminal and a parameter at these heights, and the arrow between them. */
PictureFile LinkPicture(const ParameterTable &table, int p, int terminal, int arrow, int parameter)
{
    return {"link",
            {},
            {{"terminal", QString::number(terminal)},
             {"arrow", QString::number(arrow)},
             {"parameter", QString::number(parameter)},
             {"number", QString::number(p)},
             {"name", table[p].Name}}};
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

PictureFile InputTerminalsPicture(const IOSetup &setup)
{
    switch (setup.inputType) {
    case DigitalInput:
        return RailPicture(QStringLiteral("DI"), 7, setup.input, false);
    case FrequencyInput:
        return RailPicture(QStringLiteral("FI"), 1, setup.input, false);
    default:
        return RailPicture(QStringLiteral("AI"), 5, setup.IsAnalogInput() ? setup.input : NoChoice, false);
    }
}

PictureFile OutputTerminalsPicture(const IOSetup &setup)
{
    switch (setup.outputType) {
    case RelayOutput:
        return RailPicture(QStringLiteral("RO"), 3, setup.output, true);
    case FreqDigOutput:
        return RailPicture(setup.IsDigitalMode() ? QStringLiteral("DO") : QStringLiteral("FO"), 1,
                           setup.output, true);
    default:
        return RailPicture(QStringLiteral("AO"), 2,
                           setup.outputType == AnalogOutput ? setup.output : NoChoice, true);
    }
}

PictureFile DestinationPicture(const IOSetup &setup)
{
    return LinkPicture(setup.Table(), setup.Destination, 70, 112, 180);
}

PictureFile SourcePicture(const IOSetup &setup)
{
    return LinkPicture(setup.Table(), setup.Source, 230, 162, 86);
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
