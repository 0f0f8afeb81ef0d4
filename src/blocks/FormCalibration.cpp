#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {NameplateDriveI, NameplateMotorI, FullEncoderRPM,       EncoderLines,
                             InvertFeedback,  TachometerType,  NameplateMotorVoltage};

class CalibrationSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &) override
    {
        Tables({0, 0},
               {{QStringLiteral("Nameplates"), {NameplateDriveI, NameplateMotorI, NameplateMotorVoltage}},
                {QStringLiteral("Speed Feedback"),
                 {FullEncoderRPM, EncoderLines, InvertFeedback, TachometerType}}});
    }
};

} // namespace

constexpr BlockDescriptor BlockCalibration = {.form = "FormCalibration",
                                              .window = "Calibration",
                                              .helpTopic = "Calibration.htm",
                                              .rows = Rows,
                                              .sheet = MakeSheet<CalibrationSheet>};

} // namespace quorvik
