// Windows in the states that the procedures of the help lead to.

#include "Album.h"
#include "SampleSteps.h"
#include "SampleTrend.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "desktop/Desk.h"
#include "model/ParameterTable.h"
#include "trend/forms/FormTrend.h"
#include "trend/forms/TryTable.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Values for a picture; what stood there before comes back. */
class Pretended
{
public:
    Pretended(ParameterTable &table, const std::vector<std::pair<int, std::int32_t>> &values)
        : table_(table)
    {
        for (const auto &[p, rawValue] : values) {
            before_.emplace_back(p, table.Value(p));
            table.SetValue(p, rawValue, ChangeCause::Emulated);
        }
    }
    ~Pretended()
    {
        for (const auto &[p, rawValue] : before_)
            table_.SetValue(p, rawValue, ChangeCause::Emulated);
    }
    Pretended(const Pretended &) = delete;
    Pretended &operator=(const Pretended &) = delete;

private:
    ParameterTable &table_;
    std::vector<std::pair<int, std::int32_t>> before_;
};

} // namespace

void Album::TakeBlockWith(const char *formName, const std::vector<std::pair<int, std::int32_t>> &values,
                          const QString &name)
{
    const Pretended pretended(desk_.table, values);
    const auto entry = std::ranges::find(BlockCatalogue(), QLatin1String(formName),
                                         [](const BlockMenuEntry &each) { return QLatin1String(each.form); });
    BlockForm *form = MakeBlockForm(desk_, *entry, 0);
    Take(*form, name, QString());
    form->close();
    QApplication::processEvents();
}

void Album::TakeSteps(const SampleSteps &steps, const QString &name)
{
    const bool isCurrent = steps.Loop() == TunedLoop::Current;
    std::vector<std::pair<int, std::int32_t>> values = steps.Tries().front().gains;
    // The reference must be one that nothing overwrites.
    values.emplace_back(isCurrent ? Param::DriveModeLSB : Param::RefSelectLSB, 1);
    const Pretended pretended(desk_.table, values);
    SampleTrend machine(desk_);
    auto *trend = new FormTrend(desk_, machine);
    constexpr QSize roomy(1060, 690);
    trend->resize(roomy);
    trend->OpenRecording(machine.Keep(steps.Data(), RecordingKind::Running, "", ""));
    trend->show();
    trend->findChild<QPushButton *>(QStringLiteral("CommandTuning"))->click();
    trend->findChild<QComboBox *>(QStringLiteral("ComboLoop"))->setCurrentIndex(isCurrent ? 1 : 0);
    QApplication::processEvents();
    auto *references = trend->findChild<QComboBox *>(QStringLiteral("ComboStepReference"));
    references->setCurrentIndex(std::max(references->findText(desk_.table.FullName(steps.Reference())), 0));
    trend->findChild<QDoubleSpinBox *>(QStringLiteral("SpinStepSize"))->setValue(steps.Percent());
    trend->findChild<QDoubleSpinBox *>(QStringLiteral("SpinStepHold"))->setValue(steps.Seconds());
    trend->findChild<TryTable *>()->Show(steps.Tries());
    // No drive hangs on a build.
    trend->findChild<QLabel *>(QStringLiteral("LabelStepState"))
        ->setText(QStringLiteral("%1 is back at 0.00 %.").arg(desk_.table.FullName(steps.Reference())));
    Take(*trend, name, QString());
    trend->close();
    QApplication::processEvents();
}

void Album::TakeProcedures()
{
    TakeBlockWith("FormVelocityLoop",
                  {{Param::VelocityDemand, 1000},
                   {Param::FinalVelDemand, 1000},
                   {Param::VelError, -2},
                   {Param::VelFeedback, 1002},
                   {Param::VelFeedbackFiltered, 1001},
                   {Param::AFB, 1002},
                   {Param::TFB, -968},
                   {Param::EFB, 0},
                   {Param::VelLoopOutput, 640},
                   {Param::ArmatureVolts, 50},
                   {Param::MotorRPM, 175}},
                  QStringLiteral("WrongSign"));
    TakeBlockWith("FormCurrentLoop",
                  {{Param::PositiveILimit, 3000},
                   {Param::NegativeILimit, -3000},
                   {Param::CurrentDemand, 20000},
                   {Param::FinalIDemand, 3000},
                   {Param::FinalIDemandFiltered, 2998},
                   {Param::CurrentFeedback, 3004},
                   {Param::CurrentFeedbackFiltered, 2999},
                   {Param::CurrentError, -4},
                   {Param::ConductionAngle, 311},
                   {Param::ArmatureAmps, 30}},
                  QStringLiteral("AtCurrentLimit"));
    TakeSteps(SampleSteps(desk_.table, TunedLoop::Current, {{200, 50}, {600, 50}, {600, 10}}),
              QStringLiteral("CurrentSteps"));
    TakeSteps(SampleSteps(desk_.table, TunedLoop::Velocity, {{300, 2000}, {1000, 2000}, {1000, 500}}),
              QStringLiteral("SpeedSteps"));
}

} // namespace quorvik
