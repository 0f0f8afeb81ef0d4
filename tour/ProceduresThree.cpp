// The procedures of the help about a drive that is swapped, and a fault that is found, tried as they are
// written.

#include "tour/Journey.h"
#include "tour/Walk.h"
#include "tour/WindowTitles.h"

#include "desktop/Form.h"
#include "map/FormMap.h"
#include "model/ParameterNumbers.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <memory>

namespace quorvik
{

namespace
{

const QString Compare = QStringLiteral("Compare");
const QString FaultLog = QStringLiteral("Fault Log");
const QString Report = QStringLiteral("Write Report");
const QString WhyNot = QStringLiteral("Why Does It Not Run?");

QString Said(Tour &tour, const QString &window, const QString &label)
{
    const QWidget *shown = tour.User().WindowTitled(window);
    const auto *text = shown ? shown->findChild<QLabel *>(label) : nullptr;
    return text ? text->text() : QString();
}

QMessageBox *Question()
{
    return qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
}

QString ClickAnswer(Tour &tour, const QString &caption)
{
    for (QAbstractButton *button : Question()->buttons())
        if (button->text().remove(u'&') == caption)
            return tour.User().Click(button);
    return QStringLiteral("the question offers no ") + caption;
}

/** Waits for a question, and answers it. */
void AddAnswer(Tour &tour, const QString &caption)
{
    tour.Add(
        QStringLiteral("The answer is ") + caption, [] { return Question() != nullptr; },
        [&tour, caption] { return ClickAnswer(tour, caption); });
}

void AddMenu(Tour &tour, const QString &what, const char *entry)
{
    tour.Do(what, [&tour, entry] { return tour.User().ChooseMenu(QString::fromLatin1(entry)); });
}

/** Waits until a panel of the status bar says a text. */
void AddPanel(Tour &tour, const char *panel, const QString &text)
{
    tour.Add(
        QStringLiteral("%1 says %2").arg(QLatin1String(panel), text),
        [&tour, panel, text] { return tour.User().TextOf(QString::fromLatin1(panel)) == text; },
        [] { return QString(); });
}

/** Types the file's name, and accepts it. */
void AddFileName(Tour &tour, const QString &path)
{
    tour.Add(
        QStringLiteral("The file's name is typed"),
        [] {
            const QWidget *modal = QApplication::activeModalWidget();
            return modal && modal->inherits("QFileDialog") && Hands::CanType();
        },
        [&tour, path] { return tour.User().TypeFileName(path); });
    tour.Add(
        QStringLiteral("It is accepted"), [] { return Hands::AcceptButton() != nullptr; },
        [&tour] { return tour.User().Click(Hands::AcceptButton()); });
}

/** Waits until the comparison counts its rows so. */
void AddCounts(Tour &tour, const QString &what, const std::function<bool(int rows)> &isSo,
               const QString &picture)
{
    tour.Add(
        what,
        [&tour, isSo] {
            const QString counts = Said(tour, Compare, QStringLiteral("LabelCounts"));
            return !QApplication::activeModalWidget() && !counts.isEmpty() &&
                   isSo(counts.section(u' ', 0, 0).toInt());
        },
        [&tour, picture] {
            tour.Say(QStringLiteral("   ") + Said(tour, Compare, QStringLiteral("LabelCounts")));
            tour.TakePicture(picture);
            return QString();
        });
}

/** Whether each row that the comparison shows is one that an input or a link of the drive sets. */
bool AreSetByInputs(Tour &tour)
{
    const auto *table =
        tour.User().WindowTitled(Compare)->findChild<QAbstractItemView *>(QStringLiteral("TableDifferences"));
    const QAbstractItemModel *rows = table->model();
    for (int row = 0; row < rows->rowCount(); ++row)
        if (!rows->index(row, rows->columnCount() - 1)
                 .data()
                 .toString()
                 .startsWith(QLatin1String("set by the input of ")))
            return false;
    return true;
}

void AddSwap(Tour &tour, Walk &walk)
{
    const QString file = QDir(tour.PictureFolder()).absoluteFilePath(QStringLiteral("swap.Svx"));
    tour.Do(QStringLiteral("File, Save As"), [&tour, file] {
        QFile::remove(file);
        return tour.User().ChooseMenu(QStringLiteral("mnuFileSave(1)"));
    });
    AddFileName(tour, file);
    tour.Add(
        QStringLiteral("Its name stands in the title"),
        [&tour] {
            return !QApplication::activeModalWidget() &&
                   tour.TheProgram().Main().windowTitle().contains(QLatin1String("swap.Svx"));
        },
        [&tour] { return tour.User().Click(QStringLiteral("ComStatus")); });
    AddAnswer(tour, QStringLiteral("No"));
    AddPanel(tour, "ComStatus", QStringLiteral("OffLine"));
    walk.AtDrive(QStringLiteral("Another drive, with the settings of the factory"),
                 {QStringLiteral("power-cycle")});
    AddMenu(tour, QStringLiteral("Tools, Online"), "mnuToolsOnline");
    tour.Add(
        QStringLiteral("Which side wins? Compare"), [] { return Question() != nullptr; },
        [&tour] {
            tour.TakePicture(QStringLiteral("84-swap-question"));
            return ClickAnswer(tour, QStringLiteral("Compare..."));
        });
    AddCounts(
        tour, QStringLiteral("The new drive differs"), [](int rows) { return rows > 20; },
        QStringLiteral("84-swap-differs"));
    walk.Click(Compare, QStringLiteral("CommandTakeAll"));
    tour.Do(QStringLiteral("From the open set to the drive"), [&tour] {
        auto *list =
            tour.User().WindowTitled(Compare)->findChild<QComboBox *>(QStringLiteral("ComboDirection"));
        list->setCurrentIndex(list->findText(QStringLiteral("to Drive"), Qt::MatchContains));
        return list->currentIndex() < 0 ? QStringLiteral("no direction leads into the drive") : QString();
    });
    walk.Click(Compare, QStringLiteral("CommandCopy"));
    tour.Add(
        QStringLiteral("All of it has arrived"),
        [&tour] { return !QApplication::activeModalWidget() && tour.User().WindowTitled(Report); },
        [&tour] {
            const QString summary = Said(tour, Report, QStringLiteral("LabelSummary"));
            tour.Note(QStringLiteral("into the new drive: ") + summary);
            tour.TakePicture(QStringLiteral("84-swap-report"));
            tour.User().WindowTitled(Report)->close();
            return summary.contains(QLatin1String(", 0 refused, ")) ? QString() : summary;
        });
    walk.Click(Compare, QStringLiteral("CommandReadDrive"));
    AddCounts(
        tour, QStringLiteral("Read anew, only what inputs and links set differs"),
        [&tour](int rows) { return rows <= 6 && AreSetByInputs(tour); }, QStringLiteral("84-swap-same"));
    walk.Close(Compare);
}

QString Headline(Tour &tour)
{
    return Said(tour, WhyNot, QStringLiteral("LabelHeadline"));
}

void AddHeadline(Tour &tour, const QString &begin, const QString &picture)
{
    tour.Add(
        QStringLiteral("It says: ") + begin, [&tour, begin] { return Headline(tour).startsWith(begin); },
        [&tour, picture] {
            tour.Say(QStringLiteral("   ") + Headline(tour));
            tour.TakePicture(picture);
            return QString();
        });
}

/** Before: the winder is at rest. */
void AddFault(Tour &tour, Walk &walk)
{
    walk.Open(QStringLiteral("mnuBlockVloop"), Title::VelocityLoop);
    walk.AtDrive(QStringLiteral("Dancer in the middle, line at 80 %, roll at a quarter"),
                 {Analog(3, 50), Analog(1, 80), Analog(2, 25)});
    walk.Start();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {39, 41});
    walk.AtDrive(QStringLiteral("A phase is lost"), {QStringLiteral("trip 64")});
    walk.SeeState(QStringLiteral("EStop"));
    tour.Add(
        QStringLiteral("The panel names the fault; a click on it"),
        [&tour] { return tour.User().TextOf(QStringLiteral("DriveFault")) == QLatin1String(": Phase Loss"); },
        [&tour] {
            return tour.User().Click(
                tour.TheProgram().Main().findChild<QToolButton *>(QStringLiteral("DriveFault")));
        });
    tour.Add(
        QStringLiteral("The Fault Log is open"), [&tour] { return tour.User().WindowTitled(FaultLog); },
        [&tour] {
            tour.TakePicture(QStringLiteral("85-fault-log"));
            return QString();
        });
    walk.AtDrive(QStringLiteral("The fuse is replaced"), {QStringLiteral("trip 0"), Contact(1, false)});
    walk.Click(FaultLog, QStringLiteral("CommandClearFault"));
    walk.SeeState(QStringLiteral("Stop"));
    walk.Close(FaultLog);

