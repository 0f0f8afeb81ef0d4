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

/** A fault as it is written down here: in meaning, check and causes %1 and so on stand for its parameters,
 * by number and name. */
struct Entry {
    const char *logText;
    std::array<int, 7> params;
    const char *meaning;
    const char *check;
    std::array<const char *, 4> causes;
    std::array<const char *, 3> topics;
};

/** By bit, from the lowest. */
constexpr Entry Entries[] = {
    {"Field Loss, ",
     {FieldIFeedback, FieldLossLevel, FieldAmps, FieldEnable, FieldIDemand, FieldLossInhibit},
     "The field current, %1, fell below %2. A motor without its field can run away, or draw a very high "
     "armature current.",
     "Check field wiring, field fuses and the motor's field terminals, and look at %3 with the field on. %4 "
     "must be True, and %5 well above the level. Only a motor with permanent magnets may have %6 True.",
     {"A wire of the field came off, or a field fuse has blown.",
      "A contact in the field circuit is open, or the drive is told to leave the field off: %4.",
      "The demand, %5, is set below the level, or the level too high for this motor.",
      "The field winding is broken or has burnt out."},
     {"Field Loop", "Fault Logic"}},
    {"VFB Loss, ",
     {AFB, VelFeedback, VFBLossLevel, InvertFeedback, FeedbackSelect, VFBLossInhibit},
     "The armature's own feedback, %1, is larger than %2 by more than %3: tachometer or encoder gives no "
     "signal, or too small a one.",
     "Check coupling, cable and plug of the tachometer or encoder. %4 turns its sign; %5 must name what is "
     "built in. With field weakening the two may differ on purpose: then %6 is True.",
     {"The coupling of the tachometer or encoder is loose or has come off.",
      "A wire or plug of it is open, or an encoder has lost its supply.",
      "%5 names another device than the one that is built in.",
      "The level, %3, is set closer than the two measurements agree: IR Comp and scaling decide that."},
     {"Velocity Loop", "Fault Logic", "Calibration"}},
    {"OverVoltage, ",
     {ArmatureVolts, NameplateMotorVoltage, LineVoltage, FinalFieldIDemand, FwdDecelA, RevDecelA},
     "The armature voltage, %1, is too high.",
     "Compare it with %2, and %3 with the voltage that the drive is built for. A field that is too strong "
     "for the speed, see %4, or a load that drives the motor raises it; longer ramps, %5 and %6, help "
     "against the latter.",
     {"The load drives the motor faster than it is to turn, while it slows down above all.",
      "The field is too strong for this speed: no crossover, or one that begins too high.",
      "The nameplate voltage, %2, was entered too low.", "The line itself is too high."},
     {"Velocity Loop", "Field Loop", "Field Crossover"}},
    {"OverSpeed, ",
     {VelFeedback, OverspeedLevel, ForwardMaxSpeed, ReverseMaxSpeed, FullRPMLevel, PropGainA},
     "The speed, %1, went above %2, in either direction.",
     "The level must lie above %3 and %4. Check the scaling of the feedback, %5, and whether the load can "
     "drive the motor. Where the speed overshoots its reference, take back %6.",
     {"The level was left as it was when the maximum speeds were raised.",
      "The feedback tells a higher speed than the motor turns: %5 or the device's own scale.",
      "The speed overshoots at a step, since the gains are too high.",
      "The load drives the motor and the drive cannot brake it."},
     {"Fault Logic", "Velocity Loop", "Calibration"}},
    {"OverCurrent, ",
     {ArmOverCurrentTime, NameplateMotorI, PositiveILimit, NegativeILimit, IProportionalGain, IIntegralTime},
     "The armature current was too high for longer than %1.",
     "Look for a load that is stuck, for worn brushes, and for a short circuit in motor and cables. Compare "
     "%2, %3 and %4 with the motor's nameplate. Peaks without a load come from the current loop: %5, %6.",
     {"The load is stuck, or a brake has not opened.",
      "The motor was given more load, or a shorter ramp, than it can move.",
      "Brushes, commutator or armature are worn or shorted.",
      "The current loop is set too sharp, so that it overshoots."},
     {"Current Loop", "Fault Logic", "Calibration"}},
    {"OverTemp, ",
     {HeatsinkTemp, FanMode, ArmatureAmps, NameplateDriveI},
     "The heatsink of the drive is too hot: %1.",
     "Check that the fan turns as %2 says, that filters and air ways are clean, and how warm the cabinet is. "
     "%3 "
     "must not stay above %4.",
     {"Filters or air ways are dirty.", "The fan does not turn.", "The air in the cabinet is too warm.",
      "The load is above what the drive may carry all day."},
     {"Diagnostics", "Current Loop"}},
    {"PhaseLoss, ",
     {LineVoltage},
     "A phase of the line is missing or far too low.",
     "Check line fuses, contactor and terminals, and measure all three line voltages at the drive, under "
     "load too. %1 shows what the drive measures.",
     {"A line fuse has blown.",
      "The line contactor has a bad contact, or was opened with the drive switched on.",
      "A terminal is loose.", "The line itself has lost a phase."},
     {"Diagnostics"}},
    {"CT ID Board Error, ",
     {DriveModel, NameplateDriveI},
     "The board that tells the drive's model is missing or cannot be read, so the drive does not know its "
     "own current.",
     "With the power off, check that the CT ID board sits firmly on the trigger board. Afterwards %1 and %2 "
     "must agree with the drive's nameplate.",
     {"The board sits loosely on its socket, after transport or work inside.",
      "The board was changed for one of another drive, or not put back.",
      "The board or the trigger board is damaged."},
     {"Diagnostics", "Calibration"}},
    {"Phase Lock Error, ",
     {LineVoltage, TriggerFirmwareVersion},
     "The drive cannot follow the phases of the line, so it cannot fire at the right moment.",
     "Look for a line that is weak, disturbed by other drives or fed by a generator, and for loose line "
     "terminals; %1 must be steady. If it comes back on a clean line, look after the trigger board; its "
     "maker asks for %2.",
     {"A generator or a small transformer feeds the line, and its frequency wanders.",
      "Other drives on the same line notch its voltage; line chokes are missing.",
      "A line terminal is loose.", "The trigger board is damaged."},
     {"Diagnostics", "System"}},
    {"Thermistor Open, ",
     {ArmatureAmps, NameplateMotorI},
     "The circuit of the motor's thermistor is open: the motor is too hot, or the circuit is broken.",
     "Check the motor's temperature, its blower and filter, and %1 against %2. If the motor is cold, check "
     "thermistor, cable and terminals.",
     {"The motor is too hot: overload, low speed under load without a blower, or a blower that stands.",
      "The blower's filter is blocked.", "A wire of the thermistor came off.",
      "No thermistor is fitted, and its terminals were left open."},
     {"Current Loop", "Calibration"}},
};

template<std::size_t Size> QStringList Given(const std::array<const char *, Size> &texts, auto make)
{
    QStringList given;
    for (const char *text : texts)
        if (text)
            given.append(make(text));
    return given;
}

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
            QStringLiteral("The manual of the drive's firmware tells it."),
            {},
            {}};
}

} // namespace

const std::vector<Fault> &AllFaults()
{
    static const std::vector<Fault> faults = [] {
        std::vector<Fault> made;
        for (const Entry &entry : Entries) {
            const int bit = int(made.size());
            made.push_back({1 << bit, QString::fromLatin1(entry.logText), FaultText(bit),
                            Filled(entry, entry.meaning), Filled(entry, entry.check),
                            Given(entry.causes, [&entry](const char *text) { return Filled(entry, text); }),
                            Given(entry.topics, [](const char *text) { return QString::fromLatin1(text); })});
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
