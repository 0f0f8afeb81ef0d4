#include "tour/Journey.h"

#include "desktop/Form.h"
#include "model/ParameterNumbers.h"

#include <QApplication>
#include <QLabel>

namespace quorvik
{

namespace
{

constexpr int limitBox = 4;         ///< Forward Max Speed in its window
constexpr int demoCycleMs = 150000; ///< in which the drive of the tour is started at least once
constexpr int followMs = 30000;

QString WhyNotWindow()
{
    return QStringLiteral("Why Does It Not Run?");
}

QString Headline(Tour &tour)
{
    const QWidget *window = tour.User().WindowTitled(WhyNotWindow());
    const auto *label = window ? window->findChild<QLabel *>(QStringLiteral("LabelHeadline")) : nullptr;
    return label ? label->text() : QString();
}

} // namespace

void AddWhyNotJob(Tour &tour)
{
    tour.Do(QStringLiteral("Somebody has closed the speed's limit; Tools, Why Does It Not Run?"), [&tour] {
        tour.Drive().Send(QStringLiteral("set %1 0").arg(Param::ForwardMaxSpeed));
        return tour.User().ChooseMenu(QStringLiteral("mnuToolsWhyNot"));
    });
    tour.Add(
        QStringLiteral("It names the limit as the first cause"),
        [&tour] { return Headline(tour).startsWith(QLatin1String("(190) Forward Max Speed is 0.00 %.")); },
        [&tour] {
            tour.Say(QStringLiteral("   ") + Headline(tour));
            tour.TakePicture(QStringLiteral("39-why-not"));
            return tour.User().Click(tour.User()
                                         .WindowTitled(WhyNotWindow())
                                         ->findChild<QWidget *>(QStringLiteral("CommandFirst")));
        },
        demoCycleMs);
    tour.Add(
        QStringLiteral("Its box pulses; a click on it, to set it right"),
        [&tour] { return tour.User().WindowTitled(QStringLiteral("Velocity Loop")) != nullptr; },
        [&tour] {
            tour.TakePicture(QStringLiteral("39-why-not-box"));
            return tour.User().Click(tour.User()
                                         .WindowTitled(QStringLiteral("Velocity Loop"))
                                         ->findChild<QWidget *>(ControlName("Text1", limitBox)));
        });
    tour.Add(
        QStringLiteral("100 % is typed, OK"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormModifyParameterValue")) && Hands::CanType(); },
        [&tour] {
            const QString failure = Hands::TypeOver(QStringLiteral("100"));
            return failure.isEmpty() ? tour.User().Click(QStringLiteral("CommandOK")) : failure;
        });
    tour.Add(
        QStringLiteral("The drive runs"),
        [&tour] {
            return !QApplication::activeModalWidget() &&
                   Headline(tour).startsWith(QLatin1String("The drive runs: "));
        },
        [&tour] {
            tour.Say(QStringLiteral("   ") + Headline(tour));
            tour.User().WindowTitled(QStringLiteral("Velocity Loop"))->close();
            return tour.User().ChooseMenu(QStringLiteral("mnuToolsWhyNot"));
        },
        followMs + demoCycleMs);
    tour.Do(QStringLiteral("All conditions in sight"), [&tour] {
        tour.TakePicture(QStringLiteral("39-why-not-runs"));
        tour.User().WindowTitled(WhyNotWindow())->close();
        return QString();
    });
}

} // namespace quorvik
