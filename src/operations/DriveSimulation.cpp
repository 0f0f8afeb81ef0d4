#include "operations/DriveSimulation.h"

#include "link/DriveLink.h"
#include "platform/Guard.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quorvik
{

namespace
{

/** The number that only an address stands behind. */
constexpr int OwnNumber = 0;
constexpr int EndLimitMs = 1000;

} // namespace

DriveSimulation::DriveSimulation(DriveLink &link, const QString &programFolder)
    : link_(link)
    , programFolder_(programFolder)
{
    const auto others = link_.MSComm1.DeviceOf;
    link_.MSComm1.DeviceOf = [this, others](int number) {
        return number == OwnNumber && IsRunning() ? folder_->filePath(QStringLiteral("drive"))
                                                  : others(number);
    };
    startLimit_.setSingleShot(true);
    On(&startLimit_, &QTimer::timeout, this,
       [this] { Fail(QStringLiteral("The simulated drive did not start in time.")); });
}

DriveSimulation::~DriveSimulation()
{
    End();
}

QString DriveSimulation::Program() const
{
    const QString name = QStringLiteral("sarvex-drive");
    const QDir beside(QCoreApplication::applicationDirPath());
    // Installed it lies beside the program; where the program was built, beside the folder of programs.
    for (const QString &path : {beside.filePath(name), beside.filePath(QStringLiteral("../drive/") + name)})
        if (QFileInfo(path).isExecutable() && QFileInfo(path).isFile())
            return QDir::cleanPath(path);
    return QStandardPaths::findExecutable(name);
}

void DriveSimulation::Start(std::int32_t modelCode, bool moves)
{
    End();
    folder_ = std::make_unique<QTemporaryDir>();
    child_ = std::make_unique<QProcess>(this);
    child_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString program = Program();
    if (program.isEmpty() || !folder_->isValid()) {
        Fail(program.isEmpty()
                 ? QStringLiteral("The program sarvex-drive is not there. It belongs to the package of "
                                  "Quorvik: install that again.")
                 : QStringLiteral("There is no room for the simulated drive's port: %1.")
                       .arg(folder_->errorString()));
        return;
    }
    QStringList arguments = {QStringLiteral("--end-with-input"),
                             QStringLiteral("--link"),
                             folder_->filePath(QStringLiteral("drive")),
                             QStringLiteral("--presets"),
                             QDir(programFolder_).filePath(QStringLiteral("Presets.fil")),
                             QStringLiteral("--model"),
                             QString::number(modelCode)};
    if (moves)
        arguments.append(QStringLiteral("--demo"));
    On(child_.get(), &QProcess::readyReadStandardOutput, this, [this] { Listen(); });
    const auto ended = [this] {
        if (child_ && child_->state() == QProcess::NotRunning)
            Fail(isReady_ ? QStringLiteral("The simulated drive has ended.")
                          : QStringLiteral("The simulated drive could not be started."));
    };
    // Later, since the child is let go of in answer to it.
    connect(
        child_.get(), &QProcess::errorOccurred, this, [ended] { Guarded(ended); }, Qt::QueuedConnection);
    connect(
        child_.get(), &QProcess::finished, this, [ended] { Guarded(ended); }, Qt::QueuedConnection);
    startLimit_.start(StartLimitMs);
    child_->start(program, arguments);
}

void DriveSimulation::Listen()
{
    while (child_ && child_->canReadLine()) {
        if (!child_->readLine().startsWith("ready ") || isReady_)
            continue;
        startLimit_.stop();
        isReady_ = true;
        numberBefore_ = link_.MSComm1.CommPort();
        link_.MSComm1.SetCommPort(OwnNumber);
        // Later: whoever hears it may wait for the drive, and the child may end meanwhile.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (IsRunning())
                    Q_EMIT Ready();
            },
            Qt::QueuedConnection);
        return;
    }
}

void DriveSimulation::Fail(const QString &sentence)
{
    if (!child_)
        return;
    EndChild();
    Q_EMIT Failed(sentence);
}

void DriveSimulation::End()
{
    if (IsChosen())
        link_.MSComm1.SetCommPort(numberBefore_);
    isReady_ = false;
    EndChild();
}

void DriveSimulation::EndChild()
{
    startLimit_.stop();
    if (!child_)
        return;
    child_->disconnect(this);
    child_->closeWriteChannel();
    child_->terminate();
    if (child_->state() != QProcess::NotRunning && !child_->waitForFinished(EndLimitMs)) {
        child_->kill();
        child_->waitForFinished(EndLimitMs);
    }
    // Perhaps from within its own signal.
    child_.release()->deleteLater();
    folder_.reset();
}

bool DriveSimulation::IsChosen() const
{
    return isReady_ && link_.MSComm1.CommPort() == OwnNumber;
}

} // namespace quorvik
