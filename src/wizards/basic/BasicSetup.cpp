#include "wizards/basic/BasicSetup.h"

#include "desktop/Form.h"
#include "model/Conversions.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace quorvik
{

namespace
{

constexpr std::array<EntryInfo, EntryCount> Entries = {{
    {"MotorData", 0, "Current", "Armature Current", "Amps", "", 3, 123, "LabelUnits"},
    {"MotorData", 1, "Voltage", "Armature Voltage", "Volts", "", 5, 128, "LabelUnits"},
    {"MotorData", 2, "Base Speed", "Base Speed", "RPM", "", 4, 199, "LabelUnits"},
    {"MotorData", 3, "Base Speed Current", "Base Speed Field Current", "Amps", "", 4, 339, "LabelUnits"},
    {"MotorData", 4, "Top Speed Current", "Top Speed Field Current", "Amps", "", 4, 339, "LabelUnits"},
    {"TachRating", -1, "Tach Rating", "Tach Rating", "Volts/1000RPM", "", 3, 0, "LabelTachUnits"},
    {"MaxSpeed", 0, "Forward Max Speed", "Forward Max Speed", "RPM", "", 4, 0},
    {"MaxSpeed", 1, "Reverse Max Speed", "Reverse Max Speed", "RPM", "", 5, 0},
    {"Ref", 1, "Reference 1", "Reference 1", "%", "0.00", 6, 218},
    {"Ref", 2, "Reference 2", "Reference 2", "%", "0.00", 6, 219},
    {"Ref", 3, "Reference 3", "Reference 3", "%", "0.00", 6, 220},
    {"JogRef", -1, "Jog Reference", "Jog Reference", "%", "5.00", 6, 221},
    {"RunAccelDecel", 0, "Forward Accel Time A", nullptr, "Secs", "5.0", 5, 226},
    {"RunAccelDecel", 1, "Forward Decel Time A", nullptr, "Secs", "5.0", 5, 227},
    {"RunAccelDecel", 2, "Reverse Accel Time A", nullptr, "Secs", "5.0", 5, 228},
    {"RunAccelDecel", 3, "Reverse Decel Time A", nullptr, "Secs", "5.0", 5, 229},
    {"JogAccelDecel", 0, "Forward Accel Time B", nullptr, "Secs", "10.0", 5, 307},
    {"JogAccelDecel", 1, "Forward Decel Time B", nullptr, "Secs", "10.0", 5, 308},
    {"JogAccelDecel", 2, "Reverse Accel Time B", nullptr, "Secs", "10.0", 5, 309},
    {"JogAccelDecel", 3, "Reverse Decel Time B", nullptr, "Secs", "10.0", 5, 310},
    {"CurrentLimit", 0, "Positive Current Limit", nullptr, "%", "150.00", 6, 99},
    {"CurrentLimit", 1, "Negative Current Limit", nullptr, "%", "-150.00", 7, 100},
}};

enum class When : std::uint8_t { Always, CrossoverOnly, VelocityModes };

enum class Value : std::uint8_t {
    Zero,
    One,
    Text,
    FieldPercent,
    SpeedPercent,
    ShuntField,
    TorqueMode,
    Feedback,
    TachType,
    EncoderLines,
    TwoWire,
    StopMode
};

struct CommitRow {
    int param; ///< 0 for the one of each entry
    Value value;
    Entry entry = Entry::Count;
    When when = When::Always;
    Entry last = {}; ///< where several entries follow each other
};

constexpr CommitRow CommitRows[] = {
    {0, Value::Text, Entry::ArmatureCurrent, When::Always, Entry::ArmatureVoltage},
    {0, Value::FieldPercent, Entry::BaseFieldCurrent},
    {104, Value::Zero},
    {329, Value::Zero},
    {331, Value::ShuntField},
    {125, Value::Text, Entry::RatedSpeed},
    {0, Value::Text, Entry::RatedSpeed},
    {109, Value::Zero},
    {110, Value::TorqueMode},
    // No mode clears an earlier field crossover: that stays the block windows' business.
    {423, Value::One, Entry::Count, When::CrossoverOnly},
    {424, Value::FieldPercent, Entry::TopFieldCurrent, When::CrossoverOnly},
    {248, Value::One, Entry::Count, When::CrossoverOnly},
    {197, Value::Feedback, Entry::Count, When::VelocityModes},
    {127, Value::TachType, Entry::Count, When::VelocityModes},
    {124, Value::EncoderLines, Entry::Count, When::VelocityModes},
    {190, Value::SpeedPercent, Entry::ForwardMaxSpeed, When::VelocityModes},
    {191, Value::SpeedPercent, Entry::ReverseMaxSpeed, When::VelocityModes},
    {0, Value::Text, Entry::Ref1, When::Always, Entry::JogReverseDecel},
    {245, Value::TwoWire},
    {232, Value::StopMode},
    {0, Value::Text, Entry::PositiveLimit, When::Always, Entry::NegativeLimit},
};

bool Applies(When when, int operatingMode)
{
    switch (when) {
    case When::CrossoverOnly:
        return operatingMode == FieldCrossover;
    case When::VelocityModes:
        return operatingMode != Torque;
    case When::Always:
        break;
    }
    return true;
}

} // namespace

BasicSetup::BasicSetup(ParameterTable &table, Document &document)
    : table_(table)
    , document_(document)
{
    for (std::size_t i = 0; i < texts_.size(); ++i)
        texts_[i] = QString::fromLatin1(Entries[i].preset);
}

QString EntryInfo::NameOf(const char *before, const char *after) const
{
    return ControlName(QByteArray(before) + control + after, index);
}

const EntryInfo &BasicSetup::Info(Entry entry)
{
    return Entries[std::size_t(entry)];
}

QString BasicSetup::Name(Entry entry) const
{
    if (entry == Entry::RatedSpeed)
        return RatedSpeedCaption();
    const EntryInfo &info = Info(entry);
    return info.name == nullptr ? table_[info.param].Name : QString::fromLatin1(info.name);
}

QString BasicSetup::RatedSpeedCaption() const
{
    return operatingMode == FieldCrossover ? QStringLiteral("Top Speed") : QStringLiteral("Base Speed");
}

bool BasicSetup::IsAsked(Entry entry) const
{
    const bool isJog =
        entry == Entry::JogRef || (entry >= Entry::JogForwardAccel && entry <= Entry::JogReverseDecel);
    return !(isJog && IsTorque());
}

std::int16_t BasicSetup::RatedSpeed() const
{
    const QString &text = Text(Entry::RatedSpeed);
    return IsNumeric(text) ? CInt(CDbl(text)) : std::int16_t(0);
}

double BasicSetup::TachVoltage() const
{
    const QString &ratingText = Text(Entry::TachRating);
    const double rating = IsNumeric(ratingText) ? CInt(CDbl(ratingText)) : 0;
    return RatedSpeed() * rating / 1000.0;
}

TachJumpers JumpersFor(int volts)
{
    if (volts >= 201)
        return {100, 100, 0};
    if (volts < 10)
        return {10, 0, 0};
    TachJumpers jumpers;
    int rest = volts;
    if (volts >= 110) {
        jumpers.j6 = 100;
        rest = volts - 100;
    }
    jumpers.j5 = rest < 100 ? rest / 10 * 10 : rest / 100 * 100;
    jumpers.j7 = rest - jumpers.j5;
    return jumpers;
}

TachJumpers BasicSetup::Jumpers() const
{
    return JumpersFor(CInt(TachVoltage()));
}

QString BasicSetup::LimitAmpsText(std::int32_t percent) const
{
    const QString &ampsText = Text(Entry::ArmatureCurrent);
    if (!IsNumeric(ampsText))
        return QStringLiteral("0");
    return DoubleText(CheckedMultiply(CInt(CDbl(ampsText)), percent) / 100.0);
}

bool BasicSetup::IsAcceptable(const ParameterTable &table, Entry entry, int p) const
{
    try {
        return IsNumeric(Text(entry)) && table.IsInRange(QString::number(EntryRaw(table, entry, p)), p);
    } catch (const RuntimeFailure &) {
        return false; // a number that no parameter can hold
    }
}

std::int32_t BasicSetup::EntryRaw(const ParameterTable &table, Entry entry, int p) const
{
    return EntryToRaw(Text(entry), table[p].Attributes);
}

std::int32_t BasicSetup::PercentRaw(const ParameterTable &table, Entry entry, double base, int p) const
{
    const double percent = CheckedDivide(CDbl(Text(entry)), base) * 100.0;
    return EntryToRaw(DoubleText(percent), table[p].Attributes);
}

std::int32_t BasicSetup::FieldPercentRaw(const ParameterTable &table, Entry entry, int p) const
{
    // The box of a motor without field winding is switched off and normally empty.
    if (fieldType == PermanentMagnet && entry == Entry::BaseFieldCurrent && !IsNumeric(Text(entry)))
        return 0;
    return PercentRaw(table, entry, double(FieldSupplyAmps), p);
}

WritePlan BasicSetup::Plan() const
{
    WriteRehearsal rehearsal(table_);
    const auto valueOf = [&](Value value, Entry entry, int p) -> std::int32_t {
        const ParameterTable &table = rehearsal.Table();
        switch (value) {
        case Value::Zero:
            return 0;
        case Value::One:
            return 1;
        case Value::Text:
            return EntryRaw(table, entry, p);
        case Value::FieldPercent:
            return FieldPercentRaw(table, entry, p);
        case Value::SpeedPercent:
            return PercentRaw(table, entry, CDbl(Text(Entry::RatedSpeed)), p);
        case Value::ShuntField:
            return fieldType == Shunt ? 1 : 0;
        case Value::TorqueMode:
            return IsTorque() ? 1 : 0;
        case Value::Feedback:
            if (feedback == NoFeedback)
                throw RuntimeFailure(QStringLiteral("No feedback is chosen."));
            return feedback;
        case Value::TachType:
            return tachType;
        case Value::EncoderLines:
            return encoderLines;
        case Value::TwoWire:
            return startStopLogic == TwoWire ? 1 : 0;
        case Value::StopMode:
            return stopMode;
        }
        return 0;
    };
    for (const CommitRow &row : CommitRows) {
        if (!Applies(row.when, operatingMode))
            continue;
        for (Entry entry = row.entry; entry <= std::max(row.entry, row.last); entry = EntryAt(entry, 1)) {
            const int p = row.param != 0 ? row.param : Info(entry).param;
            // Nobody could correct it any more, so the parameter keeps what it has.
            if (!IsAsked(entry) && !IsAcceptable(rehearsal.Table(), entry, p))
                continue;
            const QString name = entry == Entry::Count ? table_[p].Name : Name(entry);
            rehearsal.Write(p, ConvertEntry(name, [&] { return valueOf(row.value, entry, p); }));
        }
    }
    if (saveInDrive && IsOnline())
        rehearsal.SaveInDrive();
    return rehearsal.Plan();
}

WritePlan BasicSetup::WriteBasicSetup()
{
    WritePlan plan = Plan();
    plan.Commit(table_, document_);
    return plan;
}

} // namespace quorvik
