#include "trend/TrendTemplates.h"

#include "model/ParameterNumbers.h"

#include <array>

namespace quorvik
{

namespace
{

constexpr std::array SpeedLoop = {Param::VelocityDemand, Param::VelFeedback, Param::VelError,
                                  Param::VelLoopOutput};
constexpr std::array CurrentLoop = {Param::FinalIDemand, Param::CurrentFeedback, Param::ConductionAngle};
constexpr std::array Field = {Param::FinalFieldIDemand, Param::FieldIFeedback, Param::FieldCondAngle,
                              Param::FieldAmps};
constexpr std::array StartAndStop = {Param::DriveState, Param::RunStatus, Param::LoopEnable,
                                     Param::RampInput};

constexpr std::array<TrendTemplate, 4> Templates = {{
    {"Speed loop step", SpeedLoop},
    {"Current loop", CurrentLoop},
    {"Field", Field},
    {"Start and stop", StartAndStop},
}};

} // namespace

std::span<const TrendTemplate> TrendTemplates()
{
    return Templates;
}

} // namespace quorvik
