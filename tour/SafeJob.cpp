#include "tour/Journey.h"

#include "model/ParameterTable.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

namespace quorvik
{

namespace
{

constexpr int ChangedAtDrive = Param::FwdAccelA; ///< which no open window polls

QMessageBox *Box()
{
    return qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
}

/** A guard's box: a picture of it, and its safe button. */
void AddGuard(Tour &tour, const QString &what, const QString &entry, const QString &picture)
{
    tour.Do(what, [&tour, entry] { return tour.User().ChooseMenu(entry); });
    tour.Add(
        what + QStringLiteral(": the question, and its safe answer"), [] { return Box() != nullptr; },
        [&tour, picture] {
            tour.TakePicture(picture);
            return tour.User().Click(Box()->defaultButton());
        });
    tour.Add(
        what + QStringLiteral(": nothing has happened"), [] { return !QApplication::activeModalWidget(); },
        [&tour] {
            const bool isUp = tour.User().TextOf(QStringLiteral("ComStatus")) == QLatin1String("OnLine");
            return isUp ? QString() : QStringLiteral("the link is down");
        });
}

QString OutcomeText(Tour &tour, const QString &window, const QString &label)
{
    const QWidget *shown = tour.User().WindowTitled(window);
    const auto *text = shown ? shown->findChild<QLabel *>(label) : nullptr;
    return text ? text->text() : QString();
}

QString ClickIn(Tour &tour, const QString &window, const QString &control)
{
    return tour.User().Click(tour.User().WindowTitled(window)->findChild<QWidget *>(control));
}

/** The whole open set: refused while the machine runs, and proved once it stands. */
void AddWholeWrite(Tour &tour, const QString &report)
{
    tour.Do(QStringLiteral("The machine is held where it is, and runs"), [&tour] {
        tour.Drive().Send(QStringLiteral("freeze\nset 422 1"));
        tour.Drive().Print(ChangedAtDrive);
        return QString();
    });
    AddGuard(tour, QStringLiteral("File, Write and Verify"), QStringLiteral("mnuFileWriteVerify"),
             QStringLiteral("33-running-guard"));
    tour.Do(QStringLiteral("The machine stands; File, Write and Verify again"), [&tour] {
        tour.Drive().Send(QStringLiteral("set 422 0"));
        tour.Drive().Print(ChangedAtDrive);
        return tour.User().ChooseMenu(QStringLiteral("mnuFileWriteVerify"));
    });
    tour.Add(
        QStringLiteral("The set was read from a running drive: it is sent without its Run"),
        [&tour, report] { return Box() != nullptr || tour.User().WindowTitled(report); },
        [&tour] {
            if (!Box())
                return QString();
            tour.TakePicture(QStringLiteral("34-commands-guard"));
            return tour.User().Click(Box()->defaultButton());
        });
    tour.Add(
        QStringLiteral("All of it has arrived"),
        [&tour, report] {
            return !QApplication::activeModalWidget() && tour.User().WindowTitled(report) != nullptr;
        },
        [&tour, report] {
            const QString summary = OutcomeText(tour, report, QStringLiteral("LabelSummary"));
            tour.Note(QStringLiteral("whole write: ") + summary);
            tour.TakePicture(QStringLiteral("35-whole-write"));
            tour.User().WindowTitled(report)->close();
            return summary.contains(QLatin1String("sent")) ? summary : QString();
        },
        40000);
}

/** The messages that stand beside the work. */
QList<QMessageBox *> StandingBoxes()
{
    QList<QMessageBox *> boxes;
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *box = qobject_cast<QMessageBox *>(window); box && box->isVisible() && !box->isModal())
            boxes.append(box);
    return boxes;
}

/** The cable is pulled in the middle of a write, and comes back. */
void AddInterruptedWrite(Tour &tour, const QString &report)
{
    tour.Do(QStringLiteral("File, Write and Verify once more"),
            [&tour] { return tour.User().ChooseMenu(QStringLiteral("mnuFileWriteVerify")); });
    tour.Add(
        QStringLiteral("Without its commands"),
        [] { return Box() != nullptr || QApplication::activeModalWidget(); },
        [&tour] { return Box() ? tour.User().Click(Box()->defaultButton()) : QString(); });
    tour.Add(
        QStringLiteral("In the middle of the writing the drive falls silent"),
        [&tour] {
            const QWidget *progress = tour.User().Modal(QStringLiteral("FormProgressBar"));
            const auto *doing =
                progress ? progress->findChild<QLabel *>(QStringLiteral("LabelDoing")) : nullptr;
            return doing && doing->text().startsWith(QLatin1String("Writing"));
        },
        [&tour] {
            tour.Drive().Send(QStringLiteral("fault drop"));
            tour.TakePicture(QStringLiteral("36-writing"));
            return QString();
        });
    tour.Add(
        QStringLiteral("The report tells what was sent and what was not"),
        [&tour, report] { return tour.User().WindowTitled(report) && !StandingBoxes().isEmpty(); },
        [&tour, report] {
            QString summary = OutcomeText(tour, report, QStringLiteral("LabelSummary"));
            tour.Note(QStringLiteral("interrupted: ") + summary);
            tour.TakePicture(QStringLiteral("37-interrupted"));
            for (QMessageBox *box : StandingBoxes())
                box->button(QMessageBox::Ok)->click();
            tour.Drive().Send(QStringLiteral("faults off"));
            tour.Drive().Print(ChangedAtDrive);
            if (!summary.contains(QLatin1String("not sent")))
                return summary;
            return ClickIn(tour, report, QStringLiteral("CommandResume"));
        },
        40000);
    tour.Add(
        QStringLiteral("Resumed with the same drive, all of it arrives"),
        [&tour, report] {
            const QString summary = OutcomeText(tour, report, QStringLiteral("LabelSummary"));
            return !QApplication::activeModalWidget() && summary.endsWith(QLatin1String("0 differ"));
        },
        [&tour, report] {
            tour.Note(QStringLiteral("resumed: ") +
                      OutcomeText(tour, report, QStringLiteral("LabelSummary")));
            tour.TakePicture(QStringLiteral("38-resumed"));
            tour.User().WindowTitled(report)->close();
            tour.Drive().Send(QStringLiteral("thaw"));
            return QString();
        },
        40000);
}

} // namespace

