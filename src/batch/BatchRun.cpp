#include "batch/BatchRun.h"

#include "operations/EngineSettings.h"
#include "platform/Guard.h"
#include "platform/LoginName.h"

#include <QCoreApplication>

namespace quorvik
{

BatchRun::BatchRun(const EnginePlaces &places, const QCommandLineParser &parser, BatchOutput &output)
    : places_(places)
    , parser_(parser)
    , output_(output)
    , asker_(output)
{
    // The window program offers what it finds there: not for a run that nobody watches.
    places_.keepsRecoveryCopy = false;
    for (const QString &words : parser_.values(QStringLiteral("accept")))
        for (const QString &word : words.split(u',', Qt::SkipEmptyParts))
            asker_.Accepted.insert(word.trimmed());
    engines_ = std::make_unique<Engines>(places_, asker_);
    On(&termination_, &Termination::Requested, this, [this] {
        isInterrupted_ = true;
        if (Progress *progress = asker_.UnderWay())
            progress->Cancel();
        else if (engines_->link.MSComm1.IsPreparing())
            engines_->drive.GiveUpReaching();
        else if (engines_->link.IsAskingForSize())
            engines_->drive.GoOffLine(OffLineReason::User);
        else if (engines_->link.IsScanning())
            engines_->link.CancelScan();
    });
}

BatchRun::~BatchRun() = default;

ExitCode BatchRun::Begin()
{
    if (const QString sentence = engines_->InitGlobals(places_.programFolder); !sentence.isEmpty()) {
        output_.Complain(sentence);
        return ExitCode::File;
    }
    engines_->journal.Begin(ReadKeepLoginName(places_.settings) ? LoginName() : QString());
    engines_->backups.Newest = ReadBackups(places_.settings);
    return ExitCode::Done;
}

bool BatchRun::ChoosePort()
{
    MSComm &port = engines_->link.MSComm1;
    QString wanted = parser_.value(QStringLiteral("port"));
    if (wanted.isEmpty()) {
        if (const int stored = ReadCommPort(places_.settings)) {
            port.SetCommPort(stored);
            return true;
        }
        output_.Complain(QStringLiteral("No port is set up. Name one with --port: its number, its device or "
                                        "its address; \"quorvik-batch ports\" lists what is there."));
        return false;
    }
    QString number = wanted;
    if (number.startsWith(QLatin1String("com"), Qt::CaseInsensitive))
        number.remove(0, 3);
    bool isNumber = false;
    if (const int n = number.toInt(&isNumber); isNumber) {
        if (n < Ports::First || n > Ports::Last) {
            output_.Complain(
                QStringLiteral("There is no port Com%1: ports are Com1 to Com%2.").arg(n).arg(Ports::Last));
            return false;
        }
        port.SetCommPort(n);
        return true;
    }
    device_ = wanted;
    port.SetCommPort(0);
    port.DeviceOf = [this](int) { return device_; };
    return true;
}

ExitCode BatchRun::GoOnLine()
{
    if (!ChoosePort())
        return ExitCode::Usage;
    const OperationResult result = engines_->drive.GoOnLineAside();
    if (isInterrupted_)
        return ExitCode::Interrupted;
    return result.IsDone() ? ExitCode::Done : ExitCode::NoLink;
}

void BatchRun::GoOffLine()
{
    Document &document = engines_->document;
    if (engines_->link.PortOpen() && std::exchange(document.DriveModified, false))
        output_.Say(QStringLiteral("The drive loses what was written when its power goes, unless it saves "
                                   "it: --save has it do so."));
    engines_->drive.GoOffLine(OffLineReason::User);
    // What the link has to say of its end comes through the event loop, which nobody runs any more.
    QCoreApplication::sendPostedEvents();
}

QString BatchRun::PortDevice() const
{
    const MSComm &port = engines_->link.MSComm1;
    return port.DeviceOf(port.CommPort());
}

ExitCode BatchRun::CodeOf(const OperationResult &result) const
{
    if (isInterrupted_)
        return ExitCode::Interrupted;
    switch (result.outcome) {
    case Outcome::Done:
        return ExitCode::Done;
    case Outcome::Partial:
        return ExitCode::Differs;
    case Outcome::LinkLost:
        return ExitCode::NoLink;
    case Outcome::Cancelled:
    case Outcome::Refused:
        break;
    }
    return asker_.HasRefused() ? ExitCode::Guard : ExitCode::Differs;
}

ExitCode BatchRun::UsageFailure(const QString &sentence)
{
    output_.Complain(sentence);
    return ExitCode::Usage;
}

} // namespace quorvik
