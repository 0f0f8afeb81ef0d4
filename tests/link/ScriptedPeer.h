#pragma once

#include "drive/PseudoTerminal.h"
#include "link/Frames.h"
#include "platform/Waiting.h"

#include <QList>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace quorvik::testing
{

/** Runs the event loop until the condition holds. @return False when it did not within five seconds. */
inline bool WaitUntil(const std::function<bool()> &condition)
{
    return PumpWhile([&] { return !condition(); }, QDeadlineTimer(5000));
}

/**
 * The other end of a pseudo-terminal that behaves as a drive unless a test tells it what to answer. It
 * reaches the program through a link in a folder of its own, so that it can be pulled out and plugged in
 * again.
 */
class ScriptedPeer
{
public:
    ScriptedPeer();

    QString Device() const { return folder_.filePath(QStringLiteral("port")); }

    /** All that arrived, cut into requests and single control bytes. */
    QList<QByteArray> Frames;
    /** What is sent for a frame; the drive's own answer unless replaced. Empty for silence. */
    std::function<QByteArray(const QByteArray &frame)> Answer;
    /** The drive's table: what reads answer, and where writes land. */
    std::map<int, int> Values;
    int LastParam = 40; ///< what the properties of parameter 1 claim

    /** The answer of a well-behaved drive. */
    QByteArray DriveAnswer(const QByteArray &frame);
    void Send(const QByteArray &bytes) { terminal_->Write(bytes); }
    int Count(const QByteArray &frame) const { return int(Frames.count(frame)); }

    void PullOut();
    void PlugIn();

private:
    void Receive();

    QTemporaryDir folder_;
    std::optional<drive::PseudoTerminal> terminal_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QByteArray pending_;
    int current_ = 0;
};

} // namespace quorvik::testing
