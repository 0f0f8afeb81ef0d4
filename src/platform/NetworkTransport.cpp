#include "platform/NetworkTransport.h"

#include "platform/Guard.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

/** More than the drive ever sends at once; a server that floods is not to fill the memory. */
constexpr qsizetype LongestBuffer = 4096;
constexpr qsizetype LongestSaid = 120;
/** For the last bytes before it is closed. */
constexpr int LastBytesMs = 200;

} // namespace

NetworkTransport::NetworkTransport(PortAddress address)
    : address_(std::move(address))
{
    if (address_.protocol == PortAddress::Protocol::Rfc2217)
        control_.emplace();
    again_.setSingleShot(true);
    limit_.setSingleShot(true);
    settle_.setSingleShot(true);
    On(&limit_, &QTimer::timeout, this, [this] { TimeOut(); });
    On(&again_, &QTimer::timeout, this, [this] { Connect(); });
    On(&settle_, &QTimer::timeout, this, [this] { End(Failure::None, {}); });
    On(&socket_, &QTcpSocket::hostFound, this, [this] { asked_.start(); });
    On(&socket_, &QTcpSocket::connected, this, [this] { Connected(); });
    On(&socket_, &QTcpSocket::readyRead, this, [this] { Receive(); });
    On(&socket_, &QTcpSocket::errorOccurred, this, [this] { SocketEnded(); });
    On(&socket_, &QTcpSocket::disconnected, this, [this] { SocketEnded(); });
}

NetworkTransport::~NetworkTransport()
{
    socket_.disconnect(this);
}

void NetworkTransport::Open()
{
    limit_.start(OpenLimitMs);
    Connect();
}

void NetworkTransport::Connect()
{
    if (control_)
        control_.emplace();
    said_.clear();
    step_ = Step::Connecting;
    asked_.start();
    socket_.connectToHost(address_.host, address_.port);
}

void NetworkTransport::Connected()
{
    roundTripMs_ = std::max(int(asked_.elapsed()), 1);
    socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket_.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    step_ = Step::Settling;
    if (!control_) {
        settle_.start(std::max(SettleMs, 2 * roundTripMs_));
        return;
    }
    asked_.restart();
    socket_.write(control_->Begin());
    socket_.flush();
}

void NetworkTransport::Receive()
{
    QByteArray bytes = socket_.readAll();
    if (control_) {
        QByteArray answer;
        bytes = control_->Take(bytes, answer);
        Reply(answer);
    }
    if (step_ == Step::Settling) {
        // Nothing was asked yet, so it is no reply.
        said_ = (said_ + bytes).left(LongestSaid);
        Agree();
        return;
    }
    if (step_ != Step::Open || bytes.isEmpty())
        return;
    buffer_ = (buffer_ + bytes).left(LongestBuffer);
    Q_EMIT ReadyRead();
}

void NetworkTransport::Agree()
{
    if (!control_)
        return;
    switch (control_->State()) {
    case ComPortControl::Agreement::Pending:
        break;
    case ComPortControl::Agreement::Reached:
        // The server's own work is in it, as it will be in every answer.
        roundTripMs_ = std::max(roundTripMs_, int(asked_.elapsed()) / 2);
        End(Failure::None, {});
        break;
    case ComPortControl::Agreement::Refused:
        End(Failure::Other, QStringLiteral("The server at %1 %2.").arg(address_.Text(), control_->WhyNot()));
        break;
    }
}

QString NetworkTransport::SaidText() const
{
    QString text = QString::fromLatin1(said_).simplified();
    text.removeIf([](QChar c) { return !c.isPrint(); });
    return text;
}

