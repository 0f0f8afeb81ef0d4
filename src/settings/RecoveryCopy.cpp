#include "settings/RecoveryCopy.h"

#include "model/Model.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <utility>

namespace quorvik
{

RecoveryCopy::RecoveryCopy(Model &model, SettingsFile &file, const QString &folder, int writeDelayMs)
    : model_(model)
    , file_(file)
    , folder_(folder)
{
    timer_.setSingleShot(true);
    timer_.setInterval(writeDelayMs);
    On(&timer_, &QTimer::timeout, this, [this] { Write(); });
    On(&model_, &Model::TitleChanged, this, [this] { OnMarksChanged(); });
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
    if (!model_.FileModified) {
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
    QSaveFile name(NamePath());
    if (!name.open(QIODevice::WriteOnly) || name.write(model_.FileName.toUtf8()) < 0 || !name.commit())
        return name.errorString();
    // Saving turns empty notes into one blank, which is for the user's own save to do.
    const QString notes = model_.Notes;
    QString failure = file_.Save(Path());
    model_.Notes = notes;
    return failure;
}

void RecoveryCopy::Remove()
{
    timer_.stop();
    QFile::remove(Path());
    QFile::remove(NamePath());
}

bool RecoveryCopy::OfferLeftover(Asker &asker)
{
    if (!QFile::exists(Path()))
        return false;
    QFile nameFile(NamePath());
    QString name = QStringLiteral("unnamed");
    if (nameFile.open(QIODevice::ReadOnly))
        name = QString::fromUtf8(nameFile.readAll());

    const QString question =
        QStringLiteral(
            "Quorvik did not end normally, and changes to %1 had not been saved.\r\n\r\nRecover them?")
            .arg(FileTitle(name));
    bool taken = false;
    if (asker.MsgBox(question, MsgButtons::YesNo, MsgIcon::Question, AppTitle()) == MsgAnswer::Yes) {
        const QString failure = file_.LoadSettings(Path());
        if (failure.isEmpty()) {
            taken = true;
            model_.FileName = name;
            model_.FileModified = true;
        } else {
            asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, AppTitle());
        }
    }
    Remove();
    // What was taken over is still unsaved, so this starts the next copy.
    if (taken)
        model_.UpdateTitle();
    return taken;
}

} // namespace quorvik
