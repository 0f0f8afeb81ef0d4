#include "platform/MSComm.h"

#include <QSerialPort>
#include <utility>

namespace quorvik
{

MSComm::MSComm(QObject *parent)
    : QObject(parent)
    , DeviceOf([](int number) { return QStringLiteral("/dev/ttyS%1").arg(number - 1); })
{
}

MSComm::~MSComm() = default;

bool MSComm::PortOpen() const
{
    return port_ != nullptr;
}

QString MSComm::SetPortOpen(bool open)
{
    if (open == PortOpen())
        return {};
    buffer_.clear();
    if (!open) {
        port_.reset();
        return {};
    }
    return {};
}

QByteArray MSComm::Input()
{
    return std::exchange(buffer_, {});
}

int MSComm::InBufferCount() const
{
    return int(buffer_.size());
}

void MSComm::ClearInput()
{
    buffer_.clear();
}

void MSComm::Output(const QByteArray &bytes)
{
    if (port_)
        port_->write(bytes);
}

void MSComm::OnReadyRead()
{
    buffer_ += port_->readAll();
    if (rThreshold_ > 0 && buffer_.size() >= rThreshold_) {
        commEvent_ = EvReceive;
        Q_EMIT OnComm();
    }
}

} // namespace quorvik
