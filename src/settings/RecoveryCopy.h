#pragma once

#include <QObject>
#include <QTimer>
#include <optional>

namespace quorvik
{

class Document;
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

    /** @param folder where the copy lies; made when it is needed. Empty for a run that keeps none. */
    RecoveryCopy(Document &document, SettingsFile &file, const QString &folder,
                 int writeDelayMs = WriteDelayMs);

    /** The name of the set that an earlier run left behind, or nothing. */
    std::optional<QString> LeftoverName() const;
    /** Takes that set into the table, marked as modified; the copy goes on with it. @return empty, or what is
     * wrong with the copy. */
    QString Recover(const QString &name);
    /** Keeps that copy as "declined.Svx", where it is not offered again. */
    void KeepDeclined();
    /** Keeps a copy that cannot be read. @return its path. */
    QString KeepUnreadable();

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

    Document &document_;
    SettingsFile &file_;
    QString folder_;
    QTimer timer_;
    bool isOurs_ = false; ///< this run has had something to copy
    bool isFailureTold_ = false;
};

} // namespace quorvik
