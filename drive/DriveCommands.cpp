#include "drive/DriveCommands.h"

#include "platform/Guard.h"

namespace quorvik::drive
{

DriveCommands::DriveCommands(DriveTable &table, CommandTimings timings, QObject *parent)
    : QObject(parent)
    , table_(table)
    , timings_(timings)
{
    for (QTimer *timer : {&save_, &load_, &restart_})
        timer->setSingleShot(true);
    On(&save_, &QTimer::timeout, this, [this] {
        table_.SaveToMemory();
        table_.Put(Param::SaveParameters, 0);
    });
    On(&load_, &QTimer::timeout, this, [this] {
        table_.LoadFromMemory();
        table_.Put(Param::LoadParameters, 0);
    });
}

bool DriveCommands::Obey(int p)
{
    const bool isAsked = table_.IsOn(p);
    switch (p) {
    case Param::SaveParameters:
        if (isAsked)
            save_.start(timings_.memory);
        break;
    case Param::LoadParameters:
        if (isAsked)
            load_.start(timings_.memory);
        break;
    case Param::OneShotCommand:
        if (!isAsked)
            break;
        Restart();
        return false;
    case Param::ClearFault:
        table_.Put(p, 0);
        if (isAsked)
            Q_EMIT FaultCleared();
        break;
    default:
        break;
    }
    return true;
}

void DriveCommands::Restart()
{
    // A save that the restart cuts off has not happened.
    save_.stop();
    load_.stop();
    table_.LoadFromMemory();
    for (const int command : {Param::SaveParameters, Param::LoadParameters, Param::OneShotCommand})
        table_.Put(command, 0);
    restart_.start(timings_.restart);
    Q_EMIT Restarted();
}

} // namespace quorvik::drive
