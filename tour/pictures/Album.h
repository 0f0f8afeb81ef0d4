#pragma once

#include <QDir>
#include <QSet>
#include <QString>
#include <utility>
#include <vector>

class QWidget;

namespace quorvik
{

class BlockForm;
class SampleSteps;
struct Desk;

/** What a picture is to look like. */
struct PictureStyle {
    double scale = 1; ///< pixels to a logical pixel
    QString only;     ///< captions must hold this text
};

/**
 * Pictures of the program's windows, one file for each window or Mentor page, named after it, and the help
 * topics that they ask for.
 */
class Album
{
public:
    Album(Desk &desk, const QDir &folder, PictureStyle style);

    void TakeBlocks();
    /** A block with the path of a signal lit, and its tag. */
    void TakeFollowedSignal();
    void TakeMentors();
    /** Windows in the states that a procedure of the help leads to. */
    void TakeProcedures();
    /** The windows that are neither blocks nor Mentors. */
    void TakeOthers();

    /** Names of the topics asked for so far, sorted. */
    QStringList Topics() const;
    void AddTopic(const QString &topic) { topics_.insert(topic); }

private:
    /** A drawing that is larger than its window. */
    void TakeZoomed();
    void TakeBlockWith(const char *formName, const std::vector<std::pair<int, std::int32_t>> &values,
                       const QString &name);
    void TakeSteps(const SampleSteps &steps, const QString &name);
    void Take(QWidget &window, const QString &name, const QString &topic);
    template<typename Mentor> void TakePages(Mentor &mentor, int lastStep, const QString &name);

    Desk &desk_;
    QDir folder_;
    PictureStyle style_;
    QSet<QString> topics_;
};

} // namespace quorvik
