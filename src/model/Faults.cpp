#include "model/Faults.h"

#include "model/FullNames.h"
#include "model/ParameterNumbers.h"
#include "model/TextTables.h"

#include <array>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr int WordBits = 16;
constexpr qsizetype MostNamed = 2;

/** A fault as it is written down here: %1 and so on stand for its parameters, by number and name. */
struct Entry {
    const char *logText;
    std::array<int, 7> params;
    const char *meaning;
    const char *check;
};

/** By bit, from the lowest. */
constexpr Entry Entries[] = {
    {"Field Loss, ",
     {FieldIFeedback, FieldLossLevel, FieldAmps, FieldEnable, FieldIDemand, FieldLossInhibit},
     "The field current, %1, fell below %2. A motor without its field can run away, or draw a very high "
     "armature current.",
     "Check field wiring, field fuses and the motor's field terminals, and look at %3 with the field on. %4 "
     "must be True, and %5 well above the level. Only a motor with permanent magnets may have %6 True."},
    {"VFB Loss, ",
     {AFB, VelFeedback, VFBLossLevel, InvertFeedback, FeedbackSelect, VFBLossInhibit},
     "The armature's own feedback, %1, is larger than %2 by more than %3: tachometer or encoder gives no "
     "signal, too small a one or one of the wrong sign.",
     "Check coupling, cable and plug of the tachometer or encoder. %4 turns its sign; %5 must name what is "
     "built in. With field weakening the two may differ on purpose: then %6 is True."},
    {"OverVoltage, ",
     {ArmatureVolts, NameplateMotorVoltage, LineVoltage, FinalFieldIDemand, FwdDecelA, RevDecelA},
     "The armature voltage, %1, is too high.",
     "Compare it with %2, and %3 with the voltage that the drive is built for. A field that is too strong "
     "for the speed, see %4, or a load that drives the motor raises it; longer ramps, %5 and %6, help "
     "against the latter."},
    {"OverSpeed, ",
     {VelFeedback, OverspeedLevel, ForwardMaxSpeed, ReverseMaxSpeed, FullRPMLevel, PropGainA},
     "The speed, %1, went above %2, in either direction.",
     "The level must lie above %3 and %4. Check the scaling of the feedback, %5, and whether the load can "
     "drive the motor. Where the speed overshoots its reference, take back %6."},
    {"OverCurrent, ",
     {ArmOverCurrentTime, NameplateMotorI, PositiveILimit, NegativeILimit, IProportionalGain, IIntegralTime},
     "The armature current was too high for longer than %1.",
     "Look for a load that is stuck, for worn brushes, and for a short circuit in motor and cables. Compare "
     "%2, %3 and %4 with the motor's nameplate. Peaks without a load come from the current loop: %5, %6."},
    {"OverTemp, ",
     {HeatsinkTemp, FanMode, ArmatureAmps, NameplateDriveI},
     "The heatsink of the drive is too hot: %1.",
     "Check that the fan turns as %2 says, that filters and air ways are clean, and how warm the cabinet is. "
     "%3 "
     "must not stay above %4."},
    {"PhaseLoss, ",
     {LineVoltage},
     "A phase of the line is missing or far too low.",
     "Check line fuses, contactor and terminals, and measure all three line voltages at the drive, under "
     "load too. %1 shows what the drive measures."},
    {"CT ID Board Error, ",
     {DriveModel, NameplateDriveI},
     "The board that tells the drive's model is missing or cannot be read, so the drive does not know its "
     "own current.",
     "With the power off, check that the CT ID board sits firmly on the trigger board. Afterwards %1 and %2 "
     "must agree with the drive's nameplate."},
    {"Phase Lock Error, ",
     {LineVoltage, TriggerFirmwareVersion},
     "The drive cannot follow the phases of the line, so it cannot fire at the right moment.",
     "Look for a line that is weak, disturbed by other drives or fed by a generator, and for loose line "
     "terminals; %1 must be steady. If it comes back on a clean line, look after the trigger board; its "
     "maker asks for %2."},
    {"Thermistor Open, ",
     {ArmatureAmps, NameplateMotorI},
     "The circuit of the motor's thermistor is open: the motor is too hot, or the circuit is broken.",
     "Check the motor's temperature, its blower and filter, and %1 against %2. If the motor is cold, check "
     "thermistor, cable and terminals."},
};

QString Filled(const Entry &entry, const char *text)
{
    QString filled = QString::fromLatin1(text);
    for (std::size_t i = 0; i < entry.params.size(); ++i)
        if (const int p = entry.params[i])
            filled.replace(u'%' + QString::number(i + 1),
                           QStringLiteral("(%1) %2").arg(p).arg(QLatin1String(FactoryNames[p])));
    return filled;
}

Fault Unknown(int bit)
{
    return {1 << bit,
            {},
            QStringLiteral("bit %1").arg(bit),
            QStringLiteral("The drive tells a fault that this program does not know."),
            QStringLiteral("The manual of the drive's firmware tells it.")};
}

} // namespace

const std::vector<Fault> &AllFaults()
{
    static const std::vector<Fault> faults = [] {
        std::vector<Fault> made;
        for (const Entry &entry : Entries) {
            const int bit = int(made.size());
            made.push_back({1 << bit, QString::fromLatin1(entry.logText), FaultText(bit),
                            Filled(entry, entry.meaning), Filled(entry, entry.check)});
        }
        return made;
    }();
    return faults;
}

std::vector<Fault> FaultsOf(std::int32_t rawFaults)
{
    const std::vector<Fault> &known = AllFaults();
    std::vector<Fault> faults;
    for (int bit = 0; bit < WordBits; ++bit)
        if (rawFaults & 1 << bit)
            faults.push_back(std::size_t(bit) < known.size() ? known[std::size_t(bit)] : Unknown(bit));
    return faults;
}

QStringList FaultNames(std::int32_t rawFaults)
{
    QStringList names;
    for (const Fault &fault : FaultsOf(rawFaults))
        names += fault.name;
    return names;
}

QString FaultsInShort(std::int32_t rawFaults)
{
    const QStringList names = FaultNames(rawFaults);
    return names.size() <= MostNamed
               ? names.join(QStringLiteral(", "))
               : QStringLiteral("%1 and %2 more").arg(names.first()).arg(names.size() - 1);
}

} // namespace quorvik
