#include "drive/MotorModel.h"

namespace quorvik::drive
{

MotorModel::MotorModel(DriveTable &table, std::uint64_t seed)
    : noise_(seed)
    , inputs_(table, noise_, terminals_)
    , functions_(table)
    , logic_(table)
    , setpoints_(table)
    , loops_(table, noise_, terminals_)
    , field_(table, noise_)
    , faults_(table)
    , instruments_(table, noise_)
    , outputs_(table)
{
    instruments_.SetClock();
    logic_.PowerOn();
}

void MotorModel::PowerOn()
{
    logic_.PowerOn();
    faults_.PowerOn();
}

void MotorModel::Tick(double seconds)
{
    inputs_.Tick(seconds);
    functions_.Tick(seconds);
    faults_.Tick(seconds);
    logic_.Tick(seconds);
    setpoints_.Tick(seconds);
    field_.Tick(seconds);
    loops_.Tick(seconds, field_.Flux());
    instruments_.Tick(seconds, loops_.Current());
    outputs_.Tick();
}

} // namespace quorvik::drive
