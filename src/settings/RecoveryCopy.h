#pragma once

#include <QObject>
#include <QTimer>

namespace quorvik
{

class Asker;
class Model;
class SettingsFile;

/**
 * Keeps a modified set in a copy on disk, so that a crash or a power cut loses at most the last few seconds.
 * A normal end, a save or a new set removes the copy; the next start offers what a crash left, once.
 */
class RecoveryCopy : public QObject
{
    Q_OBJECT

public:
    /** No edit waits longer than this for its copy, in milliseconds; less than the five seconds that are
     * promised. */
    static constexpr int WriteDelayMs = 3000;

    /** @param folder where the copy lies; made when it is needed. */
    RecoveryCopy(Model &model, SettingsFile &file, const QString &folder, int writeDelayMs = WriteDelayMs);

    /**
     * Offers what an earlier run left behind and takes it away, whatever the answer.
     * @return True when the set was taken over: it is in the table, marked as modified, under its old name.
     */
    bool OfferLeftover(Asker &asker);

    /** The program ends normally: nothing is left to recover. */
    void Remove();

    QString Path() const;

Q_SIGNALS:
    /** The copy could not be written, which is told once until it can be again; for the status bar. */
    void WriteFailed(const QString &sentence);

private:
    void OnMarksChanged();
    void Write();
    QString WriteBoth();
    QString NamePath() const;

    Model &model_;
    SettingsFile &file_;
    QString folder_;
    QTimer timer_;
    bool isOurs_ = false; ///< this run has had something to copy
    bool isFailureTold_ = false;
};

} // namespace quorvik