void AddSafeJob(Tour &tour)
{
    const QString compare = QStringLiteral("Compare");
    const QString report = QStringLiteral("Write Report");
    AddGuard(tour, QStringLiteral("Tools, Reset Drive, beside a machine that runs"),
             QStringLiteral("mnuToolsReInitDrive(2)"), QStringLiteral("30-reset-guard"));
    tour.Do(QStringLiteral("Somebody changes a ramp at the drive itself"), [&tour] {
        tour.Drive().Send(QStringLiteral("set %1 99").arg(ChangedAtDrive));
        return tour.User().ChooseMenu(QStringLiteral("mnuToolsCompare"));
    });
    tour.Add(
        QStringLiteral("Compare reads the drive"),
        [&tour, compare] { return tour.User().WindowTitled(compare) != nullptr; },
        [&tour, compare] { return ClickIn(tour, compare, QStringLiteral("CommandReadDrive")); });
    tour.Add(
        QStringLiteral("What differs is found by name, ticked and copied into the drive"),
        [&tour, compare] {
            return !QApplication::activeModalWidget() &&
                   OutcomeText(tour, compare, QStringLiteral("LabelCounts")).contains(u'1');
        },
        [&tour, compare] {
            QWidget *window = tour.User().WindowTitled(compare);
            auto *search = window->findChild<QLineEdit *>(QStringLiteral("TextSearch"));
            search->setFocus();
            QTest::keyClicks(search, tour.TheProgram().Main().AllEngines().table[ChangedAtDrive].Name);
            if (QString failure = ClickIn(tour, compare, QStringLiteral("CommandTakeAll"));
                !failure.isEmpty())
                return failure;
            window->findChild<QComboBox *>(QStringLiteral("ComboDirection"))->setCurrentIndex(1);
            tour.TakePicture(QStringLiteral("31-compare"));
            tour.Say(QStringLiteral("   ") + OutcomeText(tour, compare, QStringLiteral("LabelCounts")));
            return ClickIn(tour, compare, QStringLiteral("CommandCopy"));
        });
    tour.Add(
        QStringLiteral("The report says that it arrived, and so does the drive"),
        [&tour, report] {
            const int wanted = tour.TheProgram().Main().AllEngines().table.Value(ChangedAtDrive);
            return !QApplication::activeModalWidget() && tour.User().WindowTitled(report) &&
                   tour.Drive()
                       .Print(ChangedAtDrive)
                       .value_or(QString())
                       .startsWith(QStringLiteral("%1 %2 ").arg(ChangedAtDrive).arg(wanted));
        },
        [&tour, report] {
            const QString summary = OutcomeText(tour, report, QStringLiteral("LabelSummary"));
            tour.TakePicture(QStringLiteral("32-write-report"));
            tour.Note(QStringLiteral("write report: ") + summary);
            if (summary != QLatin1String("1 written and verified, 0 refused, 0 differ"))
                return QStringLiteral("the report says: ") + summary;
            tour.User().WindowTitled(report)->close();
            return QString();
        });
    tour.Do(QStringLiteral("The comparison is closed"),
            [&tour, compare] { return ClickIn(tour, compare, QStringLiteral("CommandClose")); });
    AddWholeWrite(tour, report);
    AddInterruptedWrite(tour, report);
}

} // namespace quorvik
