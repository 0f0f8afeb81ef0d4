#include "tour/Journey.h"

#include "blocks/diagram/DiagramFrame.h"

#include <QAction>
#include <QApplication>
#include <QMdiSubWindow>
#include <QTest>
#include <QWheelEvent>

namespace quorvik
{

namespace
{

constexpr int wheelSteps = 3;

QString Loop()
{
    return QStringLiteral("Velocity Loop");
}

QString Outside()
{
    return QStringLiteral("Threshold B");
}

DiagramFrame *DrawingOf(Tour &tour, const QString &caption)
{
    const QWidget *window = tour.User().WindowTitled(caption);
    return window ? window->findChild<DiagramFrame *>() : nullptr;
}

bool IsOutside(Tour &tour)
{
    QWidget *window = tour.User().WindowTitled(Outside());
    return window && !qobject_cast<QMdiSubWindow *>(window);
}

/** A turn of the wheel towards the drawing, with Ctrl, over its middle. */
QString TurnWheel(QWidget *viewport)
{
    const QPointF at = viewport->rect().center();
    for (int step = 0; step < wheelSteps; ++step) {
        QWheelEvent event(at, viewport->mapToGlobal(at), {}, {0, QWheelEvent::DefaultDeltasPerStep},
                          Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &event);
    }
    return {};
}

void AddChoice(Tour &tour, const QString &what, const char *entry)
{
    tour.Do(what, [&tour, entry] { return tour.User().ChooseMenu(QString::fromLatin1(entry)); });
}

} // namespace

void AddWindowsJob(Tour &tour)
{
    AddChoice(tour, QStringLiteral("The Velocity Loop"), "mnuBlockVloop");
    tour.Add(
        QStringLiteral("Ctrl and the wheel look at it more closely"),
        [&tour] { return DrawingOf(tour, Loop()) != nullptr; },
        [&tour] { return TurnWheel(DrawingOf(tour, Loop())->viewport()); });
    tour.Add(
        QStringLiteral("It is larger than its window"),
        [&tour] { return DrawingOf(tour, Loop())->Zoom() > 0; },
        [&tour] {
            tour.TakePicture(QStringLiteral("36-zoomed"));
            return QString();
        });
    AddChoice(tour, QStringLiteral("A window for another screen"), "mnuBlockMiscThreshold(1)");
    AddChoice(tour, QStringLiteral("It is taken out of the frame"), "mnuWindowFrame");
    tour.Add(
        QStringLiteral("It is a window of its own"), [&tour] { return IsOutside(tour); },
        [&tour] {
            tour.User().WindowTitled(Outside())->move(500, 300);
            tour.TakePicture(QStringLiteral("37-taken-out"));
            return QString();
        });
    AddChoice(tour, QStringLiteral("Options, Keep Window Layout"), "mnuOptionsKeepLayout");
}

void AddKeptWindows(Tour &tour)
{
    tour.Add(
        QStringLiteral("The windows stand as they were left"),
        [&tour] {
            const DiagramFrame *drawing = DrawingOf(tour, Loop());
            return drawing && drawing->Zoom() > 0 && IsOutside(tour);
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("43-layout-kept"));
            return QString();
        });
    tour.Do(QStringLiteral("The one outside comes in front"), [&tour] {
        tour.User().WindowTitled(Outside())->activateWindow();
        return QString();
    });
    tour.Add(
        QStringLiteral("F11 puts it back into the frame"),
        [&tour] { return tour.User().WindowTitled(Outside())->isActiveWindow(); },
        [&tour] {
            QTest::keyClick(tour.User().WindowTitled(Outside()), Qt::Key_F11);
            return IsOutside(tour) ? QStringLiteral("it stayed outside") : QString();
        });
    AddChoice(tour, QStringLiteral("The next start is to begin empty"), "mnuOptionsKeepLayout");
    AddChoice(tour, QStringLiteral("Window, Close All"), "mnuWindowCloseAll");
}

} // namespace quorvik
