#pragma once

#include "drive/PseudoTerminal.h"
#include "support/TestDesk.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

/** Puts the link of a desk on line with a line on which nothing is said; what the drive says and does is
 * told by the link's own signals. */
class OnLine
{
public:
    explicit OnLine(DriveLink &link)
        : link_(link)
    {
        EXPECT_EQ(terminal_.Open(), QString());
        link_.MSComm1.DeviceOf = [this](int) { return terminal_.DevicePath(); };
        EXPECT_EQ(link_.Open(), QString());
        link_.SerialCommTimer.stop();
        link_.SerialCommTimeout.stop();
    }

    void Tells(int p, std::int32_t rawValue) { Q_EMIT link_.Confirmed(p, rawValue); }
    void Refuses(int p, std::int32_t rawValue)
    {
        bool isTold = false;
        Q_EMIT link_.WriteRefused(p, rawValue, &isTold);
    }
    /** Does not answer any more. */
    void Leaves()
    {
        Q_EMIT link_.Broken(LinkFault::NoReply, false);
        Q_EMIT link_.BreakingOff();
        link_.Close();
    }

private:
    drive::PseudoTerminal terminal_;
    DriveLink &link_;
};

} // namespace quorvik::testing
