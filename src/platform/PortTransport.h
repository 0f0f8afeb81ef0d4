#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>

namespace quorvik
{

/**
 * The way to a drive's serial line: a port of this computer, or one that a server lends over the network. It
 * is opened once. Bytes go through it as they are; what the way itself needs stays within.
 */
class PortTransport : public QObject
{
    Q_OBJECT

public:
    /** Why it could not be opened. */
    enum class Failure : std::uint8_t {
        None,
        NotPresent,
        NoPermission,
        InUse,
        NotReached, ///< the network or the server on it
        Other,
    };

    /** Begins to open; OpenEnded() tells the end, of a serial port within the call. */
    virtual void Open() = 0;
    /** What was written leaves before. */
    virtual void Close() = 0;
    virtual QByteArray ReadAll() = 0;
    /** Throws away what has come, and what only the system holds yet. */
    virtual void ClearInput() = 0;
    /** Sends at once. */
    virtual void Write(const QByteArray &bytes) = 0;
    /** Has an adapter hand over at once what it receives, where it gathers otherwise. */
    virtual void SetLowLatency(bool) {}
    /** How long a question and its answer take on the way alone, in milliseconds, as measured while opening;
     * 0 for a serial port, 1 at least for a network. */
    virtual int RoundTripMs() const { return 0; }

    /** Of the opening that has ended; None for one that went well. */
    Failure OpenFailure() const { return failure_; }
    /** Why it did not, in words a technician can act on. */
    const QString &Sentence() const { return sentence_; }

Q_SIGNALS:
    void OpenEnded();
    void ReadyRead();
    /** It is gone while it was open; nothing more comes. */
    void Lost();

protected:
    void EndOpening(Failure failure, const QString &sentence)
    {
        failure_ = failure;
        sentence_ = sentence;
        Q_EMIT OpenEnded();
    }

private:
    Failure failure_ = Failure::None;
    QString sentence_;
};

} // namespace quorvik
