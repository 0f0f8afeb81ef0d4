#include "trend/forms/TrendSettings.h"

#include "desktop/Form.h"
#include "platform/SettingsStore.h"
#include "trend/TripTrend.h"

#include <QStringList>
#include <algorithm>
#include <optional>

namespace quorvik
{

namespace
{

const QString Section = QStringLiteral("Trend");
const QString ChannelsKey = QStringLiteral("Channels");
const QString KeepKey = QStringLiteral("KeepMs");
const QString TriggerKey = QStringLiteral("Trigger");
const QString TripKey = QStringLiteral("BeforeTrip");

constexpr int MostColours = 64;
constexpr int LongestMs = 3600000;
constexpr int ShortestWindowMs = 100;

/** The whole numbers of a list; nothing where one of them is none, or there are others than so many. */
std::optional<std::vector<int>> NumbersOf(const QString &text, qsizetype count)
{
    const QStringList parts = text.split(u' ', Qt::SkipEmptyParts);
    std::vector<int> numbers;
    for (const QString &part : parts) {
        bool isNumber = false;
        numbers.push_back(part.toInt(&isNumber));
        if (!isNumber)
            return std::nullopt;
    }
    if (count > 0 && parts.size() != count)
        return std::nullopt;
    return numbers;
}

QString TextOf(std::initializer_list<int> numbers)
{
    QStringList parts;
    for (const int number : numbers)
        parts += QString::number(number);
    return parts.join(u' ');
}

QString TextOf(const TrendArrangement &channels)
{
    QStringList parts;
    for (const auto &[pace, curve] : channels)
        parts += TextOf(
            {curve.param, int(pace), curve.plot, curve.colour, int(curve.isVisible), int(curve.hasOwnScale)});
    return parts.join(u';');
}

TrendArrangement ArrangementOf(const QString &text)
{
    TrendArrangement channels;
    for (const QString &part : text.split(u';', Qt::SkipEmptyParts)) {
        const auto numbers = NumbersOf(part, 6);
        if (!numbers)
            continue;
        const std::vector<int> &number = *numbers;
        const bool isKnown =
            std::ranges::any_of(channels, [&](const auto &other) { return other.curve.param == number[0]; });
        if (number[0] < 0 || isKnown)
            continue;
        channels.push_back({.pace = number[1] == int(TrendPace::Slow) ? TrendPace::Slow : TrendPace::Fast,
                            .curve = {.param = number[0],
                                      .plot = std::clamp(number[2], 0, TrendView::MostPlots - 1),
                                      .colour = std::clamp(number[3], 0, MostColours),
                                      .isVisible = number[4] != 0,
                                      .hasOwnScale = number[5] != 0}});
    }
    return channels;
}

} // namespace

TrendArrangement LoadArrangement(const SettingsStore &settings)
{
    return ArrangementOf(settings.GetSetting(Section, ChannelsKey));
}

void StoreArrangement(SettingsStore &settings, const TrendArrangement &channels)
{
    settings.SaveSetting(Section, ChannelsKey, TextOf(channels));
}

std::vector<NamedArrangement> LoadUserTemplates(const SettingsStore &settings)
{
    std::vector<NamedArrangement> templates;
    for (int index = 0; index < MostUserTemplates; ++index) {
        const QString text = settings.GetSetting(Section, ControlName("Template", index));
        const qsizetype bar = text.indexOf(u'|');
        if (bar < 0)
            break;
        templates.push_back({text.mid(bar + 1), ArrangementOf(text.left(bar))});
    }
    return templates;
}

void StoreUserTemplates(SettingsStore &settings, const std::vector<NamedArrangement> &templates)
{
    const int count = std::min(int(templates.size()), MostUserTemplates);
    for (int index = 0; index < count; ++index) {
        const NamedArrangement &one = templates[std::size_t(index)];
        settings.SaveSetting(Section, ControlName("Template", index), TextOf(one.channels) + u'|' + one.name);
    }
    // The end of the list: what stood behind it may be of a longer one.
    if (count < MostUserTemplates)
        settings.SaveSetting(Section, ControlName("Template", count), {});
}

int LoadKeepMs(const SettingsStore &settings, int fallback)
{
    const auto numbers = NumbersOf(settings.GetSetting(Section, KeepKey), 1);
    return numbers ? std::clamp(numbers->front(), 1, LongestMs) : fallback;
}

void StoreKeepMs(SettingsStore &settings, int milliseconds)
{
    settings.SaveSetting(Section, KeepKey, QString::number(milliseconds));
}

TriggerSetting LoadTrigger(const SettingsStore &settings)
{
    TriggerSetting trigger;
    const auto numbers = NumbersOf(settings.GetSetting(Section, TriggerKey), 9);
    if (!numbers)
        return trigger;
    const std::vector<int> &number = *numbers;
    trigger.kind = TriggerKind(std::clamp(number[0], int(TriggerKind::None), int(TriggerKind::ByHand)));
    trigger.param = std::max(number[1], 0);
    trigger.rawLevel = number[2];
    trigger.rawHigh = number[3];
    trigger.rawBand = std::max(number[4], 0);
    trigger.windowMs = std::clamp(number[5], ShortestWindowMs, LongestMs);
    trigger.prePercent = std::clamp(number[6], 0, 100);
    trigger.holdOffMs = std::clamp(number[7], 0, LongestMs);
    trigger.captures = std::clamp(number[8], 1, 10);
    return trigger;
}

void StoreTrigger(SettingsStore &settings, const TriggerSetting &trigger)
{
    settings.SaveSetting(
        Section, TriggerKey,
        TextOf({int(trigger.kind), trigger.param, trigger.rawLevel, trigger.rawHigh, trigger.rawBand,
                trigger.windowMs, trigger.prePercent, trigger.holdOffMs, trigger.captures}));
}

void LoadTripTrend(const SettingsStore &settings, TripTrend &trips)
{
    const auto numbers = NumbersOf(settings.GetSetting(Section, TripKey), 0);
    if (!numbers || numbers->empty())
        return;
    const std::vector<int> channels(numbers->begin() + 1, numbers->end());
    if (!channels.empty() && std::ranges::all_of(channels, [](int p) { return p >= 0; }))
        trips.SetChannels(channels);
    trips.SetOn(numbers->front() != 0);
}

void StoreTripTrend(SettingsStore &settings, const TripTrend &trips)
{
    QStringList parts = {QString::number(int(trips.IsOn()))};
    for (const int p : trips.Channels())
        parts += QString::number(p);
    settings.SaveSetting(Section, TripKey, parts.join(u' '));
}

} // namespace quorvik
