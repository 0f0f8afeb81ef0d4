// A new user's first minute: from the first window to a value that is changed, and kept in the drive.

#include "tour/Journey.h"

#include "desktop/Form.h"
#include "desktop/ValueBox.h"
#include "model/ParameterNumbers.h"

#include <QApplication>

namespace quorvik
{

namespace
{

constexpr qint64 limitMs = 60000;
constexpr int accelRow = 2; ///< Fwd Accel A is the third of the block's parameters
constexpr int rawNewAccel = 75;

QString AccelDecel()
{
    return QStringLiteral("Accel/Decel");
}

/** What the drive holds of a parameter, or nothing where it gave no answer. */
std::optional<int> RawInDrive(Tour &tour, int parameter)
{
    const QStringList fields = tour.Drive().Print(parameter).value_or(QString()).split(u' ');
    bool isNumber = false;
    const int raw = fields.value(1).toInt(&isNumber);
    return isNumber ? std::optional(raw) : std::nullopt;
}

/** The box of a parameter in the block's window. */
ValueBox *BoxOf(Tour &tour, int row)
{
    const QWidget *window = tour.User().WindowTitled(AccelDecel());
    return window ? window->findChild<ValueBox *>(ControlName("Text1", row)) : nullptr;
}

bool HasLeftLine(Tour &tour)
{
    return tour.User().TextOf(QStringLiteral("ComStatus")) == QLatin1String("OffLine");
}

} // namespace

void AddFirstMinute(Tour &tour)
{
    const auto sinceFirstWindow = std::make_shared<QElapsedTimer>();
    tour.Add(
        QStringLiteral("The first window"), [&tour] { return tour.TheProgram().IsRunning(); },
        [sinceFirstWindow] {
            sinceFirstWindow->start();
            return QString();
        });
    AddGoingOnline(tour);
    tour.Do(QStringLiteral("Blocks, Accel/Decel"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAccelDecel")); });
    tour.Add(
        QStringLiteral("A click on Fwd Accel A"), [&tour] { return BoxOf(tour, accelRow) != nullptr; },
        [&tour] { return tour.User().Click(BoxOf(tour, accelRow)); });
    tour.Add(
        QStringLiteral("Another time is typed, OK"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormModifyParameterValue")) && Hands::CanType(); },
        [&tour] {
            const QString failure = Hands::TypeOver(QStringLiteral("7.5"));
            return failure.isEmpty() ? tour.User().Click(QStringLiteral("CommandOK")) : failure;
        });
    tour.Add(
        QStringLiteral("The drive has it; Tools, Save Drive Parameters to EE"),
        [&tour] {
            return !QApplication::activeModalWidget() && RawInDrive(tour, Param::FwdAccelA) == rawNewAccel;
        },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuToolsSaveDrive")); });
    const auto isSaving = std::make_shared<bool>(false);
    tour.Add(
        QStringLiteral("The drive has saved its parameters"),
        [&tour, isSaving] {
            const std::optional<int> raw = RawInDrive(tour, Param::SaveParameters);
            *isSaving = *isSaving || raw == 1;
            return *isSaving && raw == 0;
        },
        [&tour, sinceFirstWindow] {
            const qint64 tookMs = sinceFirstWindow->elapsed();
            tour.Note(QStringLiteral("first value kept: %1 clicks, %2 s")
                          .arg(tour.User().Clicks())
                          .arg(double(tookMs) / 1000.0, 0, 'f', 1));
            tour.TakePicture(QStringLiteral("00-first-minute"));
            return tookMs > limitMs ? QStringLiteral("the first value took more than 60 s") : QString();
        });
    tour.Do(QStringLiteral("The link is ended"),
            [&tour] { return tour.User().Click(QStringLiteral("ComStatus")); });
    tour.Add(
        QStringLiteral("The supply of the drive is off and on"), [&tour] { return HasLeftLine(tour); },
        [&tour] {
            tour.Drive().Send(QStringLiteral("power-cycle"));
            return RawInDrive(tour, Param::FwdAccelA) == rawNewAccel
                       ? QString()
                       : QStringLiteral("the drive has not kept the first value");
        });
    tour.Do(QStringLiteral("Window, Close All"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuWindowCloseAll")); });
    const auto isShown = [&tour](const char *name) {
        const auto *widget = tour.TheProgram().Main().findChild<QWidget *>(QString::fromLatin1(name));
        return widget && widget->isVisible();
    };
    tour.Add(
        QStringLiteral("The start page is back; a lesson"), [isShown] { return isShown("StartPage"); },
        [&tour] { return tour.User().Click(QStringLiteral("CommandLesson(1)")); });
    tour.Add(
        QStringLiteral("The lesson stands beside it"), [isShown] { return isShown("LessonCard"); },
        [&tour] {
            tour.TakePicture(QStringLiteral("00-start-page"));
            return QString();
        });
    AddLeaving(tour);
}

} // namespace quorvik
