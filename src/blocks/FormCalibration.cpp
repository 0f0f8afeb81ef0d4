#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    DriveCurrent,
    MotorCurrent,
    EncoderRpm,
    EncoderLines,
    InvertFeedback,
    TachometerType,
    MotorVoltage,
};

constexpr BlockRow Rows[] = {
    {"Nameplate Drive I", 122},       {"Nameplate Motor I", 123}, {"100% Encoder RPM", 125},
    {"Encoder Lines", 124},           {"Invert Feedback", 126},   {"Tachometer Type", 127},
    {"Nameplate Motor Voltage", 128},
};

class FormCalibration final : public BlockForm
{
public:
    explicit FormCalibration(Desk &desk)
        : BlockForm(desk, {.name = "FormCalibration",
                           .caption = QStringLiteral("Calibration"),
                           .helpTopic = "Calibration.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &) override
    {
        Tables({0, 0}, {{QStringLiteral("Nameplates"), {DriveCurrent, MotorCurrent, MotorVoltage}},
                        {QStringLiteral("Speed Feedback"),
                         {EncoderRpm, EncoderLines, InvertFeedback, TachometerType}}});
    }
};

} // namespace

BlockForm *MakeFormCalibration(Desk &desk, int);

BlockForm *MakeFormCalibration(Desk &desk, int)
{
    return Loaded(new FormCalibration(desk));
}

} // namespace quorvik
