#pragma once

#include <QDir>
#include <QSet>
#include <QString>

class QWidget;

namespace quorvik
{

class BlockForm;
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
    /** The windows that are neither blocks nor Mentors. */
    void TakeOthers();

    /** Names of the topics asked for so far, sorted. */
    QStringList Topics() const;
    void AddTopic(const QString &topic) { topics_.insert(topic); }

private:
    /** A drawing that is larger than its window. */
    void TakeZoomed();
    void Take(QWidget &window, const QString &name, const QString &topic);
    template<typename Mentor> void TakePages(Mentor &mentor, int lastStep, const QString &name);

    Desk &desk_;
    QDir folder_;
    PictureStyle style_;
    QSet<QString> topics_;
};

} // namespace quorvik
