#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {SaveParameters, LoadParameters, ControlFirmwareVersion, TriggerFirmwareVersion,
                             DriveModel};

class FormSystem final : public BlockForm
{
public:
    using BlockForm::BlockForm;

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
                                         .make = MakeBlock<FormSystem, BlockSystem>};

} // namespace quorvik
