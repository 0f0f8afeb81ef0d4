#include "platform/SerialTransport.h"

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

PortTransport::Failure FailureOf(const QSerialPort &port, const QFileInfo &device)
{
    if (!device.exists())
        return PortTransport::Failure::NotPresent;
    if (!device.isReadable() || !device.isWritable())
        return PortTransport::Failure::NoPermission;
    if (IsNoSerialPort(device))
        return PortTransport::Failure::Other;
    switch (port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return PortTransport::Failure::NotPresent;
    case QSerialPort::PermissionError:
        return PortTransport::Failure::InUse;
    default:
        return PortTransport::Failure::Other;
    }
}

QString WhyNotOpened(PortTransport::Failure failure, const QSerialPort &port, const QString &device,
                     const QString &place)
{
    const QFileInfo info(device);
    switch (failure) {
    case PortTransport::Failure::NotPresent:
        return NoDevice(place);
    case PortTransport::Failure::NoPermission:
        return NoPermission(place, info);
    case PortTransport::Failure::InUse:
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

SerialTransport::SerialTransport(QString device, int number)
    : device_(std::move(device))
    , number_(number)
{
}

SerialTransport::~SerialTransport() = default;

void SerialTransport::Open()
{
    const QString device = RealDevice(device_);
    QString place = QStringLiteral("serial port ") + device_;
    if (number_ > 0)
        place += QStringLiteral(" (Com%1)").arg(number_);
    port_ = MakePort(device);
    bool isOpen = port_->open(QIODevice::ReadWrite);
    if (!isOpen && port_->error() == QSerialPort::PermissionError) {
        // The lock of a process that is gone is nobody's, also where another user's cannot be removed.
        if (const std::optional<PortHolder> holder = HolderOfPort(device); holder && holder->isGone) {
            port_ = MakePort(OtherPathOf(device));
            isOpen = port_->open(QIODevice::ReadWrite);
        }
    }
    if (!isOpen) {
        const Failure failure = FailureOf(*port_, QFileInfo(device));
        EndOpening(failure, WhyNotOpened(failure, *port_, device, place));
        return;
    }
    if (!LockForUs(*port_)) {
        port_->close();
        EndOpening(Failure::InUse, InUse(place, device));
        return;
    }
    // What came before the port was opened is no answer to anything.
    ClearInput();
    connect(port_.get(), &QSerialPort::readyRead, this, &PortTransport::ReadyRead);
    WatchForLoss();
    EndOpening(Failure::None, {});
}

void SerialTransport::Close()
{
    hangUp_.reset();
    port_->disconnect(this);
    if (!isGone_)
        LetLastBytesLeave(*port_);
    port_->close();
}

QByteArray SerialTransport::ReadAll()
{
    return port_->readAll();
}

void SerialTransport::ClearInput()
{
    port_->clear(QSerialPort::Input);
}

void SerialTransport::Write(const QByteArray &bytes)
{
    qsizetype sent = 0;
    // Not by way of the port's own buffer, which costs turns of the event loop: a scan is as fast as its
    // turnarounds.
    if (port_->bytesToWrite() == 0)
        sent = std::max<qsizetype>(::write(port_->handle(), bytes.constData(), std::size_t(bytes.size())), 0);
    if (sent < bytes.size())
        port_->write(bytes.sliced(sent));
}

void SerialTransport::SetLowLatency(bool low)
{
    serial_struct settings{};
    if (::ioctl(port_->handle(), TIOCGSERIAL, &settings) != 0)
        return;
    settings.flags = low ? settings.flags | ASYNC_LOW_LATENCY : settings.flags & ~ASYNC_LOW_LATENCY;
    ::ioctl(port_->handle(), TIOCSSERIAL, &settings);
}

void SerialTransport::WatchForLoss()
{
    // A line that was hung up reads as ready for ever: it is let go of, and the silence left to the caller.
    // Not from within the call that tells it, which still uses the port.
    const auto letGo = [this] {
        isGone_ = true;
        QMetaObject::invokeMethod(this, &PortTransport::Lost, Qt::QueuedConnection);
    };
    connect(port_.get(), &QSerialPort::errorOccurred, this, [letGo](QSerialPort::SerialPortError error) {
        if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError)
            letGo();
    });
    // Newer versions of the port call an end of the line no error.
    hangUp_ = std::make_unique<QSocketNotifier>(port_->handle(), QSocketNotifier::Exception);
    connect(hangUp_.get(), &QSocketNotifier::activated, this, [this, letGo] {
        hangUp_->setEnabled(false);
        letGo();
    });
}

} // namespace quorvik
