#pragma once

#include "platform/PortTransport.h"

#include <memory>

class QSerialPort;
class QSocketNotifier;

namespace quorvik
{

/** A serial port of this computer: 38400 baud, no parity, 8 data bits, 1 stop bit, no handshaking. An open
 * port is this program's alone. */
class SerialTransport : public PortTransport
{
    Q_OBJECT

public:
    /** @param number the port's, for sentences; 0 for a device that no number stands for. */
    SerialTransport(QString device, int number);
    ~SerialTransport() override;

    void Open() override;
    void Close() override;
    QByteArray ReadAll() override;
    void ClearInput() override;
    void Write(const QByteArray &bytes) override;
    void SetLowLatency(bool low) override;

private:
    void WatchForLoss();

    QString device_;
    int number_;
    std::unique_ptr<QSerialPort> port_;
    std::unique_ptr<QSocketNotifier> hangUp_;
    bool isGone_ = false; ///< its adapter was pulled out
};

} // namespace quorvik
