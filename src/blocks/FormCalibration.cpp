#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {NameplateDriveI, NameplateMotorI, FullEncoderRPM,       EncoderLines,
                             InvertFeedback,  TachometerType,  NameplateMotorVoltage};

class FormCalibration final : public BlockForm
{
public:
    using BlockForm::BlockForm;

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
                                              .make = MakeBlock<FormCalibration, BlockCalibration>};

} // namespace quorvik
