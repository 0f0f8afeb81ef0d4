#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    ArmatureIFBStatus1,
    ArmatureIFBStatus2,
    ArmatureIFBStatus3,
    ArmatureIFBStatus4,
    LineVoltageStatus,
    HeatsinkStatus,
    Plus12VStatus,
    FieldIFBStatus1,
    FieldIFBStatus2,
    FieldIFBStatus3,
    FieldIFBStatus4,
    FieldVFBStatus,
    BatteryStatus,
    EFBCounterStatus,
    Plus15VStatus,
    Plus24VStatus,
    DiagnosticsReserved,
    DCTFBStatus,
    ACTFBStatus,
    AFBStatus,
    LineVoltage,
    HeatsinkTemp,
    Plus12VSupply,
    FanMode,
    DriveModel,
    BatterySupply,
    SystemStatus,
    Plus15VSupply,
    {Plus24VSupply, "+24V Status"},
    WatchdogStatus,
};

class DiagnosticsSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &) override
    {
        // Ten rows to a column, so that the columns end on one line.
        constexpr double distance = 2;
        const QRectF feedback = Tables(
            {0, 0},
            {{QStringLiteral("Armature"),
              {ArmatureIFBStatus1, ArmatureIFBStatus2, ArmatureIFBStatus3, ArmatureIFBStatus4, AFBStatus}},
             {QStringLiteral("Field"),
              {FieldIFBStatus1, FieldIFBStatus2, FieldIFBStatus3, FieldIFBStatus4, FieldVFBStatus}}});
        const QRectF supplies =
            Tables({feedback.right() + distance, 0},
                   {{QStringLiteral("Line, Heatsink and Battery"),
                     {LineVoltageStatus, LineVoltage, HeatsinkStatus, HeatsinkTemp, FanMode, BatteryStatus,
                      BatterySupply}},
                    {QStringLiteral("Speed Feedback"), {DCTFBStatus, ACTFBStatus, EFBCounterStatus}}});
        Tables({supplies.right() + distance, 0},
               {{QStringLiteral("Supplies"),
                 {Plus12VStatus, Plus12VSupply, Plus15VStatus, Plus15VSupply, Plus24VStatus, Plus24VSupply}},
                {QStringLiteral("Drive"), {DriveModel, SystemStatus, WatchdogStatus, DiagnosticsReserved}}});
    }
};

} // namespace

constexpr BlockDescriptor BlockDiagnostics = {.form = "FormDiagnostics",
                                              .window = "Diagnostics",
                                              .helpTopic = "Diagnostics.htm",
                                              .rows = Rows,
                                              .prefix = "Diagnostics ",
                                              .sheet = MakeSheet<DiagnosticsSheet>};

} // namespace quorvik
