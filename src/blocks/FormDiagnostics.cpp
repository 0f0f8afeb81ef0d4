#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    ArmatureIfb1,
    ArmatureIfb2,
    ArmatureIfb3,
    ArmatureIfb4,
    LineVoltageStatus,
    HeatsinkStatus,
    Plus12Status,
    FieldIfb1,
    FieldIfb2,
    FieldIfb3,
    FieldIfb4,
    FieldVfb,
    BatteryStatus,
    EfbCounter,
    Plus15Status,
    Plus24Status,
    Reserved,
    DcTfb,
    AcTfb,
    Afb,
    LineVoltage,
    HeatsinkTemp,
    Plus12Supply,
    FanMode,
    DriveModel,
    BatterySupply,
    SystemStatus,
    Plus15Supply,
    Plus24Supply,
    WatchdogStatus,
};

constexpr BlockRow Rows[] = {
    {"Armature IFB Status #1", 147},
    {"Armature IFB Status #2", 151},
    {"Armature IFB Status #3", 155},
    {"Armature IFB Status #4", 159},
    {"Line Voltage Status", 149},
    {"Heatsink Status", 153},
    {"+12V Status", 157},
    {"Field IFB Status #1", 148},
    {"Field IFB Status #2", 152},
    {"Field IFB Status #3", 156},
    {"Field IFB Status #4", 160},
    {"Field VFB Status", 150},
    {"Battery Status", 154},
    {"EFB Counter Status", 163},
    {"+15V Status", 158},
    {"+24V Status", 162},
    {"Reserved", 161},
    {"DC TFB Status", 144},
    {"AC TFB Status", 145},
    {"AFB Status", 146},
    {"Line Voltage", 175},
    {"Heatsink Temp", 176},
    {"+12V Supply", 171},
    {"Fan Mode", 410},
    {"Drive Model", 411},
    {"Battery Supply", 174},
    {"System Status", 238},
    {"+15V Supply", 172},
    {"+24V Status", 173},
    {"Watchdog Status", 418},
};

class FormDiagnostics final : public BlockForm
{
public:
    explicit FormDiagnostics(Desk &desk)
        : BlockForm(desk, {.name = "FormDiagnostics",
                           .caption = QStringLiteral("Diagnostics"),
                           .helpTopic = "Diagnostics.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &) override
    {
        // Ten rows to a column, so that the columns end on one line.
        constexpr double distance = 2;
        const QRectF feedback = Tables(
            {0, 0},
            {{QStringLiteral("Armature"), {ArmatureIfb1, ArmatureIfb2, ArmatureIfb3, ArmatureIfb4, Afb}},
             {QStringLiteral("Field"), {FieldIfb1, FieldIfb2, FieldIfb3, FieldIfb4, FieldVfb}}});
        const QRectF supplies = Tables({feedback.right() + distance, 0},
                                       {{QStringLiteral("Line, Heatsink and Battery"),
                                         {LineVoltageStatus, LineVoltage, HeatsinkStatus, HeatsinkTemp,
                                          FanMode, BatteryStatus, BatterySupply}},
                                        {QStringLiteral("Speed Feedback"), {DcTfb, AcTfb, EfbCounter}}});
        Tables({supplies.right() + distance, 0},
               {{QStringLiteral("Supplies"),
                 {Plus12Status, Plus12Supply, Plus15Status, Plus15Supply, Plus24Status, Plus24Supply}},
                {QStringLiteral("Drive"), {DriveModel, SystemStatus, WatchdogStatus, Reserved}}});
    }
};

} // namespace

BlockForm *MakeFormDiagnostics(Desk &desk, int);

BlockForm *MakeFormDiagnostics(Desk &desk, int)
{
    return Loaded(new FormDiagnostics(desk));
}

} // namespace quorvik
