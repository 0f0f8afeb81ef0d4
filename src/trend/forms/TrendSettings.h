#pragma once

#include "trend/TrendView.h"
#include "trend/Trigger.h"

#include <QString>
#include <utility>
#include <vector>

namespace quorvik
{

class SettingsStore;
class TripTrend;

/** A channel with the way it is drawn. */
struct ArrangedChannel {
    TrendPace pace = TrendPace::Fast;
    TrendCurve curve;
};

/** The channels that are recorded, in their order, and how they are drawn. */
using TrendArrangement = std::vector<ArrangedChannel>;

/** An arrangement under the name that its user gave it. */
struct NamedArrangement {
    QString name;
    TrendArrangement channels;
};

/** What the trend window keeps from one time to the next. What is stored may be of another program or edited
 * by hand: what makes no sense is left out. */
TrendArrangement LoadArrangement(const SettingsStore &settings);
void StoreArrangement(SettingsStore &settings, const TrendArrangement &channels);

inline constexpr int MostUserTemplates = 50;
std::vector<NamedArrangement> LoadUserTemplates(const SettingsStore &settings);
void StoreUserTemplates(SettingsStore &settings, const std::vector<NamedArrangement> &templates);

/** Milliseconds, or the fallback. */
int LoadKeepMs(const SettingsStore &settings, int fallback);
void StoreKeepMs(SettingsStore &settings, int milliseconds);

TriggerSetting LoadTrigger(const SettingsStore &settings);
void StoreTrigger(SettingsStore &settings, const TriggerSetting &trigger);

/** The recording of the time before a trip: whether it is on, and its channels. */
void LoadTripTrend(const SettingsStore &settings, TripTrend &trips);
void StoreTripTrend(SettingsStore &settings, const TripTrend &trips);

} // namespace quorvik
