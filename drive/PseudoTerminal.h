#pragma once

#include <QByteArray>
#include <QString>

namespace quorvik::drive
{

/**
 * A raw pseudo-terminal whose far side the tool opens as its serial port, through a link at a stable path.
 * The far side is also held open here, so that the tool may close and reopen it without any hang-up.
 */
class PseudoTerminal
{
public:
    PseudoTerminal() = default;
    ~PseudoTerminal();
    Q_DISABLE_COPY_MOVE(PseudoTerminal)

    /** @return empty, or the sentence that says what failed. */
    QString Open();
    /** Puts a symbolic link to the device at path, replacing an old link but nothing else. */
    QString PublishAt(const QString &path);

    QString DevicePath() const { return devicePath_; }
    int Descriptor() const { return own_; } ///< readable when the tool has sent something; never blocks

    QByteArray Read();
    void Write(const QByteArray &bytes); ///< what the line cannot take any more is lost

private:
    int own_ = -1;
    int far_ = -1;
    QString devicePath_;
    QString linkPath_;
};

} // namespace quorvik::drive
