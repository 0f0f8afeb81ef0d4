#pragma once

#include <QByteArray>
#include <QString>

namespace quorvik
{

/**
 * Writes a file so that at every instant one whole file exists: what is new is written beside the target,
 * flushed to disk, and renamed over it. An object that goes out of scope uncommitted removes what it wrote
 * and leaves the target as it was.
 */
class AtomicFile
{
public:
    /** @param target the file to be written or replaced; a link is followed to the file behind it, which need
     * not exist. */
    explicit AtomicFile(const QString &target);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /** Creates the empty sibling, with the owner and mode of the target as far as it can have them. @return
     * an empty text, or a sentence on why it cannot be created. */
    QString Create();

    /** Path of the sibling that takes the content; empty before Create(). */
    const QString &SiblingPath() const { return siblingPath_; }

    /**
     * Flushes the sibling and puts it in the target's place, writable for its owner whether or not the old
     * file was. @return an empty text, or a sentence on what failed; the target is then as it was.
     */
    QString Commit();

    /** Writes a whole file in one go. @return as Commit(). */
    static QString Write(const QString &target, const QByteArray &content);

private:
    QString target_;
    QString siblingPath_;
};

} // namespace quorvik
