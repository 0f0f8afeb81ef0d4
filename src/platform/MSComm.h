#pragma once

#include "platform/PortTransport.h"

#include <QByteArray>
#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quorvik
{

/**
 * A serial port chosen by number, 1 to 16, which raises OnComm when at least RThreshold bytes are buffered.
 *
 * Behind a number stands a device of this computer, or the address of one that a server lends over the
 * network (PortAddress). 38400 baud, no parity, 8 data bits, 1 stop bit, no handshaking: the drive speaks
 * nothing else. A port whose adapter is pulled out, or whose server is gone, stays open and silent; closing
 * and opening it once it is back makes it speak again. An open port is this program's alone.
 */
class MSComm : public QObject
{
    Q_OBJECT

public:
    enum CommEvents { EvReceive = 2 };
    using Failure = PortTransport::Failure;

    explicit MSComm(QObject *parent = nullptr);
    ~MSComm() override;

    /** Which device stands behind a port number, empty for none; filled in by whoever owns the settings. */
    std::function<QString(int)> DeviceOf;

    /** 0 for a device that no number stands for: its path alone names it then. */
    int CommPort() const { return commPort_; }
    void SetCommPort(int number) { commPort_ = number; }

    /**
     * Begins to reach a device that is not there at once, as one behind a network; SetPortOpen(true) then
     * takes it over. Nothing to do for a serial port, nor while the port is open.
     */
    void Prepare();
    /** From Prepare() until it is known whether the device is reached; PrepareEnded() tells. */
    bool IsPreparing() const { return prepared_ && !isPrepared_; }
    /** Gives up what Prepare() has begun or reached; PrepareEnded() is told of the former. */
    void CancelPreparing();
    /** How long the network takes there and back, in milliseconds, as it was measured when it was connected;
     * 0 for a serial port. */
    int RoundTripMs() const { return transport_ ? transport_->RoundTripMs() : 0; }

    bool PortOpen() const { return open_; }
    /**
     * Opens or closes the port; one that Prepare() has not reached before, and that takes its time, is waited
     * for in the event loop. @return an empty text, or why it could not be opened, in words a technician
     * can act on; the port is then closed. May be called from a handler of OnComm.
     */
    QString SetPortOpen(bool open);
    /** Of the last attempt to open it. */
    Failure OpenFailure() const { return failure_; }

    /** Has the adapter hand over what it receives at once, where it gathers for many milliseconds otherwise;
     * one that cannot is left as it is. */
    void SetLowLatency(bool low);

    int RThreshold() const { return rThreshold_; }
    /** Bytes that raise OnComm; 0 raises none. */
    void SetRThreshold(int bytes) { rThreshold_ = bytes; }

    int CommEvent() const { return commEvent_; }
    /** Takes all buffered bytes. */
    QByteArray Input();
    int InBufferCount() const { return int(buffer_.size()); }
    /** Throws the buffered bytes away, those included that only the system holds yet. */
    void ClearInput();
    /** Sends bytes at once. On a dead port nothing happens: the reply will be missing. */
    void Output(const QByteArray &bytes);

Q_SIGNALS:
    void PrepareEnded();
    /** CommEvent tells what happened. */
    void OnComm();

private:
    QString OpenNow();
    void TakeOver(std::unique_ptr<PortTransport> transport);
    void Read();
    void Raise();
    void Retire();

    std::unique_ptr<PortTransport> transport_; ///< none while closed, and none once its other end is gone
    std::unique_ptr<PortTransport> prepared_;  ///< what is being reached, or waits to be taken over
    QString preparedDevice_;
    bool isPrepared_ = false; ///< it is reached, or known not to be
    std::vector<std::unique_ptr<PortTransport>> retired_;
    QByteArray buffer_;
    bool open_ = false;
    bool isLowLatency_ = false;
    Failure failure_ = Failure::None;
    int raising_ = 0;
    int commPort_ = 1;
    int rThreshold_ = 0;
    int commEvent_ = 0;
};

} // namespace quorvik
