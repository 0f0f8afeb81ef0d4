#pragma once

#include "tour/DriveProcess.h"
#include "tour/Hands.h"

#include <QElapsedTimer>
#include <QObject>
#include <functional>

namespace quorvik
{

/**
 * Plays a user: waits for what is to be seen, then clicks and types. Each step may open a modal window, whose
 * own loop the next step then runs in.
 */
class Tour : public QObject
{
    Q_OBJECT

public:
    Tour(Program &program, DriveProcess &drive, QString pictureFolder);

    /** Adds a step: once isReady, act is done, which tells what went wrong, or nothing. */
    void Add(const QString &what, std::function<bool()> isReady, std::function<QString()> act,
             int limitMs = 20000);
    /** A step that is ready at once. */
    void Do(const QString &what, std::function<QString()> act);

    void Start();
    bool HasFailed() const { return hasFailed_; }

    /** Saves the scene, or one window of it where one is given. */
    void TakePicture(const QString &name, QWidget *window = nullptr);
    void Say(const QString &line) const;
    /** A figure for the summary at the end. */
    void Note(const QString &figure) { figures_.append(figure); }

    Program &TheProgram() { return program_; }
    DriveProcess &Drive() { return drive_; }
    Hands &User() { return hands_; }
    QString PictureFolder() const { return pictureFolder_; }
    qint64 SinceStart() const { return sinceStart_.elapsed(); }

Q_SIGNALS:
    void Finished();

private:
    struct Step {
        QString what;
        std::function<bool()> isReady;
        std::function<QString()> act;
        int limitMs;
    };

    void AwaitTick();
    void Tick();
    void End(const QString &failure);

    Program &program_;
    DriveProcess &drive_;
    Hands hands_;
    QString pictureFolder_;
    QList<Step> steps_;
    qsizetype next_ = 0;
    QElapsedTimer sinceStart_;
    QElapsedTimer sinceStep_;
    QStringList figures_;
    int pictures_ = 0;
    bool hasFailed_ = false;
    bool hasEnded_ = false;
};

} // namespace quorvik
