#include "tour/Tour.h"

#include "shell/MDIFormMain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>
#include <QTextStream>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int tickMs = 25;
constexpr int gainParam = 53; ///< the Gain of analog input 1
const char *const newGain = "87.5";

void Say(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

} // namespace

Tour::Tour(MDIFormMain &main, DriveProcess &drive, QString pictureFolder)
    : main_(main)
    , drive_(drive)
    , pictureFolder_(std::move(pictureFolder))
    , savedFile_(QDir(pictureFolder_).absoluteFilePath(QStringLiteral("tour.Svx")))
{
    QFile::remove(savedFile_);
    GoOnlineAndRead();
    WatchAnalogInput();
    EditGain();
    SaveAndReopen();
    Leave();
    connect(&ticks_, &QTimer::timeout, this, &Tour::Tick);
}

void Tour::Start()
{
    sinceStep_.start();
    ticks_.start(tickMs);
}

void Tour::GoOnlineAndRead()
{
    Add(
        tr("The program asks whether a drive is attached; Online, OK"),
        [this] { return Modal(QStringLiteral("FormSelectCommMode")); },
        [this] {
            Click(QStringLiteral("OptionSerialCommMode(0)"));
            TakePicture(QStringLiteral("01-select-mode"));
            Click(QStringLiteral("CommandOK"));
        });
    Add(
        tr("It reads the whole drive"), [this] { return Modal(QStringLiteral("FormProgressBar")); },
        [this] { TakePicture(QStringLiteral("02-reading")); });
    Add(
        tr("The drive is read, and the link is up"),
        [this] {
            return !QApplication::activeModalWidget() &&
                   TextOf(QStringLiteral("ComStatus")) == QLatin1String("OnLine");
        },
        [this] { TakePicture(QStringLiteral("03-online")); });
}

void Tour::WatchAnalogInput()
{
    Add(
        tr("Blocks, Inputs, Analog Inputs, Analog Input 1"), [] { return true; },
        [this] {
            ChooseMenu({QStringLiteral("mnuBlock"), QStringLiteral("mnuBlockInputs"),
                        QStringLiteral("mnuBlockAnalogInputs"), QStringLiteral("mnuBlockAnalogInput(1)")});
        });
    Add(
        tr("The window shows values"), [this] { return !TextOf(QStringLiteral("Text1(2)")).isEmpty(); },
        [this] { shownBefore_ = TextOf(QStringLiteral("Text1(2)")); });
    Add(
        tr("The input's status moves"), [this] { return TextOf(QStringLiteral("Text1(2)")) != shownBefore_; },
        [this] {
            Say(tr("   status: %1, then %2").arg(shownBefore_, TextOf(QStringLiteral("Text1(2)"))));
            TakePicture(QStringLiteral("04-analog-input"));
        });
}

void Tour::EditGain()
{
    Add(
        tr("A click on its Gain opens the edit dialog"), [] { return true; },
        [this] {
            gainBefore_ = TextOf(QStringLiteral("Text1(8)"));
            Say(tr("   the drive prints before: %1").arg(drive_.Print(gainParam).value_or(QString())));
            Click(QStringLiteral("Text1(8)"));
        });
    Add(
        tr("A new gain is typed, OK"), [this] { return Modal(QStringLiteral("FormModifyParameterValue")); },
        [this] {
            auto *entry = qobject_cast<QLineEdit *>(QApplication::focusWidget());
            if (!entry)
                return End(tr("the dialog has no entry with the focus"));
            entry->selectAll();
            QTest::keyClicks(entry, QString::fromLatin1(newGain));
            TakePicture(QStringLiteral("05-edit-gain"));
            Click(QStringLiteral("CommandOK"));
        });
    Add(
        tr("The new gain comes back from the drive"),
        [this] {
            return !QApplication::activeModalWidget() && TextOf(QStringLiteral("Text1(8)")) != gainBefore_ &&
                   drive_.Print(gainParam).value_or(QString()).contains(QLatin1String("8750"));
        },
        [this] {
            Say(tr("   the drive prints after: %1").arg(drive_.Print(gainParam).value_or(QString())));
            Say(tr("   the window shows: %1, before: %2")
                    .arg(TextOf(QStringLiteral("Text1(8)")), gainBefore_));
            TakePicture(QStringLiteral("06-gain-edited"));
        });
}

