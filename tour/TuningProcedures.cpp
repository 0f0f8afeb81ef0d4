// The procedures of the help that tune the loops by steps, tried as they are written.

#include "tour/Journey.h"
#include "tour/Walk.h"
#include "tour/WindowTitles.h"

#include "model/ParameterNumbers.h"
#include "trend/forms/FormTrend.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QMessageBox>
#include <algorithm>

namespace quorvik
{

namespace
{

const QString Trend = QStringLiteral("Trend");

FormTrend *TrendWindow(Tour &tour)
{
    const QWidget *frame = tour.User().WindowTitled(Trend);
    return frame ? frame->findChild<FormTrend *>() : nullptr;
}

const StepTest &StepsOf(Tour &tour)
{
    return tour.TheProgram().Main().AllEngines().steps;
}

QDateTime LastTryOf(Tour &tour)
{
    const auto &tries = StepsOf(tour).Tries();
    return tries.empty() ? QDateTime() : tries.front().time;
}

void AddTuningPage(Tour &tour, Walk &walk, int loop)
{
    tour.Do(QStringLiteral("Tools, Trend"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuToolsTrend")); });
    walk.Click(Trend, QStringLiteral("CommandTuning"));
    tour.Add(
        QStringLiteral("The loop is chosen"),
        [&tour] {
            const auto *list = TrendWindow(tour)->findChild<QComboBox *>(QStringLiteral("ComboLoop"));
            return list && list->isVisible();
        },
        [&tour, loop] {
            TrendWindow(tour)->findChild<QComboBox *>(QStringLiteral("ComboLoop"))->setCurrentIndex(loop);
            return QString();
        });
}

/** One step on the tuning page, with its question. */
void AddStep(Tour &tour, Walk &walk, const QString &reference, double percent, double seconds)
{
    tour.Add(
        QStringLiteral("The step: %1 by %2 %").arg(reference).arg(percent),
        [&tour, reference] {
            const auto *list =
                TrendWindow(tour)->findChild<QComboBox *>(QStringLiteral("ComboStepReference"));
            return list->isEnabled() && list->findText(reference, Qt::MatchContains) >= 0;
        },
        [&tour, reference, percent, seconds] {
            const FormTrend *window = TrendWindow(tour);
            auto *list = window->findChild<QComboBox *>(QStringLiteral("ComboStepReference"));
            list->setCurrentIndex(list->findText(reference, Qt::MatchContains));
            window->findChild<QDoubleSpinBox *>(QStringLiteral("SpinStepSize"))->setValue(percent);
            window->findChild<QDoubleSpinBox *>(QStringLiteral("SpinStepHold"))->setValue(seconds);
            return QString();
        });
    const auto before = std::make_shared<QDateTime>();
    tour.Do(QStringLiteral("The answers so far"), [&tour, before] {
        *before = LastTryOf(tour);
        return QString();
    });
    walk.Click(Trend, QStringLiteral("CommandStep"));
    tour.Add(
        QStringLiteral("The question: Make the Step"),
        [] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr; },
        [&tour] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            const auto buttons = box->buttons();
            const auto make = std::ranges::find_if(buttons, [](const QAbstractButton *button) {
                return button->text().contains(QLatin1String("Make the Step"));
            });
            return make == buttons.end() ? QStringLiteral("no button makes the step")
                                         : tour.User().Click(*make);
        });
    tour.Add(
        QStringLiteral("The answer"),
        [&tour, before] { return !StepsOf(tour).IsUnderWay() && LastTryOf(tour) != *before; },
        [&tour] {
            const StepResult &result = StepsOf(tour).Tries().front().result;
            tour.Say(QStringLiteral("   rise %1 ms, over %2 %, steady error %3; %4")
                         .arg(result.figures.riseMs, 0, 'f', 0)
                         .arg(result.figures.overshootPercent, 0, 'f', 1)
                         .arg(result.figures.steadyError, 0, 'f', 2)
                         .arg(SentenceOf(result.failure)));
            return SentenceOf(result.failure);
        });
}

/** The last answer, compared with the one before it. */
void AddVerdict(Tour &tour, const QString &what,
                bool (*isSo)(const StepFigures &last, const StepFigures &before))
{
    tour.Do(what, [&tour, what, isSo] {
        const auto &tries = StepsOf(tour).Tries();
        return isSo(tries[0].result.figures, tries[1].result.figures) ? QString()
                                                                      : QStringLiteral("not so: ") + what;
    });
}

void AddCurrentLoop(Tour &tour, Walk &walk)
{
    const QString reference = QStringLiteral("(97)");
    walk.Open(QStringLiteral("mnuBlockFloop"), Title::FieldLoop);
    walk.Enter(Title::FieldLoop, Param::FieldEnable, QStringLiteral("False"), 0);
    walk.See(Title::FieldLoop, Param::FieldAmps, {0, 0.05});
    walk.Close(Title::FieldLoop);
    walk.Open(QStringLiteral("mnuBlockCloop"), Title::CurrentLoop);
    walk.Enter(Title::CurrentLoop, Param::DriveModeLSB, QStringLiteral("1"), 1);
    walk.Enter(Title::CurrentLoop, Param::IProportionalGain, QStringLiteral("2"), 200);
    walk.Start();
    AddTuningPage(tour, walk, 1);
    AddStep(tour, walk, reference, 20, 0.6);
    walk.Enter(Title::CurrentLoop, Param::IProportionalGain, QStringLiteral("6"), 600);
    AddStep(tour, walk, reference, 20, 0.6);
    AddVerdict(tour, QStringLiteral("More gain makes the rise shorter"),
               [](const StepFigures &last, const StepFigures &before) {
                   return last.riseMs < before.riseMs * 0.7 && last.overshootPercent < 10;
               });
    walk.Enter(Title::CurrentLoop, Param::IIntegralTime, QStringLiteral("0.01"), 10);
    AddStep(tour, walk, reference, 20, 0.6);
    AddVerdict(tour, QStringLiteral("Too short an integral time makes it overshoot"),
               [](const StepFigures &last, const StepFigures &before) {
                   return last.overshootPercent > before.overshootPercent + 10;
               });
    walk.Picture(QStringLiteral("74-current-loop"));
    walk.Stop();
    walk.Enter(Title::CurrentLoop, Param::IProportionalGain, QStringLiteral("20"), 2000);
    walk.Enter(Title::CurrentLoop, Param::IIntegralTime, QStringLiteral("0.05"), 50);
    walk.Enter(Title::CurrentLoop, Param::DriveModeLSB, QStringLiteral("0"), 0);
    walk.Close(Title::CurrentLoop);
    walk.Open(QStringLiteral("mnuBlockFloop"), Title::FieldLoop);
    walk.Enter(Title::FieldLoop, Param::FieldEnable, QStringLiteral("True"), 1);
    walk.See(Title::FieldLoop, Param::FieldAmps, {1.9, 2.1});
    walk.Close(Title::FieldLoop);
    walk.Click(Trend, QStringLiteral("CommandTuning"));
    walk.Close(Trend);
}

void AddSpeedLoop(Tour &tour, Walk &walk)
{
    const QString reference = QStringLiteral("(234)");
    walk.Open(QStringLiteral("mnuBlockSetpointS"), Title::Setpoints);
    walk.Enter(Title::Setpoints, Param::Reference1, QStringLiteral("30"), 3000);
    walk.AtDrive(QStringLiteral("The switch that takes Reference 1"),
                 {QStringLiteral("terminal digital 6 1")});
    walk.Close(Title::Setpoints);
    walk.Open(QStringLiteral("mnuBlockVloop"), Title::VelocityLoop);
    walk.Enter(Title::VelocityLoop, Param::PropGainA, QStringLiteral("3"), 300);
    walk.Enter(Title::VelocityLoop, Param::IntegralTimeA, QStringLiteral("2"), 2000);
    walk.Start();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {28, 32});
    AddTuningPage(tour, walk, 0);
    AddStep(tour, walk, reference, 5, 0.8);
    walk.Enter(Title::VelocityLoop, Param::PropGainA, QStringLiteral("10"), 1000);
    AddStep(tour, walk, reference, 5, 0.8);
    AddVerdict(
        tour, QStringLiteral("More gain makes the rise shorter"),
        [](const StepFigures &last, const StepFigures &before) { return last.riseMs < before.riseMs * 0.7; });
    walk.Enter(Title::VelocityLoop, Param::IntegralTimeA, QStringLiteral("0.1"), 100);
    AddStep(tour, walk, reference, 5, 0.8);
    AddVerdict(tour, QStringLiteral("Too short an integral time makes it overshoot"),
               [](const StepFigures &last, const StepFigures &before) {
                   return last.overshootPercent > before.overshootPercent + 10;
               });
    walk.Picture(QStringLiteral("75-speed-loop"));
    walk.Enter(Title::VelocityLoop, Param::OvershootGainA, QStringLiteral("80"), 8000);
    AddStep(tour, walk, reference, 5, 0.8);
    AddVerdict(tour, QStringLiteral("The overshoot gain takes some of it away"),
               [](const StepFigures &last, const StepFigures &before) {
                   return last.overshootPercent < before.overshootPercent - 6;
               });
    walk.Enter(Title::VelocityLoop, Param::OvershootGainA, QStringLiteral("0"), 0);
    walk.Enter(Title::VelocityLoop, Param::IntegralTimeA, QStringLiteral("0.5"), 500);
    walk.Stop();
    walk.Close(Title::VelocityLoop);
    walk.Click(Trend, QStringLiteral("CommandTuning"));
    walk.Close(Trend);
    walk.AtDrive(QStringLiteral("The machine goes on by itself"),
                 {QStringLiteral("terminal digital 6 0"), QStringLiteral("demo on")});
}

} // namespace

void AddTuningProcedures(Tour &tour, Walk &walk)
{
    AddCurrentLoop(tour, walk);
    AddSpeedLoop(tour, walk);
}

} // namespace quorvik
