#pragma once

#include "trend/TrendData.h"

#include <optional>

namespace quorvik
{

/** What starts a capture. The numbers are kept in settings. */
enum class TriggerKind : std::uint8_t {
    None = 0,
    Rising = 1,  ///< through the level from below; the band is how far below it must have been before
    Falling = 2, ///< through the level from above; the band is how far above
    Leaving = 3, ///< out of level to levelHigh; the band is how far inside it must have been before
    Equals = 4,  ///< becomes this raw value: states and logic
    Fault = 5,   ///< the drive trips
    Edit = 6,    ///< something is entered
    ByHand = 7,  ///< only Pull()
};

struct TriggerSetting {
    TriggerKind kind = TriggerKind::None;
    int param = 0;             ///< of the first four kinds; must be a channel
    std::int32_t rawLevel = 0; ///< also the lower end of the window, and the value of Equals
    std::int32_t rawHigh = 0;  ///< the upper end of the window
    std::int32_t rawBand = 0;  ///< 0 or more
    int windowMs = 5000;       ///< how long a capture is, 100 to 3600000
    int prePercent = 20;       ///< how much of it is before the trigger, 0 to 100
    int holdOffMs = 0;         ///< for so long after a trigger no other one counts, beside the capture itself
    int captures = 1;          ///< how many are taken, 1 to 10; kept side by side
};

/**
 * Finds the trigger in a stream of samples: armed by the signal being on the other side of its band, so that
 * noise at the level makes one trigger and not many. A gap disarms it: what happened within is not known.
 */
class Trigger
{
public:
    explicit Trigger(const TriggerSetting &setting = {})
        : setting_(setting)
    {
    }

    const TriggerSetting &Setting() const { return setting_; }
    /** The next sample of the trigger's parameter. @return when the level was met: between this sample and
     * the last one, by a straight line; of Equals the sample's own time. */
    std::optional<qint64> Take(const TrendSample &sample);
    /** What happened before counts no more. */
    void Reset() { *this = Trigger(setting_); }

private:
    TriggerSetting setting_;
    std::optional<TrendSample> last_;
    bool isArmed_ = false;
};

} // namespace quorvik
