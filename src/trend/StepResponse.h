#pragma once

#include "trend/TrendData.h"

#include <optional>

namespace quorvik
{

/** What is looked for in the answer of a loop. */
struct StepQuestion {
    qint64 stepUs = 0;            ///< when the reference changed
    std::optional<double> target; ///< shown number that the signal is to settle at; its own end where none
    double settlingPercent = 2;   ///< half width of the settling band, of the step's height
    double endPercent = 20;       ///< how much of the record, at its end, tells where the signal settled
    qint64 endUs = 0;             ///< what is later does not belong to the answer; 0 for all there is
};

/** The answer to a step, as a drive engineer reads it off a plot. Times are milliseconds from the step. */
struct StepFigures {
    double before = 0; ///< shown number where the signal stood
    double after = 0;  ///< where it ended
    double deadMs = 0; ///< until it has gone a twentieth of the way, less what the rise takes for it
    double riseMs = 0; ///< from 10 to 90 % of the way
    double overshootPercent = 0;      ///< of the height; 0 where it stays below its end
    std::optional<double> settlingMs; ///< until it stays in the band; nothing where it never does
    double steadyError = 0;           ///< target less end, in shown numbers; 0 without a target
    double uncertaintyMs = 0;         ///< of each time: what the sampling leaves open
    double uncertaintyPercent = 0;    ///< of the overshoot: what noise and sampling leave open
};

/** Why there are no figures. */
enum class StepFailure : std::uint8_t {
    None,
    NoSamples, ///< fewer than three before the step or ten after it
    NoStep,    ///< the signal does not move by more than its noise
    Gap,       ///< the link was silent within the answer
};
QString SentenceOf(StepFailure failure);

struct StepResult {
    StepFailure failure = StepFailure::None;
    StepFigures figures;
};

/** The figures of one channel's answer. A pure function of its samples. */
StepResult StepResponseOf(const TrendTrack &track, const StepQuestion &question);

} // namespace quorvik
