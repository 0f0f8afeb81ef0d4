#include "model/Document.h"
#include "model/FullNames.h"
#include "model/ParameterTable.h"
#include "operations/DriveOperations.h"

namespace quorvik
{

namespace
{

constexpr int MostNamed = 12;
constexpr int MostNamedInLine = 4;

struct FaultWords {
    QString title;
    QString sentence;
};

/** The titles differ in one letter between the first fault and the other two. */
FaultWords WordsOf(LinkFault fault)
{
    switch (fault) {
    case LinkFault::DamagedReply:
        return {QStringLiteral("Communication Error"),
                QStringLiteral("Invalid BCC. Check connections and power. Switching OffLine.")};
    case LinkFault::WrongLength:
        return {QStringLiteral("Communications Error"),
                QStringLiteral("Incorrect Packet Size! Check connections and power. Switching OffLine.")};
    case LinkFault::NoReply:
        break;
    }
    return {QStringLiteral("Communications Error"),
            QStringLiteral("Drive not Responding! Check connections and power. Switching OffLine.")};
}

} // namespace

QString DriveOperations::NamesOf(const std::vector<int> &params) const
{
    const QString newLine = QStringLiteral("\r\n");
    return newLine + FullNames(table_, params, MostNamed, newLine);
}

void DriveOperations::Later(const std::function<void()> &work)
{
    // Not from within the link's chain of callbacks: whoever shows a message may run the event loop.
    QMetaObject::invokeMethod(this, work, Qt::QueuedConnection);
}

void DriveOperations::Announce(const QString &sentence, const QString &title)
{
    Later([this, sentence, title] { asker_.Tell(sentence, MsgIcon::Exclamation, title); });
}

void DriveOperations::OnBroken(LinkFault fault, bool mayBeMoving)
{
    const FaultWords words = WordsOf(fault);
    Announce(words.sentence +
                 (mayBeMoving
                      ? QStringLiteral("\r\n\r\nThe motor may still be turning: the drive was told to run or "
                                       "to jog, and nothing reaches it any more. Stop it at the machine.")
                      : QString()),
             words.title);
}

void DriveOperations::OnStopOnlyGivenUp(const std::vector<int> &params)
{
    Announce(QStringLiteral("The drive refuses what may be changed at stop only, so it seems to run. These "
                            "were not sent any more:") +
                 NamesOf(params) + QStringLiteral("\r\n\r\nStop the drive, then write again."),
             QStringLiteral("Write Error"));
}

void DriveOperations::OnWriteGivenUp(int p, std::int32_t rawValue, bool isTold)
{
    if (!isTold)
        Announce(QStringLiteral("Could not write value of %1 to ").arg(rawValue) + table_.FullName(p),
                 QStringLiteral("Write Error"));
    // While leaving, whoever asked for the save sees to it.
    if (!Param::IsCommand(p) || leaving_)
        return;
    MemoryCommandFailed(p);
    if (p == Param::SaveParameters)
        Later([this] { ShowNotSavedMessage(); });
}

void DriveOperations::ShowNotSavedMessage()
{
    asker_.Tell(QStringLiteral("Changes in Drive not saved!"), MsgIcon::Exclamation, AppTitle());
}

QString DriveOperations::WriteSentence(const ScanResult &scan) const
{
    QString sentence = QStringLiteral("%1 written, %2 refused").arg(scan.taken).arg(int(scan.missing.size()));
    if (!scan.missing.empty())
        sentence += QStringLiteral(": ") + FullNames(table_, {scan.missing.begin(), scan.missing.end()},
                                                     MostNamedInLine, QStringLiteral(", "));
    if (scan.end == ScanResult::End::LinkLost)
        sentence += QStringLiteral(". The line was lost before the end");
    else if (scan.end == ScanResult::End::Cancelled)
        sentence += QStringLiteral(". Cancelled before the end");
    return sentence + QStringLiteral(". None of it was read back.");
}

void DriveOperations::SettleReading(const ScanResult &scan)
{
    const bool isComplete = scan.end == ScanResult::End::Complete;
    if (isComplete && scan.missing.empty() && !scan.isInDoubt) {
        document_.HalfRead = false;
        return;
    }
    // Where nothing was read, the set is what it was.
    if (!scan.hasRead)
        return;
    document_.HalfRead = true;
    document_.BecomeUnnamed(true);
    // A user who pressed Cancel knows.
    if (scan.end == ScanResult::End::Cancelled)
        return;

    QString sentence;
    if (!isComplete) {
        sentence = QStringLiteral("The reading did not come to its end. Part of the set is the drive's, the "
                                  "rest is what stood there before.");
    } else if (scan.missing.empty()) {
        sentence = QStringLiteral("The drive's answers came out of step with the questions, so values may "
                                  "stand at the wrong parameters.");
    } else {
        sentence = QStringLiteral("These parameters could not be read, and have the values from before:");
        sentence += NamesOf({scan.missing.begin(), scan.missing.end()});
    }
    Announce(sentence + QStringLiteral("\r\n\r\nRead the drive again before you rely on this set."),
             QStringLiteral("Half Read"));
}

} // namespace quorvik
