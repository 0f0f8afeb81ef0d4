#pragma once

#include <QByteArray>
#include <QObject>
#include <functional>
#include <memory>

class QSerialPort;

namespace quorvik
{

/**
 * A serial port chosen by number, 1 to 16, which raises OnComm when at least RThreshold bytes are buffered.
 *
 * 38400 baud, no parity, 8 data bits, 1 stop bit, no handshaking: the drive speaks nothing else. A port whose
 * adapter is pulled out stays open and silent; going on line again opens it afresh.
 */
class MSComm : public QObject
{
    Q_OBJECT

public:
    enum CommEvents { EvReceive = 2 };

    explicit MSComm(QObject *parent = nullptr);
    ~MSComm() override;

    /** Which device stands behind a port number; filled in by whoever owns the settings. */
    std::function<QString(int)> DeviceOf;

    int CommPort() const { return commPort_; }
    void SetCommPort(int number) { commPort_ = number; }

    bool PortOpen() const;
    /**
     * Opens or closes the port. @return an empty text, or why it could not be opened, in words a technician
     * can act on; the port is then closed.
     */
    QString SetPortOpen(bool open);

    int RThreshold() const { return rThreshold_; }
    /** Bytes that raise OnComm; 0 raises none. */
    void SetRThreshold(int bytes) { rThreshold_ = bytes; }

    int CommEvent() const { return commEvent_; }
    /** Takes all buffered bytes. */
    QByteArray Input();
    int InBufferCount() const;
    /** Throws the buffered bytes away. */
    void ClearInput();
    /** Sends bytes. On a dead port nothing happens: the reply will be missing. */
    void Output(const QByteArray &bytes);

Q_SIGNALS:
    /** CommEvent tells what happened. */
    void OnComm();

private:
    void OnReadyRead();

    std::unique_ptr<QSerialPort> port_;
    QByteArray buffer_;
    int commPort_ = 1;
    int rThreshold_ = 0;
    int commEvent_ = 0;
};

} // namespace quorvik
