// The procedures of the help about the first commissioning, tried as they are written.

#include "tour/Journey.h"
#include "tour/Walk.h"
#include "tour/WindowTitles.h"

#include "desktop/Form.h"
#include "model/ParameterNumbers.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace quorvik
{

namespace
{

const QString Calibration = QStringLiteral("Calibration");

const QString NextPage = ControlName("CmdNav", 3);
const QString Finish = ControlName("CmdNav", 4);

/** Counts of analog input 1 for a reference in percent. */
QString ReferenceOf(int percent)
{
    constexpr int fullCounts = 2047;
    return QStringLiteral("terminal analog 1 %1").arg(fullCounts * percent / 100);
}

/** Types into a field of the Mentor's page. */
void AddField(Tour &tour, const QString &field, const QString &text)
{
    const auto found = [field]() -> QLineEdit * {
        const QWidget *mentor = QApplication::activeModalWidget();
        auto *line = mentor ? mentor->findChild<QLineEdit *>(field) : nullptr;
        return line && line->isVisible() && line->isEnabled() ? line : nullptr;
    };
    tour.Add(
        QStringLiteral("%1 is filled in: %2").arg(field, text), [found] { return found() != nullptr; },
        [found, text] {
            found()->setFocus();
            found()->selectAll();
            QTest::keyClicks(found(), text);
            return QString();
        });
}

/** Finish, without saving in the drive; then the Mentor has closed, and the drive holds a value of it. */
void AddFinish(Tour &tour, const QString &picture, int p, std::int32_t rawValue)
{
    tour.Add(
        QStringLiteral("The last page; Finish"),
        [] {
            const QWidget *mentor = QApplication::activeModalWidget();
            const auto *finish = mentor ? mentor->findChild<QWidget *>(Finish) : nullptr;
            return finish && finish->isEnabled();
        },
        [&tour, picture] {
            QWidget *mentor = QApplication::activeModalWidget();
            if (auto *save = mentor->findChild<QCheckBox *>(QStringLiteral("CheckSaveDriveParameters")))
                save->setChecked(false);
            tour.TakePicture(picture);
            return tour.User().Click(Finish);
        });
    tour.Add(
        QStringLiteral("The drive holds what the Mentor has written"),
        [&tour, p, start = QStringLiteral("%1 %2 ").arg(p).arg(rawValue)] {
            return !QApplication::activeModalWidget() &&
                   tour.Drive().Print(p).value_or(QString()).startsWith(start);
        },
        [] { return QString(); });
}

void AddFirstCommissioning(Tour &tour, Walk &walk)
{
    walk.AtDrive(QStringLiteral("The machine is at rest, its reference as from the factory"),
                 {QStringLiteral("demo off"), ReferenceOf(0),
                  QStringLiteral("set %1 10000").arg(Param::AnalogIn1Gain)});
    walk.Stop();
    tour.Do(QStringLiteral("MENTORs, Basic Setup"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuMentorsBasic")); });
    walk.Click(QStringLiteral("Introduction"), NextPage);
    walk.Click(QStringLiteral("Operating mode"), NextPage);
    AddField(tour, ControlName("TextMotorData", 0), QStringLiteral("100"));
    AddField(tour, ControlName("TextMotorData", 1), QStringLiteral("240"));
    AddField(tour, ControlName("TextMotorData", 2), QStringLiteral("1500"));
    AddField(tour, ControlName("TextMotorData", 3), QStringLiteral("2.00"));
    walk.Click(QStringLiteral("Motor data"), NextPage);
    for (const char *page : {"Feedback", "Speeds", "References"})
        walk.Click(QString::fromLatin1(page), NextPage);
    AddField(tour, ControlName("TextRunAccelDecel", 0), QStringLiteral("2.0"));
    AddField(tour, ControlName("TextRunAccelDecel", 1), QStringLiteral("2.0"));
    for (const char *page : {"Ramps", "Start and stop"})
        walk.Click(QString::fromLatin1(page), NextPage);
    AddField(tour, ControlName("TextCurrentLimit", 0), QStringLiteral("30"));
    AddField(tour, ControlName("TextCurrentLimit", 1), QStringLiteral("-30"));
    walk.Click(QStringLiteral("Current limits"), NextPage);
    AddFinish(tour, QStringLiteral("70-first-commissioning-mentor"), Param::NameplateMotorI, 100);

    walk.Open(QStringLiteral("mnuBlockStartStopLogic"), Title::StartStopLogic);
    walk.SeeText(Title::StartStopLogic, Param::Stop, QStringLiteral("True"));
    walk.AtDrive(QStringLiteral("The stop button is let go"), {QStringLiteral("terminal digital 2 1")});
    walk.SeeText(Title::StartStopLogic, Param::Stop, QStringLiteral("False"));
    walk.Close(Title::StartStopLogic);
    walk.Open(QStringLiteral("mnuBlockFloop"), Title::FieldLoop);
    walk.See(Title::FieldLoop, Param::FieldAmps, {1.9, 2.1});
    walk.Close(Title::FieldLoop);
    walk.AtDrive(QStringLiteral("A tenth of the speed is asked for"), {ReferenceOf(10)});
    walk.Start();
    walk.Open(QStringLiteral("mnuBlockVloop"), Title::VelocityLoop);
    walk.See(Title::VelocityLoop, Param::VelFeedback, {9.5, 10.5});
    walk.See(Title::VelocityLoop, Param::MotorRPM, {140, 160});
    walk.Picture(QStringLiteral("70-first-commissioning-turns"));
    walk.Stop();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {-0.5, 0.5});
}

/** Before: the velocity loop is open, the drive at rest. */
void AddMotorData(Walk &walk)
{
    walk.Open(QStringLiteral("mnuBlockCalibration"), Calibration);
    walk.See(Calibration, Param::NameplateMotorI, {100, 100});
    walk.See(Calibration, Param::NameplateMotorVoltage, {240, 240});
    walk.Close(Calibration);
    walk.Open(QStringLiteral("mnuBlockFaultLogic"), Title::FaultLogic);
    walk.Enter(Title::FaultLogic, Param::FieldLossLevel, QStringLiteral("12"), 1200);
    walk.Close(Title::FaultLogic);
    walk.Open(QStringLiteral("mnuBlockCloop"), Title::CurrentLoop);
    walk.AtDrive(QStringLiteral("Half speed, and a load that the limit does not let through"),
                 {ReferenceOf(50), QStringLiteral("load 60")});
    walk.Start();
    walk.See(Title::CurrentLoop, Param::FinalIDemand, {30, 30});
    walk.See(Title::CurrentLoop, Param::CurrentFeedback, {29, 31});
    walk.See(Title::CurrentLoop, Param::ArmatureAmps, {29, 31});
    walk.Picture(QStringLiteral("71-current-limit"));
    walk.Enter(Title::CurrentLoop, Param::PositiveILimit, QStringLiteral("100"), 10000);
    walk.See(Title::VelocityLoop, Param::VelFeedback, {49, 51});
    walk.See(Title::CurrentLoop, Param::FinalIDemandFiltered, {62, 76});
    walk.Picture(QStringLiteral("71-current-limit-raised"));
    walk.AtDrive(QStringLiteral("The load is taken off"), {QStringLiteral("load 10"), ReferenceOf(10)});
    walk.Close(Title::CurrentLoop);
}

/** Before: the velocity loop is open, the drive runs at a tenth of its speed by its armature voltage. */
void AddFeedback(Walk &walk)
{
    walk.AtDrive(QStringLiteral("Two wires of the tachometer are swapped"),
                 {QStringLiteral("feedback tachometer -100")});
    walk.See(Title::VelocityLoop, Param::AFB, {9, 12});
    walk.See(Title::VelocityLoop, Param::TFB, {-12, -8});
    walk.See(Title::VelocityLoop, Param::EFB, {8, 12});
    walk.Picture(QStringLiteral("72-wrong-sign"));
    walk.Stop();
    walk.AtDrive(QStringLiteral("The wires are put right"), {QStringLiteral("feedback tachometer 100")});
    walk.Start();
    walk.See(Title::VelocityLoop, Param::TFB, {8, 12});
    walk.Stop();
    walk.Enter(Title::VelocityLoop, Param::FeedbackSelect, QStringLiteral("TFB"), 1);
    walk.Start();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {9.5, 10.5});
    walk.See(Title::VelocityLoop, Param::AFB, {9, 12});
    walk.Picture(QStringLiteral("72-tachometer"));
    walk.Stop();
    walk.Close(Title::VelocityLoop);
}

void AddAnalogInput(Tour &tour, Walk &walk)
{
    const auto turn = [&walk](int counts) {
        walk.AtDrive(QStringLiteral("The potentiometer is turned to %1 counts").arg(counts),
                     {QStringLiteral("terminal analog 1 %1").arg(counts)});
        walk.See(Title::AnalogInput1, Param::AnalogIn1Status, {double(counts - 3), double(counts + 3)});
    };
    walk.Open(QStringLiteral("mnuBlockAnalogInput(1)"), Title::AnalogInput1);
    turn(40);
    walk.Click(Title::AnalogInput1, QStringLiteral("CommandIOMentor"));
    for (const char *page : {"Introduction", "Branch", "Input", "Destination"})
        walk.Click(QString::fromLatin1(page), NextPage);
    walk.Click(QStringLiteral("Polarity"), ControlName("OptionPolarity", 0));
    walk.Click(QStringLiteral("Type and polarity"), NextPage);
    walk.Click(QStringLiteral("Calibration"), ControlName("CommandRecord", 0));
    walk.AtDrive(QStringLiteral("The potentiometer at its upper end"),
                 {QStringLiteral("terminal analog 1 1960")});
    tour.Add(
        QStringLiteral("The status follows; 100% Auto"),
        [] {
            const QWidget *mentor = QApplication::activeModalWidget();
            const auto *status =
                mentor ? mentor->findChild<QLabel *>(QStringLiteral("LabelStatus")) : nullptr;
            return status && std::abs(status->text().toInt() - 1960) < 4;
        },
        [&tour] {
            QString failure = tour.User().Click(ControlName("CommandRecord", 1));
            tour.TakePicture(QStringLiteral("73-analog-input-mentor"));
            return failure;
        });
    walk.Click(QStringLiteral("Calibration"), NextPage);
    AddField(tour, ControlName("TextBiasGain", 0), QStringLiteral("0"));
    AddField(tour, ControlName("TextBiasGain", 1), QStringLiteral("80"));
    walk.Click(QStringLiteral("Bias and gain"), NextPage);
    AddFinish(tour, QStringLiteral("73-analog-input-finish"), Param::AnalogIn1Gain, 8000);
    walk.Open(QStringLiteral("mnuBlockSetpointS"), Title::Setpoints);
    walk.See(Title::Setpoints, Param::Reference0, {79.5, 80});
    turn(1000);
    walk.See(Title::Setpoints, Param::Reference0, {39.5, 40.5});
    turn(20);
    walk.See(Title::Setpoints, Param::Reference0, {0, 0.3});
    walk.Picture(QStringLiteral("73-analog-input"));
    walk.Close(Title::Setpoints);
    walk.Close(Title::AnalogInput1);
}

} // namespace

void AddProceduresOne(Tour &tour)
{
    const auto since = std::make_shared<qint64>(0);
    tour.Do(QStringLiteral("The procedures of the help: first commissioning"), [&tour, since] {
        *since = tour.SinceStart();
        return QString();
    });
    Walk walk(tour);
    AddFirstCommissioning(tour, walk);
    AddMotorData(walk);
    AddFeedback(walk);
    AddAnalogInput(tour, walk);
    AddTuningProcedures(tour, walk);
    tour.Do(QStringLiteral("The first six procedures are done"), [&tour, since] {
        tour.Note(QStringLiteral("six procedures of the help walked in: %1 s")
                      .arg(double(tour.SinceStart() - *since) / 1000));
        return QString();
    });
}

} // namespace quorvik
