#pragma once

#include "tour/DriveProcess.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

class QMenu;

namespace quorvik
{

class MDIFormMain;

/**
 * Plays a user: waits for what is to be seen, then clicks and types. Each step may open a modal window, whose
 * own loop the next step then runs in.
 */
class Tour : public QObject
{
    Q_OBJECT

public:
    Tour(MDIFormMain &main, DriveProcess &drive, QString pictureFolder);

    void Start();
    bool HasFailed() const { return hasFailed_; }

Q_SIGNALS:
    void Finished();

private:
    struct Step {
        QString what;
        std::function<bool()> isReady;
        std::function<void()> act;
        int limitMs = 20000;
    };

    void GoOnlineAndRead();
    void WatchAnalogInput();
    void EditGain();
    void SaveAndReopen();
    void Leave();

    void Add(const QString &what, std::function<bool()> isReady, std::function<void()> act,
             int limitMs = 20000);
    void Tick();
    void End(const QString &failure);
    void TakePicture(const QString &name);
    void Click(const QString &name);
    void ChooseMenu(const QStringList &path);
    QString TextOf(const QString &name) const;
    /** The front modal window of that name, or nothing. */
    QWidget *Modal(const QString &name) const;

    MDIFormMain &main_;
    DriveProcess &drive_;
    QString pictureFolder_;
    QString savedFile_;
    QList<Step> steps_;
    qsizetype next_ = 0;
    QTimer ticks_;
    QElapsedTimer sinceStep_;
    QString shownBefore_;
    QString gainBefore_;
    bool hasFailed_ = false;
};

} // namespace quorvik
