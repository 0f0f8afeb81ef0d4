#pragma once

#include "wizards/frame/WritePlan.h"

#include <QString>
#include <array>

namespace quorvik
{

/** The typed answers of the Basic Setup Mentor; they index BasicSetup::Info() and BasicSetup::Text(). */
enum class Entry : std::uint8_t {
    ArmatureCurrent,
    ArmatureVoltage,
    RatedSpeed,
    BaseFieldCurrent,
    TopFieldCurrent,
    TachRating,
    ForwardMaxSpeed,
    ReverseMaxSpeed,
    Ref1,
    Ref2,
    Ref3,
    JogRef,
    RunForwardAccel,
    RunForwardDecel,
    RunReverseAccel,
    RunReverseDecel,
    JogForwardAccel,
    JogForwardDecel,
    JogReverseAccel,
    JogReverseDecel,
    PositiveLimit,
    NegativeLimit,
    Count
};

inline constexpr int EntryCount = int(Entry::Count);

/** The entry that many places after first. */
constexpr Entry EntryAt(Entry first, int offset)
{
    return Entry(int(first) + offset);
}

/** A row of the table of typed answers. */
struct EntryInfo {
    const char *control; ///< of the names of its text box and of the labels before and after it
    int index;           ///< theirs, -1 for none
    const char *caption;
    const char *name; ///< what messages call it; null for the parameter's own name
    const char *unit;
    const char *preset; ///< one that has it gets the parameter's decimals when it is left
    int maxLength;
    int param;                       ///< what it is checked and converted as, 0 for none
    const char *unitLabel = nullptr; ///< where the unit's label is not named after the text box

    /** The name of one of its controls, as in "Text" + control + "(index)". */
    QString NameOf(const char *before, const char *after = "") const;
};

enum OperatingMode { StandardVelocity = 0, FieldCrossover = 1, Torque = 2 };
enum MotorField { Shunt = 0, PermanentMagnet = 1 };
enum Feedback { NoFeedback = -1, ArmatureFeedback = 0, TachometerFeedback = 1, EncoderFeedback = 2 };
enum StartStopLogic { TwoWire = 0, ThreeWire = 1 };
enum StopMode { RampStop = 0, QuickStop = 1, CoastStop = 2 };

/** What the three summing jumpers of the tachometer input are to be set to. */
struct TachJumpers {
    int j5 = 0;
    int j6 = 0;
    int j7 = 0;

    bool operator==(const TachJumpers &) const = default;
};

/**
 * The answers of the Basic Setup Mentor and what follows from them. Nothing reaches the table before
 * WriteBasicSetup(). Indices are those of the option groups and lists.
 */
class BasicSetup
{
public:
    BasicSetup(ParameterTable &table, Document &document);

    int operatingMode = StandardVelocity;
    int fieldType = Shunt;
    int feedback = ArmatureFeedback; ///< NoFeedback until chosen again after a change to field crossover
    int tachType = 0;
    int encoderLines = 2;
    int startStopLogic = ThreeWire;
    int stopMode = RampStop;
    bool saveInDrive = false;

    static const EntryInfo &Info(Entry entry);
    const QString &Text(Entry entry) const { return texts_[std::size_t(entry)]; }
    void SetText(Entry entry, const QString &text) { texts_[std::size_t(entry)] = text; }

    ParameterTable &Table() const { return table_; }
    bool IsOnline() const { return table_.PortOpen(); }
    bool IsTorque() const { return operatingMode == Torque; }
    /** Torque mode switches the jog off: what stands there is not checked. */
    bool IsAsked(Entry entry) const;
    bool UsesBaseFieldCurrent() const { return fieldType == Shunt; }
    bool UsesTopFieldCurrent() const { return fieldType == Shunt && operatingMode == FieldCrossover; }
    /** What messages call an entry. */
    QString Name(Entry entry) const;
    /** The caption of the rated speed, which is a top speed in field crossover. */
    QString RatedSpeedCaption() const;

    /** The rated speed in RPM as a 16-bit number; 0 where the text is no number. */
    std::int16_t RatedSpeed() const;
    /** Volts that the tachometer gives at rated speed. */
    double TachVoltage() const;
    TachJumpers Jumpers() const;
    /** A percentage of the motor current in amperes, as text. */
    QString LimitAmpsText(std::int32_t percent) const;

    /** What Finish will write. Raises RuntimeFailure, naming the entry, where a text cannot be converted. */
    WritePlan Plan() const;
    /** Plans, then writes. A failing conversion leaves the table as it is. */
    WritePlan WriteBasicSetup();

private:
    bool IsAcceptable(const ParameterTable &table, Entry entry, int p) const;
    std::int32_t EntryRaw(const ParameterTable &table, Entry entry, int p) const;
    std::int32_t PercentRaw(const ParameterTable &table, Entry entry, double base, int p) const;
    std::int32_t FieldPercentRaw(const ParameterTable &table, Entry entry, int p) const;

    ParameterTable &table_;
    Document &document_;
    std::array<QString, EntryCount> texts_;
};

/** The jumpers for a voltage in whole volts. */
TachJumpers JumpersFor(int volts);

/** The rating of the drive's field supply in amperes. */
inline constexpr int FieldSupplyAmps = 8;

} // namespace quorvik
