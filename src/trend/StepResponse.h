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

/**
 * The answer to a step, as a drive engineer reads it off a plot. Times are milliseconds from the step, and
 * percent are of the way from before to after.
 *
 * Dead time is the time until the signal begins to move, as if there were no noise: the moments at which it
 * passes a row of low levels (from 3 % of the way, or where it stands clear of the noise) are followed back
 * to no way at all. So it is Td of an answer of the first order, exp(-(t - Td) / T), and of one of the second
 * that begins at Td, although both cross 5 % later.
 */
struct StepFigures {
    double before = 0;                ///< shown number where the signal stood
    double after = 0;                 ///< where it ended
    double deadMs = 0;                ///< until it begins to move
    double riseMs = 0;                ///< from 10 to 90 % of the way, each passed for the first time
    double overshootPercent = 0;      ///< of the way; 0 where it does not rise clearly above its end
    std::optional<double> settlingMs; ///< until it stays in the band; nothing where it never does
    double steadyError = 0;           ///< target less end, in shown numbers; 0 without a target
    double uncertaintyMs = 0;         ///< of the rise: what sampling and noise leave open
    double deadUncertaintyMs = 0;     ///< of the dead time
    double settlingUncertaintyMs = 0; ///< of the settling time, which noise moves further
    double uncertaintyPercent = 0;    ///< of the overshoot: what noise and sampling leave open
};

/** Why there are no figures. */
enum class StepFailure : std::uint8_t {
    None,
    NoSamples, ///< fewer than three before the step or ten after it
    NoStep,    ///< the signal does not move by more than its noise
    Gap,       ///< the link was silent within the answer
};
/** Empty for none. */
QString SentenceOf(StepFailure failure);

struct StepResult {
    StepFailure failure = StepFailure::None;
    StepFigures figures;
};

/** The figures of one channel's answer. A pure function of its samples. */
StepResult StepResponseOf(const TrendTrack &track, const StepQuestion &question);

} // namespace quorvik
