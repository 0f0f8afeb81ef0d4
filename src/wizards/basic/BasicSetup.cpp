#include "wizards/basic/BasicSetup.h"

#include "model/Conversions.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

namespace
{

constexpr std::array<EntryInfo, EntryCount> Entries = {{
    {"TextMotorData", 0, "LabelMotorData", "LabelUnits", "Current", "Armature Current", "Amps", "", 3, 123,
     false},
    {"TextMotorData", 1, "LabelMotorData", "LabelUnits", "Voltage", "Armature Voltage", "Volts", "", 5, 128,
     false},
    {"TextMotorData", 2, "LabelMotorData", "LabelUnits", "Base Speed", "Base Speed", "RPM", "", 4, 199,
     false},
    {"TextMotorData", 3, "LabelMotorData", "LabelUnits", "Base Speed Current", "Base Speed Field Current",
     "Amps", "", 4, 339, false},
    {"TextMotorData", 4, "LabelMotorData", "LabelUnits", "Top Speed Current", "Top Speed Field Current",
     "Amps", "", 4, 339, false},
    {"TextTachRating", -1, "LabelTachRating", "LabelTachUnits", "Tach Rating", "Tach Rating", "Volts/1000RPM",
     "", 3, 0, false},
    {"TextMaxSpeed", 0, "LabelMaxSpeed", "LabelMaxSpeedUnits", "Forward Max Speed", "Forward Max Speed",
     "RPM", "", 4, 0, false},
    {"TextMaxSpeed", 1, "LabelMaxSpeed", "LabelMaxSpeedUnits", "Reverse Max Speed", "Reverse Max Speed",
     "RPM", "", 5, 0, false},
    {"TextRef", 1, "LabelRef", "LabelRefUnits", "Reference 1", "Reference 1", "%", "0.00", 6, 218, true},
    {"TextRef", 2, "LabelRef", "LabelRefUnits", "Reference 2", "Reference 2", "%", "0.00", 6, 219, true},
    {"TextRef", 3, "LabelRef", "LabelRefUnits", "Reference 3", "Reference 3", "%", "0.00", 6, 220, true},
    {"TextJogRef", -1, "LabelJogRef", "LabelJogRefUnits", "Jog Reference", "Jog Reference", "%", "5.00", 6,
     221, true},
    {"TextRunAccelDecel", 0, "LabelRunAccelDecel", "LabelRunAccelDecelUnits", "Forward Accel Time A", nullptr,
     "Secs", "5.0", 5, 226, true},
    {"TextRunAccelDecel", 1, "LabelRunAccelDecel", "LabelRunAccelDecelUnits", "Forward Decel Time A", nullptr,
     "Secs", "5.0", 5, 227, true},
    {"TextRunAccelDecel", 2, "LabelRunAccelDecel", "LabelRunAccelDecelUnits", "Reverse Accel Time A", nullptr,
     "Secs", "5.0", 5, 228, true},
    {"TextRunAccelDecel", 3, "LabelRunAccelDecel", "LabelRunAccelDecelUnits", "Reverse Decel Time A", nullptr,
     "Secs", "5.0", 5, 229, true},
    {"TextJogAccelDecel", 0, "LabelJogAccelDecel", "LabelJogAccelDecelUnits", "Forward Accel Time B", nullptr,
     "Secs", "10.0", 5, 307, true},
    {"TextJogAccelDecel", 1, "LabelJogAccelDecel", "LabelJogAccelDecelUnits", "Forward Decel Time B", nullptr,
     "Secs", "10.0", 5, 308, true},
    {"TextJogAccelDecel", 2, "LabelJogAccelDecel", "LabelJogAccelDecelUnits", "Reverse Accel Time B", nullptr,
     "Secs", "10.0", 5, 309, true},
    {"TextJogAccelDecel", 3, "LabelJogAccelDecel", "LabelJogAccelDecelUnits", "Reverse Decel Time B", nullptr,
     "Secs", "10.0", 5, 310, true},
    {"TextCurrentLimit", 0, "LabelCurrentLimit", "LabelCurrentLimitUnits", "Positive Current Limit", nullptr,
     "%", "150.00", 6, 99, true},
    {"TextCurrentLimit", 1, "LabelCurrentLimit", "LabelCurrentLimitUnits", "Negative Current Limit", nullptr,
     "%", "-150.00", 7, 100, true},
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
    int param;
    Value value;
    Entry entry = Entry::Count;
    When when = When::Always;
};

constexpr CommitRow CommitRows[] = {
    {123, Value::Text, Entry::ArmatureCurrent},
    {128, Value::Text, Entry::ArmatureVoltage},
    {339, Value::FieldPercent, Entry::BaseFieldCurrent},
    {104, Value::Zero},
    {329, Value::Zero},
    {331, Value::ShuntField},
    {125, Value::Text, Entry::RatedSpeed},
    {199, Value::Text, Entry::RatedSpeed},
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
    {218, Value::Text, Entry::Ref1},
    {219, Value::Text, Entry::Ref2},
    {220, Value::Text, Entry::Ref3},
    {221, Value::Text, Entry::JogRef},
    {226, Value::Text, Entry::RunForwardAccel},
    {227, Value::Text, Entry::RunForwardDecel},
    {228, Value::Text, Entry::RunReverseAccel},
    {229, Value::Text, Entry::RunReverseDecel},
    {307, Value::Text, Entry::JogForwardAccel},
    {308, Value::Text, Entry::JogForwardDecel},
    {309, Value::Text, Entry::JogReverseAccel},
    {310, Value::Text, Entry::JogReverseDecel},
    {245, Value::TwoWire},
    {232, Value::StopMode},
    {99, Value::Text, Entry::PositiveLimit},
    {100, Value::Text, Entry::NegativeLimit},
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

BasicSetup::BasicSetup(Model &model)
    : model_(model)
{
    for (std::size_t i = 0; i < texts_.size(); ++i)
        texts_[i] = QString::fromLatin1(Entries[i].preset);
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
    return info.name == nullptr ? model_.ParamTable[info.param].Name : QString::fromLatin1(info.name);
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

bool BasicSetup::IsAcceptable(const Model &table, Entry entry, int p) const
{
    try {
        return IsNumeric(Text(entry)) && table.IsInRange(QString::number(EntryRaw(table, entry, p)), p);
    } catch (const RuntimeFailure &) {
        return false; // a number that no parameter can hold
    }
}

std::int32_t BasicSetup::EntryRaw(const Model &table, Entry entry, int p) const
{
    return EntryToRaw(Text(entry), table.ParamTable[p].Attributes);
}

std::int32_t BasicSetup::PercentRaw(const Model &table, Entry entry, double base, int p) const
{
    const double percent = CheckedDivide(CDbl(Text(entry)), base) * 100.0;
    return EntryToRaw(DoubleText(percent), table.ParamTable[p].Attributes);
}

std::int32_t BasicSetup::FieldPercentRaw(const Model &table, Entry entry, int p) const
{
    // The box of a motor without field winding is switched off and normally empty.
    if (fieldType == PermanentMagnet && entry == Entry::BaseFieldCurrent && !IsNumeric(Text(entry)))
        return 0;
    return PercentRaw(table, entry, double(FieldSupplyAmps), p);
}

WritePlan BasicSetup::Plan() const
{
    WriteRehearsal rehearsal(model_);
    const auto valueOf = [&](const CommitRow &row) -> std::int32_t {
        const Model &table = rehearsal.Table();
        switch (row.value) {
        case Value::Zero:
            return 0;
        case Value::One:
            return 1;
        case Value::Text:
            return EntryRaw(table, row.entry, row.param);
        case Value::FieldPercent:
            return FieldPercentRaw(table, row.entry, row.param);
        case Value::SpeedPercent:
            return PercentRaw(table, row.entry, CDbl(Text(Entry::RatedSpeed)), row.param);
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
        // Nobody could correct it any more, so the parameter keeps what it has.
        if (!IsAsked(row.entry) && !IsAcceptable(rehearsal.Table(), row.entry, row.param))
            continue;
        const QString name = row.entry == Entry::Count ? model_.ParamTable[row.param].Name : Name(row.entry);
        rehearsal.Write(row.param, ConvertEntry(name, [&] { return valueOf(row); }));
    }
    if (saveInDrive && IsOnline())
        rehearsal.SaveInDrive();
    return rehearsal.Plan();
}

WritePlan BasicSetup::WriteBasicSetup()
{
    WritePlan plan = Plan();
    plan.Commit(model_);
    return plan;
}

} // namespace quorvik
