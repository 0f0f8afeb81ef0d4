#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <functional>

namespace quorvik
{

/** How much a line wants to be seen; the more urgent one stands in front. */
enum class Urgency : std::uint8_t { Hint, News, Warning, Fault };

/** Something that a line of the strip offers to do. */
struct StripAction {
    QString caption;
    std::function<void()> run;
    bool isLast = true; ///< the line has had its purpose then, and goes
};

/** A line of news that needs no answer. */
struct StripLine {
    QString key; ///< what it is about; there is one line for each
    Urgency urgency = Urgency::News;
    QString sentence; ///< plain text
    QList<StripAction> actions = {};
};

/**
 * The news under the menu, one line in front and the others behind it: by urgency, and among equals the
 * newest first. A line stays until it is closed, withdrawn, or has had its purpose.
 */
class Strip : public QObject
{
    Q_OBJECT

public:
    /** Shows a line, in place of one of the same key. One whose words are the same and that the user has
     * closed stays closed until it is withdrawn; one that says something else is news. */
    void Show(const StripLine &line);
    /** What the line was about holds no longer. */
    void Withdraw(const QString &key);
    /** The user has seen it. */
    void Close(const QString &key);
    /** Runs an action of a line, which may show and withdraw lines. */
    void Run(const QString &key, int action);

    /** The lines in their order. */
    const QList<StripLine> &Lines() const { return lines_; }
    /** The line of this key, or null. */
    const StripLine *Find(const QString &key) const;

Q_SIGNALS:
    void Changed();

private:
    bool Remove(const QString &key);

    QList<StripLine> lines_;
    QList<std::pair<QString, QString>> closed_; ///< keys with their sentences
};

} // namespace quorvik
