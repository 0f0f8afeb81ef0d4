#pragma once

#include <QObject>
#include <QTimer>

namespace quorvik
{

class Asker;
class Model;
class SettingsFile;

/**
 * Keeps a set with unsaved edits, typed notes among them, in a copy on disk, so that a crash or a power cut
 * loses at most the last few seconds. A save, a new set and a normal end remove the copy; the next start
 * offers what a crash left.
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
     * Offers what an earlier run left behind. After a No it stays as "declined.Svx" until the next No; one
     * that cannot be read is set aside, and the user is told where.
     * @return True when the set was taken over: it is in the table, marked as modified, under its old name,
     * and the copy goes on with it.
     */
    bool OfferLeftover(Asker &asker);

    /** Brings the copy up to date at once, where there are unsaved edits; the program is about to end. */
    void WriteNow();

    /** The program ends normally: nothing is left to recover. */
    void Remove();

    QString Path() const;

Q_SIGNALS:
    /** The copy could not be written, which is told once until it can be again; for the strip under the menu.
     */
    void WriteFailed(const QString &sentence);

private:
    void OnMarksChanged();
    void Write();
    QString WriteBoth();
    /** Keeps the copy under another name, where it is not offered again. @return its path. */
    QString SetAside(const QString &name);
    QString NamePath() const;

    Model &model_;
    SettingsFile &file_;
    QString folder_;
    QTimer timer_;
    bool isOurs_ = false; ///< this run has had something to copy
    bool isFailureTold_ = false;
};

} // namespace quorvik
