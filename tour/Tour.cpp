#include "tour/Tour.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>
#include <QTimer>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int tickMs = 20;

} // namespace

Tour::Tour(Program &program, DriveProcess &drive, QString pictureFolder)
    : program_(program)
    , drive_(drive)
    , hands_(program)
    , pictureFolder_(std::move(pictureFolder))
{
}

void Tour::Add(const QString &what, std::function<bool()> isReady, std::function<QString()> act, int limitMs)
{
    steps_.append({what, std::move(isReady), std::move(act), limitMs});
}

void Tour::Do(const QString &what, std::function<QString()> act)
{
    Add(
        what, [] { return true; }, std::move(act));
}

void Tour::Start()
{
    sinceStart_.start();
    sinceStep_.start();
    program_.Start();
    AwaitTick();
}

void Tour::AwaitTick()
{
    // A repeating timer would not fire again inside the loop of a modal window that its own tick opened.
    QTimer::singleShot(tickMs, this, &Tour::Tick);
}

void Tour::Tick()
{
    if (hasEnded_)
        return;
    if (next_ >= steps_.size()) {
        End({});
        return;
    }
    AwaitTick();
    if (hands_.IsBusy())
        return;
    const Step step = steps_[next_];
    if (!step.isReady()) {
        if (sinceStep_.elapsed() > step.limitMs)
            End(QStringLiteral("waited %1 s for: %2").arg(step.limitMs / 1000).arg(step.what));
        return;
    }
    // Counted before it acts: what it opens may run the next steps before it returns.
    ++next_;
    Say(QStringLiteral("%1. %2 (%3 ms)").arg(next_).arg(step.what).arg(sinceStep_.restart()));
    if (const QString failure = step.act(); !failure.isEmpty())
        End(failure);
}

void Tour::End(const QString &failure)
{
    if (std::exchange(hasEnded_, true))
        return;
    if (!failure.isEmpty()) {
        hasFailed_ = true;
        if (program_.IsRunning())
            TakePicture(QStringLiteral("failed"));
        Say(QStringLiteral("FAILED: %1").arg(failure));
    }
    Note(QStringLiteral("pictures: %1, in %2").arg(pictures_).arg(pictureFolder_));
    Note(QStringLiteral("steps: %1 of %2 in %3 s").arg(next_).arg(steps_.size()).arg(SinceStart() / 1000.0));
    for (const QString &figure : figures_)
        Say(figure);
    Q_EMIT Finished();
}

void Tour::TakePicture(const QString &name, QWidget *window)
{
    QCoreApplication::sendPostedEvents();
    const QString path = QDir(pictureFolder_).absoluteFilePath(name + QStringLiteral(".png"));
    const QPixmap picture = window ? window->grab() : hands_.Scene();
    if (!picture.save(path)) {
        End(QStringLiteral("the picture %1 could not be written").arg(path));
        return;
    }
    ++pictures_;
    Say(QStringLiteral("   picture: %1").arg(path));
}

void Tour::Say(const QString &line) const
{
    QTextStream(stdout) << line << Qt::endl;
}

} // namespace quorvik
