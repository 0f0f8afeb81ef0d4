#include "wizards/basic/BasicChecks.h"

#include "model/Conversions.h"
#include "operations/EntryRules.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "wizards/frame/MentorTitle.h"

#include <limits>

namespace quorvik
{

namespace
{

constexpr std::int32_t SpeedAttributes = 480;        // RPM without decimals
constexpr std::int32_t FieldCurrentAttributes = 450; // amperes with two decimals
constexpr double MaxTachVolts = 200.0;

PageCheck Refused(Entry focus)
{
    return {false, BasicSetup::Info(focus).NameOf("Text")};
}

// Limits are compared as 16-bit whole numbers; what does not fit is out of every range.
bool IsSpeedBetween(const QString &text, int low, int high)
{
    const double speed = RoundHalfEven(CDbl(text));
    using Limits = std::numeric_limits<std::int16_t>;
    return speed >= Limits::min() && speed <= Limits::max() && speed >= low && speed <= high;
}

} // namespace

BasicChecks::BasicChecks(const BasicSetup &setup, EntryRules &rules, Asker &asker)
    : setup_(setup)
    , rules_(rules)
    , asker_(asker)
{
}

PageCheck BasicChecks::ValidateStep(int step) const
{
    switch (step) {
    case 1:
        return ValidateModel();
    case 3:
        return ValidateMotorData();
    case 4:
        return ValidateFeedback();
    case 5:
        return ValidateMaxSpeeds();
    case 6:
        return ValidateEntries(Entry::Ref1, 4);
    case 7:
        return ValidateEntries(Entry::RunForwardAccel, 8);
    case 9:
        return ValidateEntries(Entry::PositiveLimit, 2);
    default:
        return {};
    }
}

void BasicChecks::Tell(const QString &text) const
{
    asker_.MsgBox(text, MsgButtons::Ok, MsgIcon::Exclamation, MentorTitle());
}

PageCheck BasicChecks::ValidateModel() const
{
    if (setup_.Table().IsModelDefined())
        return {};
    asker_.MsgBox(QStringLiteral("Please select a valid drive model by pressing the Change... button."),
                  MsgButtons::Ok, MsgIcon::None, AppTitle());
    return {false, {}};
}

// Entries that the drive's type switches off are checked as well.
PageCheck BasicChecks::ValidateEntries(Entry first, int count) const
{
    for (int i = 0; i < count; ++i) {
        const Entry entry = EntryAt(first, i);
        if (!setup_.IsAsked(entry))
            continue;
        if (!rules_.ValidateEntry(setup_.Text(entry), setup_.Name(entry), BasicSetup::Info(entry).param))
            return Refused(entry);
    }
    return {};
}

PageCheck BasicChecks::ValidateMotorData() const
{
    if (PageCheck armature = ValidateEntries(Entry::ArmatureCurrent, 2); !armature.passed)
        return armature;
    if (PageCheck field = ValidateFieldCurrents(); !field.passed)
        return field;
    return ValidateEntries(Entry::RatedSpeed, 1);
}

PageCheck BasicChecks::ValidateFieldCurrents() const
{
    constexpr int fieldDemand = 339;
    if (setup_.UsesBaseFieldCurrent() &&
        !CheckFieldCurrent(Entry::BaseFieldCurrent, fieldDemand, FieldSupplyAmps, FieldCurrentAttributes))
        return Refused(Entry::BaseFieldCurrent);
    if (setup_.UsesTopFieldCurrent() &&
        !CheckFieldCurrent(Entry::TopFieldCurrent, fieldDemand, FieldSupplyAmps, FieldCurrentAttributes))
        return Refused(Entry::TopFieldCurrent);
    // Equal currents pass, whatever the sentence says.
    if (setup_.UsesTopFieldCurrent() &&
        CDbl(setup_.Text(Entry::BaseFieldCurrent)) < CDbl(setup_.Text(Entry::TopFieldCurrent))) {
        Tell(QStringLiteral("The Top Speed Field Current must be less than the Base Speed Field Current."));
        return Refused(Entry::TopFieldCurrent);
    }
    return {};
}

bool BasicChecks::CheckFieldCurrent(Entry entry, int p, int ratedAmps, std::int32_t attributes) const
{
    const QString &text = setup_.Text(entry);
    if (!IsNumeric(text)) {
        rules_.ShowNumberMessage(setup_.Name(entry));
        return false;
    }
    const QString percentText = DoubleText(CDbl(text) / ratedAmps * 100.0);
    const ParameterTable &table = setup_.Table();
    const std::int32_t raw = EntryToRaw(percentText, table[p].Attributes);
    if (table.IsInRange(QString::number(raw), p))
        return true;
    rules_.ShowRangeMessage(setup_.Name(entry), 0, ratedAmps * 100, attributes, true);
    return false;
}

PageCheck BasicChecks::ValidateFeedback() const
{
    if (setup_.feedback == NoFeedback) {
        Tell(QStringLiteral("Please select the desired feedback option"));
        return {false, {}};
    }
    if (setup_.feedback != TachometerFeedback)
        return {};
    if (!IsNumeric(setup_.Text(Entry::TachRating))) {
        rules_.ShowNumberMessage(setup_.Name(Entry::TachRating));
        return Refused(Entry::TachRating);
    }
    if (setup_.TachVoltage() > MaxTachVolts) {
        ShowTachVoltageMessage();
        return Refused(Entry::TachRating);
    }
    return {};
}

PageCheck BasicChecks::ValidateMaxSpeeds() const
{
    const int rated = setup_.RatedSpeed();
    struct Row {
        Entry entry;
        int low;
        int high;
    };
    const Row rows[] = {{Entry::ForwardMaxSpeed, 0, rated}, {Entry::ReverseMaxSpeed, -rated, 0}};
    for (const Row &row : rows) {
        const QString &text = setup_.Text(row.entry);
        if (!IsNumeric(text) || IsSpeedBetween(text, row.low, row.high))
            continue;
        rules_.ShowRangeMessage(setup_.Name(row.entry), row.low, row.high, SpeedAttributes, true);
        return Refused(row.entry);
    }
    return {};
}

void BasicChecks::ShowTachVoltageMessage() const
{
    asker_.MsgBox(
        QStringLiteral("The motor speed and tach rating values entered yield a maximum\r\n"
                       "tachometer voltage feedback of ") +
            DoubleText(setup_.TachVoltage()) +
            QStringLiteral("V. This voltage\r\n"
                           "exceeds the maximum rated tachometer input value of 200V. A lower rated\r\n"
                           "tachometer must be used, or external scaling of the tachometer signal is\r\n"
                           "required (simulating a lower rated tachometer). Change the Tachometer Rating\r\n"
                           "to reflect the new lower rating."),
        MsgButtons::Ok, MsgIcon::Information, MentorTitle());
}

} // namespace quorvik