    walk.AtDrive(QStringLiteral("A wire of the stop button is off"), {Contact(2, false)});
    AddMenu(tour, QStringLiteral("Tools, Why Does It Not Run?"), "mnuToolsWhyNot");
    walk.AtDrive(QStringLiteral("Start is pushed"), {Contact(1, true)});
    AddHeadline(tour, QStringLiteral("(240) Stop is True"), QStringLiteral("85-why-not"));
    walk.AtDrive(QStringLiteral("The wire is back, and start is let go"),
                 {Contact(2, true), Contact(1, false)});
    // A start counts when it comes, so the drive must have seen it go.
    tour.Add(
        QStringLiteral("The drive has seen it go"),
        [&tour] {
            return tour.Drive().Print(Param::Run).value_or(QString()).startsWith(QLatin1String("239 0 "));
        },
        [] { return QString(); });
    walk.Start();
    AddHeadline(tour, QStringLiteral("The drive runs: "), QStringLiteral("85-runs"));
    walk.Close(WhyNot);

    walk.Enter(Title::VelocityLoop, Param::ForwardMaxSpeed, QStringLiteral("30"), 3000);
    walk.See(Title::VelocityLoop, Param::FinalVelDemand, {30, 30});
    AddMenu(tour, QStringLiteral("Tools, Map of the Drive"), "mnuToolsMap");
    tour.Add(
        QStringLiteral("A card of the map tells of the limit"),
        [&tour] {
            const auto *map = tour.TheProgram().Main().findChild<FormMap *>();
            return map &&
                   map->Model().MarkWords(MapModel::FindCard(Title::VelocityLoop)).join(u' ').contains(u"30");
        },
        [&tour] {
            const auto *map = tour.TheProgram().Main().findChild<FormMap *>();
            tour.Say(QStringLiteral("   ") +
                     map->Model().MarkWords(MapModel::FindCard(Title::VelocityLoop)).join(u' '));
            tour.TakePicture(QStringLiteral("85-map-limit"));
            tour.User().WindowTitled(map->windowTitle())->close();
            return QString();
        });
    walk.Enter(Title::VelocityLoop, Param::ForwardMaxSpeed, QStringLiteral("100"), 10000);
    walk.See(Title::VelocityLoop, Param::VelFeedback, {39, 41});
    walk.Stop();
    walk.Close(Title::VelocityLoop);
}

} // namespace

void AddProceduresThree(Tour &tour)
{
    Walk walk(tour);
    const auto since = std::make_shared<qint64>(0);
    tour.Do(QStringLiteral("The procedures of the help: a drive is swapped, and a fault is found"),
            [&tour, since] {
                *since = tour.SinceStart();
                return QString();
            });
    AddSwap(tour, walk);
    AddFault(tour, walk);
    walk.AtDrive(QStringLiteral("The machine goes on by itself"), {QStringLiteral("demo on")});
    tour.Do(QStringLiteral("The last two procedures are done"), [&tour, since] {
        tour.Note(QStringLiteral("two more procedures walked in: %1 s")
                      .arg(double(tour.SinceStart() - *since) / 1000));
        return QString();
    });
}

} // namespace quorvik
