#include "emulator/DriveEmulator.h"
#include "emulator/EmulatedBlock.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"

#include <cmath>
#include <optional>

namespace quorvik
{

namespace
{

/** The parameters that turn an input terminal's reading into a scaled value. */
struct Scaling {
    int status;
    int low;
    int high;
    int bias;
    int gain;
};

double PartOfSpan(const EmulatedBlock &block, const Scaling &by)
{
    const std::int32_t above = block.Difference(by.status, by.low);
    const std::int32_t span = block.Difference(by.high, by.low);
    return block.Naming({by.low, by.high}, [&] { return CheckedDivide(above, span); });
}

/** A straight line from bias to gain; the two are its end points, not an offset and a factor. */
double Unipolar(const EmulatedBlock &block, const Scaling &by)
{
    const std::int32_t x = block.Value(by.status);
    if (x < block.Value(by.low))
        return block.Value(by.bias);
    if (x > block.Value(by.high))
        return block.Value(by.gain);
    const double part = PartOfSpan(block, by);
    return part * block.Difference(by.gain, by.bias) + block.Value(by.bias);
}

/** The bias has no part here. */
double Bipolar(const EmulatedBlock &block, const Scaling &by)
{
    const std::int32_t x = block.Value(by.status);
    if (x >= block.Value(by.high))
        return block.Value(by.gain);
    if (x <= block.Negated(by.high))
        return block.Negated(by.gain);
    return PartOfSpan(block, by) * block.Value(by.gain);
}

/** The parameters of an output that switches between two points. */
struct Switching {
    int on;
    int off;
};

/** Whether x switches the output on or off; nothing between the two points, where it stays as it is. */
std::optional<bool> Switched(const EmulatedBlock &block, const Switching &points, std::int32_t x)
{
    const std::int32_t on = block.Value(points.on);
    const std::int32_t off = block.Value(points.off);
    // Each case looks at its upper point first, so with both points at x the output is off.
    if (x >= (on > off ? on : off))
        return on > off;
    if (x <= (on > off ? off : on))
        return on <= off;
    return std::nullopt;
}

std::int32_t Magnitude(const EmulatedBlock &block, int source, std::int32_t x)
{
    return block.Naming({source}, [&] { return CheckedAbs(x); });
}

} // namespace

void DriveEmulator::EmulateAnalogInput(std::uint8_t member)
{
    const EmulatedBlock block(table_, "Analog Input", member);
    const Scaling scaling{member + 138, member + 37, member + 42, member + 47, member + 52};
    double y = block.Value(member + 27) != 0 ? Bipolar(block, scaling) : Unipolar(block, scaling);
    if (block.Value(member + 343) == 1)
        y = -y;
    // Cut toward zero here, rounded in the frequency input.
    block.StoreFollowedClamped(member + 22, y, Fix);
}

void DriveEmulator::EmulateFreqInput()
{
    const EmulatedBlock block(table_, "Frequency Input");
    double y = Unipolar(block, {164, 64, 65, 66, 67});
    if (block.Value(349) == 1)
        y = -y;
    block.StoreFollowedClamped(63, y, CLng);
}

void DriveEmulator::EmulateDigitalInput(std::uint8_t member)
{
    const EmulatedBlock block(table_, "Digital Input", member);
    const bool closed = block.Value(member + 131) == 1;
    // Stored as it stands, whatever the destination's limits.
    block.StoreFollowed(member, block.Value(closed ? member + 14 : member + 7));
}

void DriveEmulator::EmulateAnalogOutput(std::uint8_t member)
{
    const EmulatedBlock block(table_, "Analog Output", member);
    const int source = member + 80;
    const int gain = member + 82;
    const int bias = member + 84;
    const double x = block.Followed(source);
    double y = (block.Value(gain) / 10000.0 * x / 10000.0 + block.Value(bias) / 10000.0) * 4095.0;
    // The absolute function works on the scaled result, the bias included.
    if (block.Value(member + 86) != 0)
        y = std::fabs(y);
    const std::int16_t counts = block.Naming({source, gain, bias}, [&] { return CInt(y); });
    block.Store(member + 167, counts > 4095 ? 4095 : counts < -4095 ? -4095 : counts);
}

void DriveEmulator::EmulateFreqDigitalOutput()
{
    const EmulatedBlock block(table_, "Frequency/Digital Output");
    std::int32_t x = block.Followed(89);
    if (block.Value(90) != 1) {
        // A frequency has no sign: the magnitude is taken whatever Absolute Value says.
        const double magnitude = Magnitude(block, 89, x);
        const double y = (block.Value(95) / 10000.0 * magnitude + block.Value(96)) / 10000.0 * 2000.0;
        block.Store(170, block.Naming({89, 95, 96}, [&] { return CLng(y); }));
        return;
    }
    if (block.Value(91) != 0)
        x = Magnitude(block, 89, x);
    // The state is read back as it was stored, so an inverted output between the two points flips at every
    // tick.
    bool on = Switched(block, {92, 93}, x).value_or(block.Value(170) != 0);
    if (block.Value(94) == 1)
        on = !on;
    // On is stored as -1 here, unlike a relay's 1.
    block.Store(170, on ? -1 : 0);
}

void DriveEmulator::EmulateRelayOutput(std::uint8_t member)
{
    const EmulatedBlock block(table_, "Relay Output", member);
    const int source = member + 68;
    std::int32_t x = block.Followed(source);
    if (block.Value(member + 71) != 0)
        x = Magnitude(block, source, x);
    if (const std::optional<bool> on = Switched(block, {member + 74, member + 77}, x))
        block.Store(member + 164, *on ? 1 : 0);
}

} // namespace quorvik
