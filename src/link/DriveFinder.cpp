#include "link/DriveFinder.h"

#include "platform/Guard.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

DriveFinder::DriveFinder(const ParameterTable &table, const LinkTimings &timings)
    : probe_(table, timings)
{
    On(&probe_, &DriveProbe::Finished, this,
       [this](const DriveProbe::Answer &answer) { TakeAnswer(answer); });
}

void DriveFinder::Start(const QList<PortStatus> &ports)
{
    Cancel();
    ports_.clear();
    drives_.clear();
    for (const PortStatus &port : ports)
        if (port.CanBeAsked())
            ports_.append(port);
    // Those of this computer answer sooner.
    std::stable_partition(ports_.begin(), ports_.end(),
                          [](const PortStatus &port) { return port.use == PortStatus::Use::Free; });
    AskNext();
}

void DriveFinder::AskNext()
{
    if (ports_.isEmpty()) {
        Q_EMIT Finished(std::exchange(drives_, {}));
        return;
    }
    Q_EMIT Asking(ports_.first());
    probe_.Start(ports_.first().device);
}

void DriveFinder::TakeAnswer(const DriveProbe::Answer &answer)
{
    const PortStatus port = ports_.takeFirst();
    if (answer.kind == DriveProbe::Answer::Kind::Drive)
        drives_.append(port);
    Q_EMIT Answered(port, answer);
    AskNext();
}

QString DriveFinder::TextOf(const DriveProbe::Answer &answer)
{
    using Kind = DriveProbe::Answer::Kind;
    switch (answer.kind) {
    case Kind::Drive:
        return QStringLiteral("a Sarvex drive answers (last parameter %1)").arg(answer.lastParam);
    case Kind::Silent:
        return QStringLiteral("no answer");
    case Kind::Busy:
        return QStringLiteral("in use by another program");
    case Kind::NoPermission:
        return QStringLiteral("no permission");
    case Kind::NotPresent:
        return QStringLiteral("not present");
    case Kind::NotReached:
        return QStringLiteral("not reached");
    case Kind::Failed:
        break;
    }
    return QStringLiteral("cannot be opened");
}

} // namespace quorvik
