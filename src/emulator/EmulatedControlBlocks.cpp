#include "emulator/DriveEmulator.h"
#include "emulator/EmulatedBlock.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"

namespace quorvik
{

void DriveEmulator::EmulateAuxPI()
{
    const EmulatedBlock block(table_, "Aux PI");
    block.Store(352, block.Difference(350, 351));
}

void DriveEmulator::EmulateCurrentLoop()
{
    const EmulatedBlock block(table_, "Current Loop");
    const std::uint8_t mode = block.Naming({109, 110}, [&] {
        return ToByte(CheckedAdd(CheckedMultiply(table_.Value(109), 2), table_.Value(110)));
    });
    block.Store(111, mode == 0 ? block.Value(205) : mode == 1 ? block.Value(97) : 0);

    std::int32_t sum = block.Sum(98, 111);
    // Two steps of their own: a negative limit from above is looked at again from below, and a lower limit
    // that is not negative lifts every negative sum to it.
    if (sum > 0 && sum > block.Value(99))
        sum = block.Value(99);
    if (sum < 0 && sum < block.Value(100))
        sum = block.Value(100);
    block.Store(101, sum);
    block.Store(103, block.Difference(101, 102));
}

void DriveEmulator::EmulateFieldLoop()
{
    const EmulatedBlock block(table_, "Field Loop");
    block.Store(336, block.Negated(342));
    // The filtered current is negated a second time, the filtered voltage is not.
    block.Store(337, block.Negated(336));
    block.Store(333, block.Negated(343));
    block.Store(334, block.Value(333));
    block.Store(328, block.Value(331) == 1 && block.Value(329) == 1 ? block.Value(330) : 0);
}

void DriveEmulator::EmulateVelocityLoop()
{
    const EmulatedBlock block(table_, "Velocity Loop");
    const std::int32_t select = block.Value(197);
    const int feedback = select == 0 ? 194 : select == 1 ? 195 : 196;
    block.Store(193, block.Difference(feedback, 130));
    block.Store(192, block.Difference(129, 193));
}

void DriveEmulator::EmulateInternalLinks()
{
    // Unset links run too, and copy parameter 0 to itself.
    for (int source = 366; source <= 404; source += 2) {
        const EmulatedBlock block(table_, "Internal Link", (source - 364) / 2);
        const int destination = source + 1;
        block.Naming({source, destination}, [&] {
            const std::int32_t x = table_.Value(ToInt16(table_.Value(source)));
            const int p = ToInt16(table_.Value(destination));
            const ParamRecord &record = table_[p];
            table_.SetValue(p,
                            x > record.Max   ? record.Max
                            : x < record.Min ? record.Min
                                             : x,
                            ChangeCause::Emulated);
        });
    }
}

void DriveEmulator::EmulateMinMax()
{
    const EmulatedBlock block(table_, "Min/Max");
    if (block.Value(413) == 1) {
        block.Store(414, 0);
        block.Store(415, 0);
    } else {
        const std::int32_t x = block.Followed(412);
        if (x > block.Value(414))
            block.Store(414, x);
        else if (x < block.Value(415))
            block.Store(415, x);
    }
    block.Store(416, block.Difference(414, 415));
}

void DriveEmulator::EmulateMOP()
{
    const EmulatedBlock block(table_, "MOP");
    if (block.Value(322) == 1)
        block.Store(324, block.Value(323));
}

void DriveEmulator::EmulateThreshold(std::uint8_t member)
{
    if (member != 1 && member != 2)
        throw RuntimeFailure(QStringLiteral("There is no threshold %1.").arg(member));
    const EmulatedBlock block(table_, member == 1 ? "Threshold A" : "Threshold B");
    const int input = member == 1 ? 177 : 183;
    const int threshold = input + 1;
    const int hysteresis = input + 2;
    const int output = input + 5;
    bool &isOn = EmulatedThresholdOn[member - 1U];

    const std::int32_t x = block.Naming({input}, [&] { return CheckedAbs(table_.Value(input)); });
    if (isOn) {
        // A hysteresis wider than its threshold switches off at the next tick, whatever the input.
        if (x <= block.Difference(threshold, hysteresis) ||
            block.Value(hysteresis) > block.Value(threshold)) {
            block.Store(output, block.Value(input + 3));
            isOn = false;
        }
    } else if (x > block.Sum(hysteresis, threshold)) {
        block.Store(output, block.Value(input + 4));
        isOn = true;
    }
}

} // namespace quorvik
