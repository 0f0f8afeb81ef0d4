#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

class QMenu;

namespace quorvik
{

class Document;
class SettingsStore;
class Strip;

/**
 * The settings files that were opened or saved last, in a menu, newest first. Only their paths are kept.
 * Whether one is still there is looked at when it is chosen: a folder behind a network that does not answer
 * would hold the menu up.
 */
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    static constexpr int Newest = 8;

    /** @param open opens a file that is there, with all questions of File, Open. */
    RecentFiles(const Document &document, SettingsStore &settings, Strip &strip, QMenu *menu,
                std::function<void(const QString &path)> open, QObject *parent);

    /** The newest first. */
    const QStringList &Paths() const { return paths_; }
    /** Opens one of them; one that is no longer there is told, and leaves the list. */
    void Choose(const QString &path);

Q_SIGNALS:
    void Changed();

private:
    void Follow();
    void Store();
    void List();

    const Document &document_;
    SettingsStore &settings_;
    Strip &strip_;
    QMenu *menu_;
    std::function<void(const QString &path)> open_;
    QStringList paths_;
};

} // namespace quorvik
