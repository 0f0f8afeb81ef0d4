#pragma once

#include "link/DriveProbe.h"
#include "platform/Ports.h"

#include <QList>
#include <QObject>

namespace quorvik
{

/** Asks one free port after the other whether a drive answers there; see DriveProbe. */
class DriveFinder : public QObject
{
    Q_OBJECT

public:
    explicit DriveFinder(const ParameterTable &table, const LinkTimings &timings = {});

    /** Begins; ports that are not free are left alone. Where none is, Finished() comes from here. */
    void Start(const QList<PortStatus> &ports);
    bool IsRunning() const { return probe_.IsRunning(); }
    /** Ends it at once; nothing more is emitted. */
    void Cancel() { probe_.Cancel(); }

    /** What an answer says of its port, after the port's name. */
    static QString TextOf(const DriveProbe::Answer &answer);

Q_SIGNALS:
    void Asking(const PortStatus &port);
    void Answered(const PortStatus &port, const DriveProbe::Answer &answer);
    /** @param drives ports where a drive answered, in the order in which they were asked. */
    void Finished(const QList<PortStatus> &drives);

private:
    void AskNext();
    void TakeAnswer(const DriveProbe::Answer &answer);

    DriveProbe probe_;
    QList<PortStatus> ports_; ///< still to be asked; the first is being asked
    QList<PortStatus> drives_;
};

} // namespace quorvik
