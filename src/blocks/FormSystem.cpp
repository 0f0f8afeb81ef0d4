#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {SaveParameters, LoadParameters, ControlFirmwareVersion, TriggerFirmwareVersion,
                             DriveModel};

class SystemSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &) override
    {
        Tables({0, 0},
               {{QStringLiteral("Parameters in the Drive"), {SaveParameters, LoadParameters}},
                {QStringLiteral("Drive"), {DriveModel, ControlFirmwareVersion, TriggerFirmwareVersion}}});
    }
};

} // namespace

constexpr BlockDescriptor BlockSystem = {.form = "FormSystem",
                                         .window = "System",
                                         .helpTopic = "System.htm",
                                         .rows = Rows,
                                         .sheet = MakeSheet<SystemSheet>};

} // namespace quorvik
