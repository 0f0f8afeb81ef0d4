#pragma once

#include <QStringList>

namespace quorvik
{

class SettingsStore;

/** What was chosen last, kept among the user's settings. */
class RecentFinds
{
public:
    static constexpr int Most = 10;

    explicit RecentFinds(SettingsStore &settings)
        : settings_(settings)
    {
    }

    /** The keys of the entries, the newest first. */
    QStringList Keys() const;
    /** Puts one in front, wherever it stood before. */
    void Add(const QString &key);

private:
    SettingsStore &settings_;
};

} // namespace quorvik
