#include "platform/Strip.h"

#include <algorithm>

namespace quorvik
{

void Strip::Show(const StripLine &line)
{
    if (closed_.contains({line.key, line.sentence}))
        return;
    closed_.removeIf([&](const auto &closed) { return closed.first == line.key; });
    const auto same = std::ranges::find(lines_, line.key, &StripLine::key);
    if (same != lines_.end() && same->sentence == line.sentence && same->urgency == line.urgency) {
        // A button must never run what another caption stood for.
        const bool isOfferTheSame =
            std::ranges::equal(same->actions, line.actions, {}, &StripAction::caption, &StripAction::caption);
        same->actions = line.actions;
        if (!isOfferTheSame)
            Q_EMIT Changed();
        return;
    }
    Remove(line.key);
    const auto place =
        std::ranges::find_if(lines_, [&](const StripLine &other) { return other.urgency <= line.urgency; });
    lines_.insert(place, line);
    Q_EMIT Changed();
}

void Strip::Withdraw(const QString &key)
{
    closed_.removeIf([&](const auto &closed) { return closed.first == key; });
    if (Remove(key))
        Q_EMIT Changed();
}

void Strip::Close(const QString &key)
{
    const StripLine *line = Find(key);
    if (line == nullptr)
        return;
    closed_.append({key, line->sentence});
    Remove(key);
    Q_EMIT Changed();
}

void Strip::Run(const QString &key, int action)
{
    const StripLine *line = Find(key);
    if (line == nullptr || action < 0 || action >= line->actions.size())
        return;
    // May show another line of the same key, and so replace what is being run.
    const StripAction chosen = line->actions.at(action);
    if (chosen.isLast && Remove(key))
        Q_EMIT Changed();
    chosen.run();
}

const StripLine *Strip::Find(const QString &key) const
{
    const auto at = std::ranges::find(lines_, key, &StripLine::key);
    return at == lines_.end() ? nullptr : &*at;
}

bool Strip::Remove(const QString &key)
{
    return lines_.removeIf([&](const StripLine &line) { return line.key == key; }) > 0;
}

} // namespace quorvik
