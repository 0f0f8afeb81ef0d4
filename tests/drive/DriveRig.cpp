#include "DriveRig.h"

#include "platform/Waiting.h"
#include "settings/SettingsFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvik::drive
{

std::unique_ptr<ParameterTable> FactoryParameters()
{
    auto parameters = std::make_unique<ParameterTable>();
    EXPECT_EQ(LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), *parameters), QString());
    return parameters;
}

QByteArray Hex(const char *text)
{
    return QByteArray::fromHex(text);
}

DriveRig::DriveRig(int baud)
{
    EXPECT_EQ(terminal.Open(), QString());
    server = std::make_unique<DriveServer>(table, commands, faults, terminal, baud);
    Reopen();
}

void DriveRig::Close()
{
    ::close(tool_);
}

void DriveRig::Reopen()
{
    tool_ = ::open(qPrintable(terminal.DevicePath()), O_RDWR | O_NOCTTY | O_NONBLOCK);
    EXPECT_GE(tool_, 0);
}

bool DriveRig::WaitFor(const std::function<bool()> &condition)
{
    return PumpWhile([&] { return !condition(); }, QDeadlineTimer(2000));
}

void DriveRig::Fault(const char *words)
{
    EXPECT_EQ(faults.Add(QString::fromLatin1(words), SteadyNow()), QString());
}

void DriveRig::Send(const QByteArray &bytes)
{
    EXPECT_EQ(::write(tool_, bytes.constData(), std::size_t(bytes.size())), bytes.size());
}

QByteArray DriveRig::Exchange(const QByteArray &bytes, int count)
{
    Send(bytes);
    QByteArray received;
    WaitFor([&] {
        char buffer[256];
        const ssize_t size = ::read(tool_, buffer, sizeof buffer);
        received.append(buffer, int(std::max<ssize_t>(size, 0)));
        return received.size() >= count;
    });
    return received;
}

bool DriveRig::IsUnanswered(const QByteArray &bytes)
{
    return Exchange(bytes + ReadRequest(0), 5) == Hex("02 00 00 00 00") &&
           Exchange(ReadRequest(0), 5).size() == 5;
}

int DriveRig::Write(int p, int value)
{
    const QByteArray reply = Exchange(WriteRequest(p, value), 1);
    return reply.size() == 1 ? reply[0] : -1;
}

int DriveRig::Read(int p)
{
    const QByteArray reply = Exchange(ReadRequest(p), 5);
    EXPECT_EQ(reply.size(), 5);
    return reply.size() == 5 ? std::int16_t((std::uint8_t(reply[2]) << 8) | std::uint8_t(reply[3])) : 0;
}

} // namespace quorvik::drive
