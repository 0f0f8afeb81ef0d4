#include "link/ScriptedPeer.h"

#include <QFile>
#include <cstdlib>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace quorvik::testing
{

namespace
{

int Field(const QByteArray &bytes, int at)
{
    return int(quint8(bytes.at(at))) << 8 | quint8(bytes.at(at + 1));
}

QByteArray &AddField(QByteArray &bytes, int value)
{
    return bytes.append(char(value >> 8)).append(char(value));
}

QByteArray Request(char command, int p)
{
    QByteArray bytes{"\x02"};
    bytes.append(command);
    return AddField(bytes, p);
}

} // namespace

QByteArray WithCheck(QByteArray bytes)
{
    char check = 0;
    for (const char byte : bytes.mid(1))
        check = char(check ^ byte);
    return bytes.append(check);
}

QByteArray ReadRequest(int p)
{
    return WithCheck(Request(0, p));
}

QByteArray WriteRequest(int p, int rawValue)
{
    QByteArray bytes = Request(1, p);
    return WithCheck(AddField(bytes, rawValue));
}

QByteArray PropsRequest(int p)
{
    return WithCheck(Request(4, p));
}

QByteArray ValueReply(int rawValue)
{
    QByteArray bytes{"\x55\x07"};
    return WithCheck(AddField(bytes, rawValue));
}

QByteArray PropsReply(int min, int max, int attrib, int preset, int value)
{
    QByteArray bytes{"\x55\x07"};
    for (const int field : {min, max, attrib, preset, value})
        AddField(bytes, field);
    return WithCheck(bytes);
}

ScriptedPeer::ScriptedPeer()
    : Answer([this](const QByteArray &frame) { return DriveAnswer(frame); })
{
    PlugIn();
}

ScriptedPeer::~ScriptedPeer()
{
    PullOut();
}

void ScriptedPeer::PlugIn()
{
    char name[128];
    if (::openpty(&master_, &slave_, name, nullptr, nullptr) != 0)
        std::abort();
    termios settings{};
    ::tcgetattr(slave_, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(slave_, TCSANOW, &settings);
    QFile::link(QString::fromLocal8Bit(name), Device());
    notifier_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { Receive(); });
}

void ScriptedPeer::PullOut()
{
    if (master_ < 0)
        return;
    notifier_.reset();
    ::close(slave_);
    ::close(master_);
    master_ = slave_ = -1;
    QFile::remove(Device());
}

void ScriptedPeer::Send(const QByteArray &bytes)
{
    if (!bytes.isEmpty() && ::write(master_, bytes.constData(), std::size_t(bytes.size())) != bytes.size())
        std::abort();
}

void ScriptedPeer::Receive()
{
    char bytes[256];
    const ssize_t count = ::read(master_, bytes, sizeof bytes);
    if (count <= 0)
        return;
    pending_.append(bytes, count);
    while (!pending_.isEmpty()) {
        qsizetype length = 1;
        if (pending_.at(0) == 2)
            length = pending_.size() < 2 ? 5 : pending_.at(1) == 1 ? 7 : 5;
        if (pending_.size() < length)
            return;
        Frames.append(pending_.left(length));
        pending_.remove(0, length);
        Send(Answer(Frames.last()));
    }
}

QByteArray ScriptedPeer::DriveAnswer(const QByteArray &frame)
{
    if (frame == Ack)
        return ValueReply(Values[++current_]);
    if (frame.size() < 5)
        return {};
    const int p = Field(frame, 2);
    switch (frame.at(1)) {
    case 0:
        current_ = p;
        return ValueReply(Values[p]);
    case 1:
        Values[p] = Field(frame, 4);
        return Ack;
    default:
        return PropsReply(0, LastParam, 0, 0, Values[p]);
    }
}

} // namespace quorvik::testing
