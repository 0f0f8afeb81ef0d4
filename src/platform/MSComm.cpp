#include "platform/MSComm.h"

#include "platform/PortLock.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSerialPort>
#include <QSocketNotifier>
#include <algorithm>
#include <utility>

#include <linux/serial.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace quorvik
{

namespace
{

/** More than this is never kept; what arrives beyond it is lost, as in the port's own buffer. */
constexpr int InBufferSize = 1024;

/** The real device behind a path, so that locks meet whatever link it was reached by. */
QString RealDevice(const QString &device)
{
    const QString real = QFileInfo(device).canonicalFilePath();
    return real.isEmpty() ? device : real;
}

std::unique_ptr<QSerialPort> MakePort(const QString &device)
{
    auto port = std::make_unique<QSerialPort>(device);
    port->setBaudRate(QSerialPort::Baud38400);
    port->setDataBits(QSerialPort::Data8);
    port->setParity(QSerialPort::NoParity);
    port->setStopBits(QSerialPort::OneStop);
    port->setFlowControl(QSerialPort::NoFlowControl);
    return port;
}

/** Keeps out programs that lock the way terminal programs do; the port itself keeps out the others. */
bool LockForUs(const QSerialPort &port)
{
    return ::flock(port.handle(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/** A closed port forgets its speed at once, so what was just sent must have left before. */
void LetLastBytesLeave(const QSerialPort &port)
{
    ::tcdrain(port.handle());
}

/** A place as the first words of a sentence. */
QString Starting(QString place)
{
    place[0] = place.at(0).toUpper();
    return place;
}

QString InUse(const QString &place, const QString &device)
{
    const std::optional<PortHolder> holder = HolderOfPort(device);
    QString words = Starting(place) +
                    QStringLiteral(" is in use by another program. Close that program, then try again.");
    // Where the device itself is locked, the lock file is this program's.
    if (holder && !holder->isGone && holder->process != QCoreApplication::applicationPid())
        words +=
            QStringLiteral("\r\n\r\n(It is process %1, \"%2\".)").arg(holder->process).arg(holder->program);
    return words;
}

QString NoDevice(const QString &place)
{
    return QStringLiteral("There is no ") + place +
           QStringLiteral(". Plug the adapter in, or choose another port with Options, Communications.");
}

QString NoPermission(const QString &place, const QFileInfo &device)
{
    const QString group = device.group();
    const QString way =
        group.isEmpty()
            ? QStringLiteral("Ask the administrator of this computer for access to it.")
            : QStringLiteral("It belongs to the group \"%1\": have yourself made a member of it "
                             "(sudo usermod -a -G %1 followed by your user name), then log in again.")
                  .arg(group);
    return QStringLiteral("You have no permission to use ") + place + QStringLiteral(". ") + way;
}

bool IsNoSerialPort(const QFileInfo &device)
{
    return device.isFile() || device.isDir();
}

MSComm::Failure FailureOf(const QSerialPort &port, const QFileInfo &device)
{
    if (!device.exists())
        return MSComm::Failure::NotPresent;
    if (!device.isReadable() || !device.isWritable())
        return MSComm::Failure::NoPermission;
    if (IsNoSerialPort(device))
        return MSComm::Failure::Other;
    switch (port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return MSComm::Failure::NotPresent;
    case QSerialPort::PermissionError:
        return MSComm::Failure::InUse;
    default:
        return MSComm::Failure::Other;
    }
}

QString WhyNotOpened(MSComm::Failure failure, const QSerialPort &port, const QString &device,
                     const QString &place)
{
    const QFileInfo info(device);
    switch (failure) {
    case MSComm::Failure::NotPresent:
        return NoDevice(place);
    case MSComm::Failure::NoPermission:
        return NoPermission(place, info);
    case MSComm::Failure::InUse:
        return InUse(place, device);
    default:
        break;
    }
    if (IsNoSerialPort(info))
        return Starting(place) +
               QStringLiteral(" is not a serial port. Choose another with Options, Communications.");
    return QStringLiteral("Nothing can be connected to ") + place + QStringLiteral(": ") +
           port.errorString() + QStringLiteral(".\r\n\r\nChoose another port with Options, Communications.");
}

} // namespace

MSComm::MSComm(QObject *parent)
    : QObject(parent)
    , DeviceOf([](int) { return QString(); })
{
}

MSComm::~MSComm() = default;

QString MSComm::SetPortOpen(bool open)
{
    if (open == open_)
        return {};
    buffer_.clear();
    if (!open) {
        open_ = false;
        if (port_)
            LetLastBytesLeave(*port_);
        Retire();
        return {};
    }

    failure_ = Failure::NotPresent;
    const QString named = DeviceOf(commPort_);
    if (named.isEmpty())
        return NoDevice(QStringLiteral("port Com%1").arg(commPort_));
    const QString device = RealDevice(named);
    QString place = QStringLiteral("serial port ") + named;
    if (commPort_ > 0)
        place += QStringLiteral(" (Com%1)").arg(commPort_);
    auto port = MakePort(device);
    bool isOpen = port->open(QIODevice::ReadWrite);
    if (!isOpen && port->error() == QSerialPort::PermissionError) {
        // The lock of a process that is gone is nobody's, also where another user's cannot be removed.
        if (const std::optional<PortHolder> holder = HolderOfPort(device); holder && holder->isGone) {
            port = MakePort(OtherPathOf(device));
            isOpen = port->open(QIODevice::ReadWrite);
        }
    }
    if (!isOpen) {
        failure_ = FailureOf(*port, QFileInfo(device));
        return WhyNotOpened(failure_, *port, device, place);
    }
    failure_ = Failure::InUse;
    if (!LockForUs(*port))
        return InUse(place, device);
    failure_ = Failure::None;

    port_ = std::move(port);
    open_ = true;
    connect(port_.get(), &QSerialPort::readyRead, this, &MSComm::Read);
    WatchForLoss();
    if (isLowLatency_)
        ApplyLatency();
    return {};
}

void MSComm::SetLowLatency(bool low)
{
    if (std::exchange(isLowLatency_, low) != low)
        ApplyLatency();
}

void MSComm::ApplyLatency()
{
    serial_struct settings{};
    if (!port_ || ::ioctl(port_->handle(), TIOCGSERIAL, &settings) != 0)
        return;
    settings.flags = isLowLatency_ ? settings.flags | ASYNC_LOW_LATENCY : settings.flags & ~ASYNC_LOW_LATENCY;
    ::ioctl(port_->handle(), TIOCSSERIAL, &settings);
}

QByteArray MSComm::Input()
{
    return std::exchange(buffer_, {});
}

void MSComm::ClearInput()
{
    if (port_)
        port_->clear(QSerialPort::Input);
    buffer_.clear();
}

void MSComm::Output(const QByteArray &bytes)
{
    if (!port_)
        return;
    qsizetype sent = 0;
    // Not by way of the port's own buffer, which costs turns of the event loop: a scan is as fast as its
    // turnarounds.
    if (port_->bytesToWrite() == 0)
        sent = std::max<qsizetype>(::write(port_->handle(), bytes.constData(), std::size_t(bytes.size())), 0);
    if (sent < bytes.size())
        port_->write(bytes.sliced(sent));
}

void MSComm::Read()
{
    buffer_ += port_->readAll();
    if (buffer_.size() > InBufferSize)
        buffer_.truncate(InBufferSize);
    if (rThreshold_ > 0 && buffer_.size() >= rThreshold_)
        Raise();
}

void MSComm::Raise()
{
    ++raising_;
    commEvent_ = EvReceive;
    Q_EMIT OnComm();
    if (--raising_ > 0)
        return;
    for (auto &port : retired_)
        port.release()->deleteLater();
    retired_.clear();
}

void MSComm::WatchForLoss()
{
    QSerialPort *port = port_.get();
    // A line that was hung up reads as ready for ever: let go of it, and leave the silence to the caller.
    // Not from within the call that tells it, which still uses the port.
    const auto letGo = [this, port] {
        QMetaObject::invokeMethod(
            port,
            [this, port] {
                if (port_.get() == port)
                    Retire();
            },
            Qt::QueuedConnection);
    };
    connect(port, &QSerialPort::errorOccurred, this, [letGo](QSerialPort::SerialPortError error) {
        if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError)
            letGo();
    });
    // Newer versions of the port call an end of the line no error.
    hangUp_ = std::make_unique<QSocketNotifier>(port->handle(), QSocketNotifier::Exception);
    connect(hangUp_.get(), &QSocketNotifier::activated, this, [this, letGo] {
        hangUp_->setEnabled(false);
        letGo();
    });
}

void MSComm::Retire()
{
    if (!port_)
        return;
    port_->disconnect(this);
    hangUp_.reset();
    port_->close();
    // While OnComm is being raised its port is still in use further up, even after a nested event loop.
    if (raising_ > 0)
        retired_.push_back(std::move(port_));
    else
        port_.release()->deleteLater();
}

} // namespace quorvik