void NetworkTransport::SocketEnded()
{
    if (step_ == Step::Open) {
        step_ = Step::Closed;
        Q_EMIT Lost();
        return;
    }
    if (step_ == Step::Settling) {
        // What it said last may have come together with the end.
        Receive();
        if (step_ != Step::Settling)
            return;
        settle_.stop();
        if (OpenLimitMs - limit_.remainingTime() < BusyLimitMs) {
            step_ = Step::Waiting;
            socket_.abort();
            again_.start(BusyPauseMs);
            return;
        }
        const QString said = SaidText();
        End(Failure::InUse,
            QStringLiteral(
                "The server at %1 has closed the connection at once%2. Mostly another program uses "
                "its port: close that program, then try again.")
                .arg(address_.Text(), said.isEmpty() ? QString() : QStringLiteral(" (\"%1\")").arg(said)));
        return;
    }
    if (step_ != Step::Connecting)
        return;
    switch (socket_.error()) {
    case QAbstractSocket::HostNotFoundError:
        End(Failure::NotReached, QStringLiteral("There is no host \"%1\". Check the name, and whether this "
                                                "computer is in the machine's network.")
                                     .arg(address_.host));
        break;
    case QAbstractSocket::ConnectionRefusedError:
        End(Failure::NotReached,
            QStringLiteral("The host \"%1\" is there, but nobody answers at its port %2. Check the port's "
                           "number, and whether the serial device server runs.")
                .arg(address_.host)
                .arg(address_.port));
        break;
    default:
        End(Failure::NotReached, QStringLiteral("%1 cannot be reached: %2. Check cable, address and network.")
                                     .arg(address_.Text(), socket_.errorString()));
    }
}

void NetworkTransport::TimeOut()
{
    if (step_ == Step::Settling && !control_)
        // Connected late, so that twice the round trip is more than what is left: it has stood long enough.
        End(Failure::None, {});
    else if (step_ == Step::Connecting || step_ == Step::Waiting)
        End(Failure::NotReached,
            QStringLiteral("%1 did not answer within %2 seconds. Check cable, address and "
                           "network.")
                .arg(address_.Text())
                .arg(OpenLimitMs / 1000));
    else
        End(Failure::Other,
            QStringLiteral(
                "The server at %1 does not agree on the line's settings by RFC 2217. Where it hands "
                "on the plain bytes of the line, write tcp:// instead.")
                .arg(address_.Text()));
}

void NetworkTransport::End(Failure failure, const QString &sentence)
{
    again_.stop();
    limit_.stop();
    settle_.stop();
    step_ = failure == Failure::None ? Step::Open : Step::Closed;
    if (failure != Failure::None)
        socket_.abort();
    said_.clear();
    EndOpening(failure, sentence);
}

void NetworkTransport::Close()
{
    const bool wasOpen = std::exchange(step_, Step::Closed) == Step::Open;
    again_.stop();
    limit_.stop();
    settle_.stop();
    socket_.disconnect(this);
    if (wasOpen && socket_.bytesToWrite() > 0)
        socket_.waitForBytesWritten(LastBytesMs);
    if (wasOpen)
        socket_.disconnectFromHost();
    else
        socket_.abort();
}

QByteArray NetworkTransport::ReadAll()
{
    return std::exchange(buffer_, {});
}

void NetworkTransport::ClearInput()
{
    if (step_ == Step::Open && socket_.bytesAvailable() > 0) {
        // What telnet has in between is still to be understood.
        const QByteArray bytes = socket_.readAll();
        QByteArray answer;
        if (control_)
            control_->Take(bytes, answer);
        Reply(answer);
    }
    buffer_.clear();
}

void NetworkTransport::Reply(const QByteArray &answer)
{
    // A server that asks on and on and takes no answer is not to fill the memory either.
    if (answer.isEmpty() || socket_.bytesToWrite() > LongestBuffer)
        return;
    socket_.write(answer);
    socket_.flush();
}

void NetworkTransport::Write(const QByteArray &bytes)
{
    if (step_ != Step::Open)
        return;
    socket_.write(control_ ? control_->Escaped(bytes) : bytes);
    socket_.flush();
}

} // namespace quorvik
