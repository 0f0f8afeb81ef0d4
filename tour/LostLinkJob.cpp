#include "tour/Journey.h"

#include "model/ParameterTable.h"
#include "shell/MDIFormMain.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QToolButton>

namespace quorvik
{

namespace
{

constexpr int FewestPackets = 30;

const QString VelocityLoop = QStringLiteral("Velocity Loop");

/** The sentence in the line under the menus; empty while there is none. */
QString News(Tour &tour)
{
    const auto *message = tour.TheProgram().Main().findChild<QLabel *>(QStringLiteral("Message"));
    return message && message->isVisible() ? message->text() : QString();
}

QString ClickNews(Tour &tour, const QString &caption)
{
    for (QPushButton *button : tour.TheProgram().Main().findChildren<QPushButton *>())
        if (button->objectName().startsWith(QLatin1String("CommandNotice")) && button->isVisible() &&
            button->text() == caption)
            return tour.User().Click(button);
    return QStringLiteral("the line offers no ") + caption;
}

/** The whole drive was read since the link is up. */
bool IsRead(Tour &tour)
{
    const Engines &engines = tour.TheProgram().Main().AllEngines();
    const bool isOver = !QApplication::activeModalWidget() && !engines.link.IsScanning();
    return isOver && engines.link.PortOpen() && engines.states.DriveValue(engines.table.LastParam);
}

/** Of the drive that the program was on line with. */
int Model(Tour &tour)
{
    return tour.TheProgram().Main().AllEngines().table.Value(Param::DriveModel);
}

void CloseBoxes()
{
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *box = qobject_cast<QMessageBox *>(window); box && box->isVisible() && !box->isModal())
            box->button(QMessageBox::Ok)->click();
}

/** The drive trips: what the screen says of it, and where that leads. */
void AddTrip(Tour &tour)
{
    tour.Do(QStringLiteral("The drive loses a phase"), [&tour] {
        tour.Drive().Send(QStringLiteral("trip 64"));
        return tour.User().ChooseMenu(QStringLiteral("mnuBlockVloop"));
    });
    tour.Add(
        QStringLiteral("Panel and line name the fault; a click leads to the Fault Log"),
        [&tour] {
            return tour.User().TextOf(QStringLiteral("DriveFault")) == QLatin1String(": Phase Loss") &&
                   News(tour).startsWith(QLatin1String("Phase Loss at "));
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("40-trip"));
            return tour.User().Click(
                tour.TheProgram().Main().findChild<QToolButton *>(QStringLiteral("DriveFault")));
        });
    tour.Add(
        QStringLiteral("The Fault Log; what stood at the trip"),
        [&tour] { return tour.User().WindowTitled(QStringLiteral("Fault Log")) != nullptr; },
        [&tour] {
            tour.TakePicture(QStringLiteral("41-fault-log"));
            return ClickNews(tour, QStringLiteral("At the trip"));
        });
    tour.Add(
        QStringLiteral("The fault is cleared"),
        [&tour] { return tour.User().WindowTitled(QStringLiteral("At the Trip")) != nullptr; },
        [&tour] {
            tour.TakePicture(QStringLiteral("42-at-the-trip"));
            tour.User().WindowTitled(QStringLiteral("At the Trip"))->close();
            tour.Drive().Send(QStringLiteral("trip 0"));
            return tour.User().Click(tour.User()
                                         .WindowTitled(QStringLiteral("Fault Log"))
                                         ->findChild<QWidget *>(QStringLiteral("CommandClearFault")));
        });
    tour.Add(
        QStringLiteral("Nothing is red any more"),
        [&tour] { return !News(tour).startsWith(QLatin1String("Phase Loss")); },
        [&tour] {
            tour.User().WindowTitled(QStringLiteral("Fault Log"))->close();
            return QString();
        });
}

/** Waits for the line to say something of a lost drive. */
void AddLoss(Tour &tour, const QString &what, const QString &says, const std::function<QString()> &act)
{
    tour.Add(
        what, [&tour, says] { return News(tour).contains(says); }, act);
}

/** The answer to the question about unsaved changes. */
void AddNothingToSave(Tour &tour)
{
    const auto box = [] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()); };
    tour.Add(
        QStringLiteral("Unsaved changes are asked about first"), [box] { return box() != nullptr; },
        [&tour, box] {
            tour.TakePicture(QStringLiteral("44-unsaved"));
            return tour.User().Click(box()->button(QMessageBox::No));
        });
}

void AddLosses(Tour &tour)
{
    tour.Do(QStringLiteral("The drive falls silent: nothing is pulled, nobody answers"), [&tour] {
        tour.Drive().Send(QStringLiteral("fault drop"));
        return QString();
    });
    AddLoss(tour, QStringLiteral("The values are marked as lost, and the line says since when"),
            QStringLiteral("Values are old."), [&tour] {
                CloseBoxes();
                tour.TakePicture(QStringLiteral("43-lost"));
                tour.Drive().Send(QStringLiteral("faults off"));
                return QString();
            });
    AddLoss(tour, QStringLiteral("It answers again, and is read"), QStringLiteral("The drive answers again"),
            [&tour] {
                tour.TakePicture(QStringLiteral("44-answers-again"));
                return ClickNews(tour, QStringLiteral("Read from drive"));
            });
    AddNothingToSave(tour);
    tour.Add(
        QStringLiteral("On line; the cable is pulled"), [&tour] { return IsRead(tour); },
        [&tour] {
            const QString link = tour.TheProgram().DriveLinkPath();
            tour.Drive().Send(QStringLiteral("fault drop"));
            return QFile::rename(link, link + QStringLiteral("-pulled"))
                       ? QString()
                       : QStringLiteral("the cable is stuck");
        });
    AddLoss(tour, QStringLiteral("The adapter is missed, comes back, and another drive hangs on it"),
            QStringLiteral("The adapter is not plugged in."), [&tour] {
                CloseBoxes();
                tour.TakePicture(QStringLiteral("45-pulled"));
                const QString link = tour.TheProgram().DriveLinkPath();
                QFile::rename(link + QStringLiteral("-pulled"), link);
                tour.Drive().Send(QStringLiteral("set 411 %1\nfaults off").arg(Model(tour) ^ 1));
                return QString();
            });
    AddLoss(tour, QStringLiteral("It is told; the right one is brought back"),
            QStringLiteral("Another drive than before answers"), [&tour] {
                tour.TakePicture(QStringLiteral("46-another-drive"));
                tour.Drive().Send(QStringLiteral("set 411 %1").arg(Model(tour)));
                return QString();
            });
    AddLoss(tour, QStringLiteral("Which is read"), QStringLiteral("The drive answers again"),
            [&tour] { return ClickNews(tour, QStringLiteral("Read from drive")); });
    tour.Add(
        QStringLiteral("On line as before; the line itself in figures"), [&tour] { return IsRead(tour); },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuToolsLinkDetails")); });
    tour.Add(
        QStringLiteral("Link Details"),
        [&tour] {
            const QWidget *details = tour.User().WindowTitled(QStringLiteral("Link Details"));
            return details && details->findChild<QTableView *>()->model()->rowCount() > FewestPackets;
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("47-link-details"));
            tour.User().WindowTitled(QStringLiteral("Link Details"))->close();
            tour.User().WindowTitled(VelocityLoop)->close();
            return QString();
        });
}

} // namespace

void AddLostLinkJob(Tour &tour)
{
    AddTrip(tour);
    AddLosses(tour);
}

} // namespace quorvik
