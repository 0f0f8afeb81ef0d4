#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex { SaveParameters, LoadParameters, ControlFirmware, TriggerFirmware, DriveModel };

constexpr BlockRow Rows[] = {
    {"Save Parameters", 406},          {"Load Parameters", 407}, {"Control Firmware Version", 409},
    {"Trigger Firmware Version", 419}, {"Drive Model", 411},
};

class FormSystem final : public BlockForm
{
public:
    explicit FormSystem(Desk &desk)
        : BlockForm(desk, {.name = "FormSystem",
                           .caption = QStringLiteral("System"),
                           .helpTopic = "System.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &) override
    {
        Tables({0, 0}, {{QStringLiteral("Parameters in the Drive"), {SaveParameters, LoadParameters}},
                        {QStringLiteral("Drive"), {DriveModel, ControlFirmware, TriggerFirmware}}});
    }
};

} // namespace

BlockForm *MakeFormSystem(Desk &desk, int);

BlockForm *MakeFormSystem(Desk &desk, int)
{
    return Loaded(new FormSystem(desk));
}

} // namespace quorvik
