#include "tour/Journey.h"

#include "desktop/Form.h"
#include "desktop/ValueBox.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

namespace quorvik
{

namespace
{

constexpr int gainParam = 53; ///< the Gain of analog input 1
constexpr int gainBox = 8;
constexpr int statusBox = 2;
constexpr int valuesWanted = 5; ///< different values of a moving one, before the tour believes it

QString NewGain()
{
    return QStringLiteral("87.5");
}

QString AnalogInput()
{
    return QStringLiteral("Analog Input 1");
}

QString BoxText(Tour &tour, int index)
{
    const QWidget *window = tour.User().WindowTitled(AnalogInput());
    const auto *box = window ? window->findChild<ValueBox *>(ControlName("Text1", index)) : nullptr;
    return box ? box->text() : QString();
}

bool IsOnline(Tour &tour)
{
    return tour.User().TextOf(QStringLiteral("ComStatus")) == QLatin1String("OnLine");
}

bool IsFileDialogOpen()
{
    const QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->inherits("QFileDialog");
}

void AddFileDialog(Tour &tour, const QString &what, const QString &picture)
{
    tour.Add(what, IsFileDialogOpen, [&tour, picture] {
        QString failure = tour.User().TypeFileName(SavedFile(tour));
        if (failure.isEmpty())
            tour.TakePicture(picture);
        return failure;
    });
    // A dialog that opens files takes none before it has seen it in the folder.
    tour.Add(
        QStringLiteral("The name is accepted"), [] { return Hands::AcceptButton() != nullptr; },
        [&tour] { return tour.User().Click(Hands::AcceptButton()); });
}

void AddWatching(Tour &tour)
{
    tour.Do(QStringLiteral("Blocks, Inputs, Analog Inputs, Analog Input 1"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAnalogInput(1)")); });
    const auto seen = std::make_shared<QStringList>();
    tour.Add(
        QStringLiteral("Its status moves"),
        [&tour, seen] {
            const QString text = BoxText(tour, statusBox);
            if (!text.isEmpty() && !seen->contains(text))
                seen->append(text);
            return seen->size() >= valuesWanted;
        },
        [&tour, seen] {
            tour.Say(QStringLiteral("   status: %1").arg(seen->join(QStringLiteral(", "))));
            tour.Note(QStringLiteral("moving values seen: %1").arg(seen->size()));
            tour.TakePicture(QStringLiteral("04-analog-input"));
            return QString();
        });
}

void AddEdit(Tour &tour)
{
    const auto before = std::make_shared<QString>();
    tour.Do(QStringLiteral("A click on its Gain opens the edit dialog"), [&tour, before] {
        *before = BoxText(tour, gainBox);
        tour.Say(QStringLiteral("   the drive prints before: %1")
                     .arg(tour.Drive().Print(gainParam).value_or(QString())));
        QWidget *window = tour.User().WindowTitled(AnalogInput());
        return tour.User().Click(window->findChild<QWidget *>(ControlName("Text1", gainBox)));
    });
    tour.Add(
        QStringLiteral("A new gain is typed, OK"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormModifyParameterValue")) && Hands::CanType(); },
        [&tour] {
            if (QString failure = Hands::TypeOver(NewGain()); !failure.isEmpty())
                return failure;
            tour.TakePicture(QStringLiteral("05-edit-gain"));
            return tour.User().Click(QStringLiteral("CommandOK"));
        });
    tour.Add(
        QStringLiteral("The drive itself holds the new gain"),
        [&tour, before] {
            return !QApplication::activeModalWidget() && BoxText(tour, gainBox) != *before &&
                   tour.Drive().Print(gainParam).value_or(QString()).startsWith(QLatin1String("53 8750 "));
        },
        [&tour, before] {
            tour.Say(QStringLiteral("   the drive prints after: %1")
                         .arg(tour.Drive().Print(gainParam).value_or(QString())));
            tour.Say(
                QStringLiteral("   the window shows: %1, before: %2").arg(BoxText(tour, gainBox), *before));
            tour.TakePicture(QStringLiteral("06-gain-edited"));
            return QString();
        });
}

void AddSaving(Tour &tour)
{
    tour.Do(QStringLiteral("File, Save As"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileSave(1)")); });
    AddFileDialog(tour, QStringLiteral("A name is typed"), QStringLiteral("07-save-as"));
    tour.Add(
        QStringLiteral("The file is written and its name stands in the title"),
        [&tour] {
            return !QApplication::activeModalWidget() && QFile::exists(SavedFile(tour)) &&
                   tour.TheProgram().Main().windowTitle().endsWith(QLatin1String("tour.Svx]"));
        },
        [&tour] {
            tour.Note(QStringLiteral("file written: %1, %2 bytes")
                          .arg(SavedFile(tour))
                          .arg(QFile(SavedFile(tour)).size()));
            return QString();
        });
}

/** Whether the program has ended; asked whether to save, the user has said No. */
bool HasEnded(Tour &tour)
{
    // What the virtual operator changed, or an undo has put back, is not worth keeping.
    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
        return tour.User().Click(box->button(QMessageBox::No)), false;
    return !tour.TheProgram().IsRunning();
}

} // namespace

QString SavedFile(const Tour &tour)
{
    return QDir(tour.PictureFolder()).absoluteFilePath(QStringLiteral("tour.Svx"));
}

void AddGoingOnline(Tour &tour)
{
    tour.Add(
        QStringLiteral("The program asks whether a drive is attached; Online, OK"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormSelectCommMode")) != nullptr; },
        [&tour] {
            tour.Note(QStringLiteral("start to first question: %1 ms").arg(tour.SinceStart()));
            if (QString failure = tour.User().Click(QStringLiteral("OptionSerialCommMode(0)"));
                !failure.isEmpty())
                return failure;
            tour.TakePicture(QStringLiteral("01-select-mode"));
            return tour.User().Click(QStringLiteral("CommandOK"));
        });
    const auto asked = std::make_shared<QElapsedTimer>();
    tour.Add(
        QStringLiteral("It reads the whole drive"),
        [&tour, asked] {
            if (!asked->isValid())
                asked->start();
            const QWidget *progress = tour.User().Modal(QStringLiteral("FormProgressBar"));
            return progress && progress->findChild<QProgressBar *>()->value() > 100;
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("02-reading"));
            return QString();
        });
    tour.Add(
        QStringLiteral("The drive is read, the link is up, and the tips stand there"),
        [&tour] {
            return !QApplication::activeModalWidget() && IsOnline(tour) &&
                   tour.User().WindowTitled(QStringLiteral("Getting Started"));
        },
        [&tour, asked] {
            tour.Note(
                QStringLiteral("time to on line with the whole drive read: %1 ms").arg(asked->elapsed()));
            tour.TakePicture(QStringLiteral("03-online"));
            QWidget *tips = tour.User().WindowTitled(QStringLiteral("Getting Started"));
            return tour.User().Click(tips->findChild<QWidget *>(QStringLiteral("cmdOK")));
        });
}

void AddMainJob(Tour &tour)
{
    AddWatching(tour);
    AddEdit(tour);
    AddSaving(tour);
}

void AddRestart(Tour &tour)
{
    tour.Do(QStringLiteral("A click on the status panel ends the link"),
            [&tour] { return tour.User().Click(QStringLiteral("ComStatus")); });
    tour.Add(
        QStringLiteral("The question whether the drive is to keep what was written: No"),
        [] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr; },
        [&tour] {
            tour.TakePicture(QStringLiteral("40-going-offline"));
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            return tour.User().Click(box->button(QMessageBox::No));
        });
    tour.Add(
        QStringLiteral("File, Exit"), [&tour] { return !IsOnline(tour); },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileExit")); });
    tour.Add(
        QStringLiteral("The program is started again"), [&tour] { return HasEnded(tour); },
        [&tour] {
            tour.TheProgram().Start();
            return QString();
        });
    tour.Add(
        QStringLiteral("This time without a drive"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormSelectCommMode")) != nullptr; },
        [&tour] {
            const QString failure = tour.User().Click(QStringLiteral("OptionSerialCommMode(1)"));
            return failure.isEmpty() ? tour.User().Click(QStringLiteral("CommandOK")) : failure;
        });
    tour.Add(
        QStringLiteral("The tips, OK"),
        [&tour] { return tour.User().WindowTitled(QStringLiteral("Getting Started")) != nullptr; },
        [&tour] {
            QWidget *tips = tour.User().WindowTitled(QStringLiteral("Getting Started"));
            return tour.User().Click(tips->findChild<QWidget *>(QStringLiteral("cmdOK")));
        });
    tour.Do(QStringLiteral("File, Open"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileOpen")); });
    AddFileDialog(tour, QStringLiteral("The same name is typed"), QStringLiteral("41-open"));
    tour.Add(
        QStringLiteral("The file is open"),
        [&tour] {
            return !QApplication::activeModalWidget() &&
                   tour.TheProgram().Main().windowTitle().endsWith(QLatin1String("tour.Svx]"));
        },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAnalogInput(1)")); });
    tour.Add(
        QStringLiteral("The new gain is in it"),
        [&tour] { return BoxText(tour, gainBox).startsWith(NewGain()); },
        [&tour] {
            tour.TakePicture(QStringLiteral("42-reopened"));
            return QString();
        });
}

void AddLeaving(Tour &tour)
{
    tour.Do(QStringLiteral("File, Exit"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileExit")); });
    tour.Add(
        QStringLiteral("The window has gone"), [&tour] { return HasEnded(tour); }, [] { return QString(); });
}

} // namespace quorvik
