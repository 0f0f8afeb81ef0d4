#pragma once

#include "wizards/frame/WritePlan.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <array>

namespace quorvik
{

enum Branch { Inputs = 0, Outputs = 1 };
enum InputType { AnalogInput = 0, DigitalInput = 1, FrequencyInput = 2 };
enum AnalogType { CurrentSignal = 0, VoltageSignal = 1 };
enum Polarity { Unipolar = 0, Bipolar = 1 };
enum OutputType { AnalogOutput = 0, FreqDigOutput = 1, RelayOutput = 2 };
enum FreqDigMode { FrequencyMode = 0, DigitalMode = 1 };

/** Index of an option group or list of which nothing is chosen. */
inline constexpr int NoChoice = -1;

/** A pair of values as an answer: typed, or picked from the list of a listed parameter. */
struct ValuePair {
    std::array<QString, 2> texts;
    std::array<int, 2> picks{NoChoice, NoChoice};
};

/** What a page of two values says and offers. */
struct ValuesView {
    QString intro;
    std::array<QString, 2> instructions;
    std::array<QString, 2> captions;
    QString unit;
    QString range;
    QStringList items;    ///< of both lists; empty where the values are typed
    bool hasFirst = true; ///< a bipolar input has a gain and no bias

    bool IsListed() const { return !items.isEmpty(); }
};

/**
 * The answers of the I/O Mentor and what follows from them. Everything that depends on a choice is worked out
 * from the choices when it is asked for. Nothing reaches the table before WriteIOSetup().
 */
class IOSetup
{
public:
    IOSetup(ParameterTable &table, Document &document);

    int branch = Inputs;
    int inputType = NoChoice;
    int input = NoChoice; ///< zero-based
    int analogType = NoChoice;
    int polarity = NoChoice;
    int outputType = NoChoice;
    int output = NoChoice; ///< zero-based
    int freqDigMode = NoChoice;
    std::int16_t Destination = 0; ///< the parameter that the input is to control
    std::int16_t Source = 0;      ///< the parameter that is to drive the output
    QList<int> overwritten; ///< selectors that may lose their link where it is to the chosen destination
    std::array<QString, 2> calTexts; ///< raw counts at 0% and at 100%
    ValuePair inputValues;
    ValuePair outputValues;
    bool saveInDrive = false;

    ParameterTable &Table() const { return table_; }
    bool IsInputBranch() const { return branch == Inputs; }
    bool IsAnalogInput() const { return inputType == AnalogInput; }
    bool IsDigitalInput() const { return inputType == DigitalInput; }
    bool IsFrequencyInput() const { return inputType == FrequencyInput; }
    bool IsBipolarAnalog() const { return IsAnalogInput() && polarity == Bipolar; }
    bool IsDigitalMode() const { return outputType == FreqDigOutput && freqDigMode == DigitalMode; }
    /** Analog input 5 takes voltage only. */
    bool IsVoltageOnly() const { return IsAnalogInput() && input == 4; }

    /** Zero-based index of the chosen input or output; 0 while none is chosen. */
    int IOIndex() const;
    int DestinationParam() const; ///< the chosen input's selector, 0 while no kind is chosen
    int SourceParam() const;      ///< the chosen output's selector, 0 while no kind is chosen
    int BiasParam() const;        ///< bias, Open Value or On Value of the branch's block
    int GainParam() const;        ///< gain, Closed Value or Off Value of the branch's block
    int InvertParam() const;      ///< 0 where the block has none
    int StatusParam() const;      ///< what the calibration page reads

    std::int32_t CalMin() const;    ///< lowest raw calibration count
    std::int32_t CalMax() const;    ///< highest raw calibration count
    std::int32_t FullScale() const; ///< 10 volts or 20 milliamperes
    /** The engineering value of raw counts, and back. */
    QString ActualText(const QString &calText) const;
    QString CalText(const QString &actualText) const;

    QString AnalogRangeText() const;
    QString CalibrateText() const;
    /** "mAmps", "Volts" or, for a frequency, empty: it has no engineering value. */
    QString ActualUnit() const;

    ValuesView InputValuesView() const;
    ValuesView OutputValuesView() const;

    /** What Finish will write. Raises RuntimeFailure, naming the entry, where a text cannot be converted or
     * the source has no range. */
    WritePlan Plan() const;
    /** Plans, then writes. A failure while planning leaves the table as it is. */
    WritePlan WriteIOSetup();

private:
    struct Block;
    const Block *InputBlock() const;
    const Block *OutputBlock() const;
    const Block *ChosenBlock() const { return IsInputBranch() ? InputBlock() : OutputBlock(); }

    void PlanInput(WriteRehearsal &rehearsal) const;
    void PlanOutput(WriteRehearsal &rehearsal) const;
    void PlanCalibration(WriteRehearsal &rehearsal, int lowParam, int highParam) const;
    void PlanValues(WriteRehearsal &rehearsal, const ValuesView &view, const ValuePair &values,
                    int scaleParam) const;
    void PlanScaledOutput(WriteRehearsal &rehearsal, double fullScale, double gainFactor,
                          const QString &unitName) const;

    ParameterTable &table_;
    Document &document_;
};

} // namespace quorvik
