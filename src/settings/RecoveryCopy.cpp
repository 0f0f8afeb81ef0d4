#include "settings/RecoveryCopy.h"

#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/AtomicFile.h"
#include "platform/Guard.h"
#include "settings/SettingsFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <utility>

namespace quorvik
{

RecoveryCopy::RecoveryCopy(Document &document, SettingsFile &file, const QString &folder, int writeDelayMs)
    : document_(document)
    , file_(file)
    , folder_(folder)
{
    timer_.setSingleShot(true);
    timer_.setInterval(writeDelayMs);
    On(&timer_, &QTimer::timeout, this, [this] { Write(); });
    On(&document_, &Document::Marked, this, [this] { OnMarksChanged(); });
}

QString RecoveryCopy::Path() const
{
    return folder_ + QStringLiteral("/recovery.Svx");
}

QString RecoveryCopy::NamePath() const
{
    return folder_ + QStringLiteral("/recovery.name");
}

void RecoveryCopy::OnMarksChanged()
{
    if (folder_.isEmpty())
        return;
    if (!document_.HasUnsavedEdits) {
        // What an earlier run left is not ours to remove before it was offered.
        if (std::exchange(isOurs_, false))
            Remove();
        return;
    }
    isOurs_ = true;
    // Not restarted by further edits: a steady hand must not keep the copy from being written.
    if (!timer_.isActive())
        timer_.start();
}

void RecoveryCopy::Write()
{
    const QString failure = WriteBoth();
    if (failure.isEmpty()) {
        isFailureTold_ = false;
        return;
    }
    // The disk may have room again before the next edit comes.
    timer_.start();
    if (!std::exchange(isFailureTold_, true))
        Q_EMIT WriteFailed(failure);
}

QString RecoveryCopy::WriteBoth()
{
    QDir().mkpath(folder_);
    if (QString failure = AtomicFile::Write(NamePath(), document_.FileName.toUtf8()); !failure.isEmpty())
        return failure;
    // Saving turns empty notes into one blank, which is for the user's own save to do.
    const QString notes = std::exchange(document_.Notes, document_.TypedNotes.value_or(document_.Notes));
    QString failure = file_.Save(Path());
    document_.Notes = notes;
    return failure;
}

void RecoveryCopy::WriteNow()
{
    if (document_.HasUnsavedEdits)
        Write();
}

void RecoveryCopy::Remove()
{
    timer_.stop();
    QFile::remove(Path());
    QFile::remove(NamePath());
}

QString RecoveryCopy::SetAside(const QString &name)
{
    QString kept = folder_ + u'/' + name + QStringLiteral(".Svx");
    if (!QFile::rename(Path(), kept))
        return Path();
    QFile::remove(NamePath());
    return kept;
}

std::optional<QString> RecoveryCopy::LeftoverName() const
{
    if (!QFile::exists(Path()))
        return std::nullopt;
    QFile nameFile(NamePath());
    return nameFile.open(QIODevice::ReadOnly) ? QString::fromUtf8(nameFile.readAll()) : Document::Unnamed();
}

QString RecoveryCopy::Recover(const QString &name)
{
    QString failure = file_.LoadSettings(Path());
    if (!failure.isEmpty())
        return failure;
    // Still unsaved, so the copy stays until the next one takes its place.
    document_.FileName = name;
    document_.MarkFile(true);
    return {};
}

void RecoveryCopy::KeepDeclined()
{
    QFile::remove(folder_ + QStringLiteral("/declined.Svx"));
    SetAside(QStringLiteral("declined"));
}

QString RecoveryCopy::KeepUnreadable()
{
    return SetAside(QDateTime::currentDateTime().toString(QStringLiteral("'unreadable-'yyyyMMdd-hhmmss")));
}

} // namespace quorvik
