#include "tour/Journey.h"
#include "tour/Walk.h"

#include "desktop/ValueBox.h"
#include "trend/TrendRecorder.h"
#include "trend/forms/FormTrend.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

namespace quorvik
{

namespace
{

constexpr std::size_t SamplesWanted = 60;

const QString Loop = QStringLiteral("Velocity Loop");
const QString Ramp = QStringLiteral("Accel/Decel");

FormTrend *Window(Tour &tour)
{
    const QWidget *frame = tour.User().WindowTitled(QStringLiteral("Trend"));
    return frame ? frame->findChild<FormTrend *>() : nullptr;
}

template<typename Control> Control *In(Tour &tour, const char *name)
{
    FormTrend *window = Window(tour);
    return window ? window->findChild<Control *>(QString::fromLatin1(name)) : nullptr;
}

QMenu *BoxMenu(Tour &tour)
{
    ValueBox *box = Walk::BoxIn(tour, Loop, Param::VelFeedback);
    return box ? box->findChild<QMenu *>(QStringLiteral("BoxMenu")) : nullptr;
}

const TrendRecorder &RecorderOf(Tour &tour)
{
    return tour.TheProgram().Main().AllEngines().trend;
}

std::size_t SamplesOf(Tour &tour, int p)
{
    const TrendTrack *track = RecorderOf(tour).Data().TrackOf(p);
    return track ? track->samples.Size() : 0;
}

void AddChannelByName(Tour &tour, const char *typed)
{
    tour.Do(QStringLiteral("Another channel, by its number"), [&tour, typed] {
        auto *field = In<QLineEdit>(tour, "TextAddChannel");
        field->setFocus();
        QTest::keyClicks(field, QString::fromLatin1(typed));
        QTest::keyClick(field, Qt::Key_Return);
        // The list of names would have taken the key from a hand, and closed.
        tour.User().CloseMenus();
        return QString();
    });
}

void AddRecording(Tour &tour)
{
    tour.Do(QStringLiteral("Velocity Loop: how does the speed move?"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockVloop")); });
    tour.Add(
        QStringLiteral("The menu of Vel Feedback"),
        [&tour] { return Walk::BoxIn(tour, Loop, Param::VelFeedback) != nullptr; },
        [&tour] {
            QTest::keyClick(Walk::BoxIn(tour, Loop, Param::VelFeedback), Qt::Key_F10, Qt::ShiftModifier);
            return QString();
        });
    tour.Add(
        QStringLiteral("Add to Trend"), [&tour] { return BoxMenu(tour) && BoxMenu(tour)->isVisible(); },
        [&tour] {
            BoxMenu(tour)->setActiveAction(
                BoxMenu(tour)->findChild<QAction *>(QStringLiteral("BoxAddToTrend")));
            tour.TakePicture(QStringLiteral("50-add-to-trend"));
            QTest::keyClick(BoxMenu(tour), Qt::Key_Return);
            return QString();
        });
    tour.Add(
        QStringLiteral("The trend is open"),
        [&tour] { return Window(tour) && RecorderOf(tour).Data().TrackOf(Param::VelFeedback); },
        [&tour] {
            tour.User().WindowTitled(Loop)->close();
            return QString();
        });
    AddChannelByName(tour, "129");
    AddChannelByName(tour, "102");
    tour.Add(
        QStringLiteral("Record"), [&tour] { return RecorderOf(tour).Data().tracks.size() >= 3; },
        [&tour] { return tour.User().Click(In<QWidget>(tour, "CommandRecord")); });
    tour.Add(
        QStringLiteral("Samples come in, many a second"),
        [&tour] { return SamplesOf(tour, Param::VelFeedback) >= SamplesWanted; },
        [&tour] {
            const double rate = RecorderOf(tour).RateOf(Param::VelFeedback).value_or(0);
            tour.Note(QStringLiteral("samples a second, with three channels: %1 each").arg(rate, 0, 'f', 1));
            tour.TakePicture(QStringLiteral("50-trend"));
            return QString();
        });
}

void AddTrigger(Tour &tour)
{
    tour.Do(QStringLiteral("Trigger: the answer to a change"),
            [&tour] { return tour.User().Click(In<QWidget>(tour, "CommandTrigger")); });
    tour.Do(QStringLiteral("It is armed"), [&tour] {
        auto *kinds = In<QComboBox>(tour, "ComboTriggerKind");
        kinds->setCurrentIndex(kinds->findData(int(TriggerKind::Edit)));
        return tour.User().Click(In<QWidget>(tour, "CommandArm"));
    });
    tour.Add(
        QStringLiteral("Blocks, Accel/Decel"), [&tour] { return RecorderOf(tour).IsWaiting(); },
        [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuBlockAccelDecel")); });
    tour.Add(
        QStringLiteral("A click on Fwd Accel A"),
        [&tour] { return Walk::BoxIn(tour, Ramp, Param::FwdAccelA) != nullptr; },
        [&tour] { return tour.User().Click(Walk::BoxIn(tour, Ramp, Param::FwdAccelA)); });
    tour.Add(
        QStringLiteral("6.5 is typed, OK"),
        [&tour] { return tour.User().Modal(QStringLiteral("FormModifyParameterValue")) && Hands::CanType(); },
        [&tour] {
            const QString failure = Hands::TypeOver(QStringLiteral("6.5"));
            return failure.isEmpty() ? tour.User().Click(QStringLiteral("CommandOK")) : failure;
        });
    tour.Add(
        QStringLiteral("The change is marked, and a capture taken around it"),
        [&tour] {
            const auto *capture = In<QToolButton>(tour, "CommandCapture(0)");
            return !QApplication::activeModalWidget() && capture && capture->isVisible();
        },
        [&tour] {
            tour.User().WindowTitled(Ramp)->close();
            return tour.User().Click(In<QToolButton>(tour, "CommandCapture(0)"));
        });
    tour.Add(
        QStringLiteral("The capture, with cursors"), [&tour] { return !Window(tour)->View().IsLive(); },
        [&tour] {
            TrendView &view = Window(tour)->View();
            const qint64 span = view.ToUs() - view.FromUs();
            view.SetCursor(0, view.FromUs() + span / 4);
            view.SetCursor(1, view.FromUs() + span / 2);
            // The second of them has the figures.
            In<QTabWidget>(tour, "Tabs")->setCurrentIndex(1);
            return QString();
        });
    tour.Add(
        QStringLiteral("The figures between them"),
        [&tour] { return In<QLabel>(tour, "LabelTimes")->text().startsWith(QLatin1String("A at ")); },
        [&tour] {
            tour.TakePicture(QStringLiteral("50-trend-capture"));
            return tour.User().Click(In<QWidget>(tour, "CommandLive"));
        });
}

void AddTuning(Tour &tour)
{
    tour.Do(QStringLiteral("The page for tuning"),
            [&tour] { return tour.User().Click(In<QWidget>(tour, "CommandTuning")); });
    tour.Add(
        QStringLiteral("An input drives the reference; the page says why it offers no step"),
        [&tour] {
            const auto *why = In<QLabel>(tour, "LabelStepSource");
            return why && why->isVisible() && why->text().contains(QLatin1String("a step would not stay"));
        },
        [&tour] {
            tour.TakePicture(QStringLiteral("50-trend-tuning"));
            return tour.User().Click(In<QWidget>(tour, "CommandTuning"));
        });
}

bool IsFileDialogOpen()
{
    const QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->inherits("QFileDialog");
}

QMenu *ExportMenu(Tour &tour)
{
    const auto *button = In<QPushButton>(tour, "CommandExport");
    return button ? button->menu() : nullptr;
}

void AddExport(Tour &tour)
{
    const QString file = QDir(tour.PictureFolder()).absoluteFilePath(QStringLiteral("trend.csv"));
    tour.Do(QStringLiteral("Export"), [&tour, file] {
        QFile::remove(file);
        return tour.User().Click(In<QWidget>(tour, "CommandExport"));
    });
    tour.Add(
        QStringLiteral("Values as CSV"),
        [&tour] { return ExportMenu(tour) && ExportMenu(tour)->isVisible(); },
        [&tour] {
            ExportMenu(tour)->setActiveAction(ExportMenu(tour)->actions().first());
            QTest::keyClick(ExportMenu(tour), Qt::Key_Return);
            return QString();
        });
    tour.Add(QStringLiteral("Its name is typed"), IsFileDialogOpen,
             [&tour, file] { return tour.User().TypeFileName(file); });
    tour.Add(
        QStringLiteral("Save"), [] { return Hands::AcceptButton() != nullptr; },
        [&tour] { return tour.User().Click(Hands::AcceptButton()); });
    tour.Add(
        QStringLiteral("The file has a line for each sample"),
        [file] { return !QApplication::activeModalWidget() && QFile(file).size() > 0; },
        [&tour, file] {
            QFile csv(file);
            if (!csv.open(QIODevice::ReadOnly))
                return QStringLiteral("the file cannot be read");
            const qsizetype lines = csv.readAll().count('\n');
            tour.Say(QStringLiteral("   %1 lines").arg(lines));
            Window(tour)->close();
            return lines > qsizetype(SamplesWanted) ? QString()
                                                    : QStringLiteral("there are too few lines in it");
        });
    tour.Add(
        QStringLiteral("The window is closed, and the recording with it"),
        [&tour] { return !Window(tour) && !RecorderOf(tour).IsRunning(); }, [] { return QString(); });
}

} // namespace

void AddTrendJob(Tour &tour)
{
    AddRecording(tour);
    AddTrigger(tour);
    AddTuning(tour);
    AddExport(tour);
}

} // namespace quorvik
