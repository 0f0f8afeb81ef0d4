#include "SampleSteps.h"

#include "model/ParameterTable.h"
#include "platform/TimeUnits.h"
#include "trend/StepResponse.h"

#include <QDateTime>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int SampleEveryMs = 12; ///< in which each channel is read once
constexpr qint64 AnswerUs = 5000;
constexpr double RawPerPercent = 100;

/** What a loop regulates, and the steps that it is shown. */
struct Machine {
    double time; ///< seconds
    double leak; ///< 0 for a speed, which stays, 1 for a current, which does not
    double gain; ///< at a gain of 100 per cent
    double timeScale;
    double before; ///< percent
    double height;
    int periodMs; ///< from one step to the next
    int holdMs;
};

constexpr Machine CurrentLoop{0.05, 1, 25, 1e-3, 0, 20, 1800, 1000};
constexpr Machine VelocityLoop{0.8, 0.12, 100, 1e-3, 30, 5, 4000, 2000};

const Machine &MachineOf(TunedLoop loop)
{
    return loop == TunedLoop::Current ? CurrentLoop : VelocityLoop;
}

/** The answer of a regulator with a proportional and an integral part, and what it regulates, each
 * millisecond. */
class StepAnswer
{
public:
    explicit StepAnswer(const Machine &machine)
        : machine_(machine)
    {
    }

    void Take(const SampleGains &gains)
    {
        gain_ = machine_.gain * gains.rawGain / RawPerPercent / 100;
        time_ = gains.rawTime * machine_.timeScale;
    }

    double Next(double demand)
    {
        const double error = demand - value_;
        integral_ += gain_ * error / time_ / MsPerSecond;
        value_ += (gain_ * error + integral_ - machine_.leak * value_) / machine_.time / MsPerSecond;
        return value_;
    }

private:
    Machine machine_;
    double gain_ = 0;
    double time_ = 1;
    double value_ = 0;
    double integral_ = 0;
};

} // namespace

SampleSteps::SampleSteps(const ParameterTable &table, TunedLoop loop, const std::vector<SampleGains> &gains)
    : loop_(loop)
{
    const Machine &machine = MachineOf(loop);
    const QDateTime began({2026, 11, 22}, {10, 4, 12});
    data_.head.beganUtcMs = began.toMSecsSinceEpoch();
    data_.head.drive = DriveIdentity{.model = 5,
                                     .driveAmps = 174,
                                     .firmware = 100,
                                     .triggerFirmware = 100,
                                     .operatingHours = 1204,
                                     .lastParam = Param::WinderSpeed};
    for (const int p : {StepTest::SetpointOf(loop), StepTest::FeedbackOf(loop)})
        data_.tracks.push_back({{p, TrendPace::Fast, table[p].Attributes, table[p].Name}, {}});

    const auto append = [](TrendTrack &track, int ms, double percent) {
        track.samples.Append({.timeUs = ms * UsPerMs,
                              .rawValue = std::int32_t(std::lround(percent * RawPerPercent)),
                              .spanUs = std::uint32_t(AnswerUs)});
    };
    StepAnswer answer(machine);
    for (std::size_t i = 0; i < gains.size(); ++i) {
        answer.Take(gains[i]);
        const int stepMs = int(i) * machine.periodMs + (machine.periodMs - machine.holdMs) / 2;
        for (int ms = int(i) * machine.periodMs; ms < int(i + 1) * machine.periodMs; ++ms) {
            const bool isUp = ms >= stepMs && ms < stepMs + machine.holdMs;
            const double demand = isUp ? machine.height : 0;
            const double value = answer.Next(demand);
            if (ms % SampleEveryMs == 0)
                append(data_.tracks[0], ms, machine.before + demand);
            // The two are never of the same moment.
            if (ms % SampleEveryMs == SampleEveryMs / 2)
                append(data_.tracks[1], ms, machine.before + value + 0.01 * (ms % 5 - 2));
        }
    }
    for (std::size_t i = 0; i < gains.size(); ++i) {
        const int stepMs = int(i) * machine.periodMs + (machine.periodMs - machine.holdMs) / 2;
        const StepQuestion question{.stepUs = stepMs * UsPerMs,
                                    .target = machine.before + machine.height,
                                    .endUs = (stepMs + machine.holdMs) * UsPerMs};
        // Only the time before this step and up to its end is looked at.
        const TrendData part = data_.Cut(i * machine.periodMs * UsPerMs, (stepMs + machine.holdMs) * UsPerMs);
        const bool isCurrent = loop == TunedLoop::Current;
        StepTry made{.time = began.addMSecs(stepMs),
                     .loop = loop,
                     .param = Reference(),
                     .gains = {{isCurrent ? Param::IProportionalGain : Param::PropGainA, gains[i].rawGain},
                               {isCurrent ? Param::IIntegralTime : Param::IntegralTimeA, gains[i].rawTime}},
                     .result = StepResponseOf(part.tracks[1], question)};
        tries_.push_front(made);
    }
}

double SampleSteps::Percent() const
{
    return MachineOf(loop_).height;
}

double SampleSteps::Seconds() const
{
    return double(MachineOf(loop_).holdMs) / MsPerSecond;
}

int SampleSteps::Reference() const
{
    return loop_ == TunedLoop::Current ? Param::TorqueReference : Param::SetpointB;
}

} // namespace quorvik
