#pragma once

#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "drive/MotorModel.h"
#include "link/Frames.h"

#include <functional>
#include <memory>

namespace quorvik::drive
{

using testing::ReadRequest;
using testing::WriteRequest;

/** Parameters with the factory table read. */
std::unique_ptr<ParameterTable> FactoryParameters();

/** The bytes of "02 00 01 A6 A7". */
QByteArray Hex(const char *text);

/** A drive inside the test, with a bare file descriptor where the tool would be. */
class DriveRig
{
public:
    explicit DriveRig(int baud = 0);
    ~DriveRig() { Close(); }

    void Send(const QByteArray &bytes);
    /** Sends, and waits for so many bytes, or for two seconds. */
    QByteArray Exchange(const QByteArray &bytes, int count);
    /** Sends what must not be answered, then a read of 0: true when its reply is all that comes. */
    bool IsUnanswered(const QByteArray &bytes);
    /** A write packet's answer: 6 for accepted, 21 for refused, -1 for none. */
    int Write(int p, int value);
    int Read(int p); ///< by the wire, as a signed value
    bool WaitFor(const std::function<bool()> &condition);
    void Fault(const char *words);
    void Close();
    void Reopen();

    std::unique_ptr<ParameterTable> parameters = FactoryParameters();
    DriveTable table{*parameters};
    DriveCommands commands{table, {30, 40}};
    FaultInjector faults;
    PseudoTerminal terminal;
    std::unique_ptr<DriveServer> server;

private:
    int tool_ = -1;
};

} // namespace quorvik::drive