void Tour::SaveAndReopen()
{
    const auto typeName = [this](const QString &picture) {
        auto *name =
            QApplication::activeModalWidget()->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        if (!name)
            return End(tr("the file dialog has no entry for the name"));
        name->selectAll();
        QTest::keyClicks(name, savedFile_);
        TakePicture(picture);
        QTest::keyClick(name, Qt::Key_Return);
    };
    const auto hasFileDialog = [] {
        QWidget *modal = QApplication::activeModalWidget();
        return modal && modal->inherits("QFileDialog");
    };
    Add(
        tr("File, Save As"), [] { return true; },
        [this] {
            ChooseMenu({QStringLiteral("mnuFile"), QStringLiteral("mnuFileSave(1)")});
        });
    Add(tr("A name is typed"), hasFileDialog, [=] { typeName(QStringLiteral("07-save-as")); });
    Add(
        tr("The file is written and its name stands in the title"),
        [this] {
            return !QApplication::activeModalWidget() && QFile::exists(savedFile_) &&
                   main_.windowTitle().contains(QLatin1String("tour.Svx]"));
        },
        [this] {
            Say(tr("   %1: %2 bytes").arg(savedFile_).arg(QFile(savedFile_).size()));
            TakePicture(QStringLiteral("08-saved"));
            // Off line, so that the file opens into the table alone.
            Click(QStringLiteral("ComStatus"));
        });
    Add(
        tr("Going off line, the drive's own memory is left as it was"),
        [] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()); },
        [this] {
            TakePicture(QStringLiteral("09-going-offline"));
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
        });
    Add(
        tr("File, Open"), [this] { return TextOf(QStringLiteral("ComStatus")) == QLatin1String("OffLine"); },
        [this] {
            ChooseMenu({QStringLiteral("mnuFile"), QStringLiteral("mnuFileOpen")});
        });
    Add(tr("The same name is typed"), hasFileDialog, [=] { typeName(QStringLiteral("10-open")); });
    Add(
        tr("The file is open, with the new gain in it"),
        [this] {
            return !QApplication::activeModalWidget() &&
                   TextOf(QStringLiteral("Text1(8)")).contains(QLatin1String("87.5"));
        },
        [this] { TakePicture(QStringLiteral("11-reopened")); });
}

void Tour::Leave()
{
    Add(
        tr("File, Exit"), [] { return true; },
        [this] {
            ChooseMenu({QStringLiteral("mnuFile"), QStringLiteral("mnuFileExit")});
        });
    Add(
        tr("The window has gone"), [this] { return !main_.isVisible(); }, [] {});
}

void Tour::Add(const QString &what, std::function<bool()> isReady, std::function<void()> act, int limitMs)
{
    steps_.append({what, std::move(isReady), std::move(act), limitMs});
}

void Tour::Tick()
{
    if (next_ >= steps_.size()) {
        End({});
        return;
    }
    const Step step = steps_[next_];
    if (!step.isReady()) {
        if (sinceStep_.elapsed() > step.limitMs)
            End(tr("waited %1 s for: %2").arg(step.limitMs / 1000).arg(step.what));
        return;
    }
    // Counted before it acts: what it opens may run the next steps before it returns.
    ++next_;
    Say(tr("%1. %2 (%3 ms)").arg(next_).arg(step.what).arg(sinceStep_.restart()));
    step.act();
}

void Tour::End(const QString &failure)
{
    ticks_.stop();
    if (!failure.isEmpty()) {
        hasFailed_ = true;
        TakePicture(QStringLiteral("failed"));
        Say(tr("FAILED: %1").arg(failure));
    }
    Q_EMIT Finished();
}

void Tour::TakePicture(const QString &name)
{
    QCoreApplication::sendPostedEvents();
    QWidget *front = QApplication::activeModalWidget();
    const QString path = QDir(pictureFolder_).absoluteFilePath(name + QStringLiteral(".png"));
    if ((front ? front : &main_)->grab().save(path))
        Say(tr("   picture: %1").arg(path));
    else
        hasFailed_ = true;
}

void Tour::Click(const QString &name)
{
    QWidget *modal = QApplication::activeModalWidget();
    auto *control = (modal ? modal : &main_)->findChild<QWidget *>(name);
    if (!control || !control->isVisible() || !control->isEnabled())
        return End(tr("%1 cannot be clicked").arg(name));
    const bool isOption = control->inherits("QRadioButton");
    // An option reacts on its mark and its caption, not on the room beside them.
    const QPoint where =
        isOption ? QPoint(control->height() / 2, control->height() / 2) : control->rect().center();
    QTest::mouseClick(control, Qt::LeftButton, {}, where);
}

void Tour::ChooseMenu(const QStringList &path)
{
    QWidget *bar = main_.menuBar();
    QRect place = main_.menuBar()->actionGeometry(main_.Menus().Entry(path.first()));
    for (qsizetype i = 0; i < path.size(); ++i) {
        QTest::mouseClick(bar, Qt::LeftButton, {}, place.center());
        if (i + 1 == path.size())
            return;
        QMenu *menu = main_.Menus().Menu(path[i]);
        if (!menu->isVisible())
            return End(tr("the menu %1 did not open").arg(path[i]));
        bar = menu;
        place = menu->actionGeometry(main_.Menus().Entry(path[i + 1]));
    }
}

QString Tour::TextOf(const QString &name) const
{
    // A value box is a button by kind: it takes clicks, and no typing.
    const auto *button = main_.findChild<QAbstractButton *>(name);
    return button ? button->text() : QString();
}

QWidget *Tour::Modal(const QString &name) const
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->objectName() == name && modal->isVisible() ? modal : nullptr;
}

} // namespace quorvik
