#pragma once

#include <QObject>
#include <QString>
#include <utility>

namespace quorvik
{

/** An operation under way, as a window follows it. */
class Progress : public QObject
{
    Q_OBJECT

public:
    /** @param tag tells windows of one kind apart. @param steps the step at which the operation is through.
     */
    Progress(QString title, int tag, int steps)
        : title_(std::move(title))
        , tag_(tag)
        , steps_(steps)
    {
    }

    const QString &Title() const { return title_; }
    int Tag() const { return tag_; }
    int Steps() const { return steps_; }
    bool IsOver() const { return isOver_; }

    /** The operation stands at this step; it may go back. */
    void Advance(int step) { Q_EMIT Advanced(step); }
    /** Where it shows only now how many steps there are. */
    void SetSteps(int steps)
    {
        if (std::exchange(steps_, steps) != steps)
            Q_EMIT StepsChanged(steps);
    }
    /** What it is doing, in words, for a window that shows more than a bar. */
    void Say(const QString &sentence) { Q_EMIT Said(sentence); }
    void End()
    {
        isOver_ = true;
        Q_EMIT Ended();
    }
    /** The user wants no more of it; whoever runs the operation ends it. */
    void Cancel() { Q_EMIT CancelWanted(); }

Q_SIGNALS:
    void Advanced(int step);
    void Said(const QString &sentence);
    void StepsChanged(int steps);
    void Ended();
    void CancelWanted();

private:
    QString title_;
    int tag_;
    int steps_;
    bool isOver_ = false;
};

} // namespace quorvik
