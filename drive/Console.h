#pragma once

#include "drive/DriveServer.h"
#include "drive/MotorModel.h"

#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

namespace quorvik::drive
{

class DriveCommands;

/** Everything that a command line can reach. */
struct Workbench {
    DriveTable &table;
    DriveCommands &commands;
    FaultInjector &faults;
    DriveServer &server;
    MotorModel &machine;
};

/** The commands that are typed, or piped, into the running program. */
class Console : public QObject
{
    Q_OBJECT

public:
    explicit Console(Workbench bench, QObject *parent = nullptr);

    /** Follows a file descriptor line by line and prints the answers on standard output; its end is silence,
     * not a command. */
    void Follow(int descriptor);

    /** Runs one command. @return the lines of its answer, none where there is nothing to say. */
    QStringList Execute(const QString &line);

    bool IsFrozen() const { return isFrozen_; } ///< the machine stands still, the wire does not
    void SetFrozen(bool frozen) { isFrozen_ = frozen; }
    bool IsDemo() const { return isDemo_; } ///< the machine runs by itself
    void SetDemo(bool demo) { isDemo_ = demo; }

Q_SIGNALS:
    void QuitAsked();
    void InputEnded();

private:
    void ReadInput();
    QStringList Print(const QStringList &words);
    QString Feedback(const QStringList &words);
    QString Terminal(const QStringList &words);
    QString Fault(const QString &rest);

    Workbench bench_;
    QSocketNotifier *input_ = nullptr;
    QByteArray partial_;
    bool isFrozen_ = false;
    bool isDemo_ = false;
};

} // namespace quorvik::drive
