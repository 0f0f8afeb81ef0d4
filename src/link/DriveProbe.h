#pragma once

#include "link/LinkTimings.h"
#include "platform/MSComm.h"

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <map>
#include <set>

namespace quorvik
{

class ParameterTable;

/**
 * Asks a device, without writing a parameter, whether a drive answers there: the properties of parameter 1,
 * and then some values. It waits for nothing: Finished() tells the end, and never from within Start().
 *
 * Each question is repeated once. A reply of the wrong length or with a wrong check character is none. Where
 * an answer needed the repetition, the line must stay quiet afterwards: a reply does not say whose it is, and
 * one that comes too late would be taken for the answer to the next question.
 */
class DriveProbe : public QObject
{
    Q_OBJECT

public:
    struct Answer {
        enum class Kind {
            Drive,        ///< it answers, and told all that was asked for
            Silent,       ///< nothing that a drive would say, or not to the end
            Busy,         ///< in use by another program, or by this one
            NoPermission, ///< for this user
            NotPresent,   ///< nothing is plugged in
            NotReached,   ///< the network, or the server on it
            Failed,       ///< not opened for another reason
        };

        Kind kind = Kind::Failed;
        int lastParam = 0;                          ///< of the drive's table, where one has told it
        std::map<int, std::int32_t> rawValues = {}; ///< by parameter: what was read
        QString sentence = {};                      ///< all of it for the user
    };

    /** @param table tells which values are unsigned; nothing of it changes. */
    explicit DriveProbe(const ParameterTable &table, const LinkTimings &timings = {});

    /**
     * Begins to ask; whatever was asked before is given up.
     * @param device path or address of a device. @param params whose values are wanted besides; those beyond
     * the drive's last parameter are left out of the answer.
     */
    void Start(const QString &device, const std::set<int> &params = {});
    bool IsRunning() const { return step_ != Step::Idle; }
    /** Ends it at once; Finished() is not emitted. */
    void Cancel();

Q_SIGNALS:
    /** The device is closed again; Start() may be called from here. */
    void Finished(const DriveProbe::Answer &answer);

private:
    enum class Step { Idle, Reaching, Properties, Value, Ending };

    void Begin();
    void Ask(bool isRepetition);
    void Receive();
    void TimeOut();
    void TakeReply(const QByteArray &reply);
    void GoOn();
    void End(Answer::Kind kind, const QString &sentence);

    const ParameterTable &table_;
    LinkTimings timings_;
    int timeoutMs_ = 0; ///< for one reply
    MSComm port_;
    QTimer timer_;
    QString device_;
    std::set<int> params_; ///< still to be read; the first one is being asked for
    Answer answer_;
    Step step_ = Step::Idle;
    bool isRepetition_ = false;
    bool isAnswered_ = false; ///< what was asked; the line is being listened to
    bool isSpoiled_ = false;  ///< what came was no answer; the rest of it is waited for
};

} // namespace quorvik
