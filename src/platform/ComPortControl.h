#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>

namespace quorvik
{

/**
 * One end of a telnet connection with the COM port control option (RFC 2217): agrees with the server on the
 * line's settings, and parts the drive's bytes from what telnet puts between them (RFC 854, RFC 856). Knows
 * no socket. Whatever the server sends, it keeps no more than a few bytes of it.
 */
class ComPortControl
{
public:
    enum class Agreement : std::uint8_t {
        Pending,
        Reached, ///< 38400 baud, 8 data bits, no parity, 1 stop bit
        Refused, ///< the server controls no COM port, or sets it otherwise; WhyNot() tells
    };

    /** What opens the conversation. */
    QByteArray Begin();
    /**
     * Takes what has come. @param answer gets what is to be sent at once; may stay empty.
     * @return the bytes of the line in it.
     */
    QByteArray Take(const QByteArray &bytes, QByteArray &answer);
    /** Bytes for the line, as they are to be sent. */
    QByteArray Escaped(const QByteArray &bytes) const;

    Agreement State() const { return state_; }
    /** The end of a sentence that begins with the server: what it would not do. */
    const QString &WhyNot() const { return whyNot_; }

private:
    enum class Reading : std::uint8_t { Data, AfterReturn, Command, Option, Sub, SubCommand };

    void TakeByte(std::uint8_t byte, QByteArray &data, QByteArray &answer);
    void TakeOption(std::uint8_t option, QByteArray &answer);
    void TakeSub();
    void AskForSettings(QByteArray &answer);
    void Refuse(const QString &whyNot);

    /** What both ends said of an option. */
    struct Option {
        bool isOurs = false;   ///< we do it
        bool isTheirs = false; ///< the server does it
        bool isAsked = false;  ///< we have said that we will
        bool isWanted = false; ///< we have asked the server to
        bool isDeclined = false;
    };

    std::array<Option, 256> options_{};
    Reading reading_ = Reading::Data;
    std::uint8_t verb_ = 0; ///< of the option being read
    QByteArray sub_;
    bool isSubTooLong_ = false;
    bool hasAsked_ = false;
    unsigned confirmed_ = 0; ///< settings that the server has repeated, a bit each
    Agreement state_ = Agreement::Pending;
    QString whyNot_;
};

} // namespace quorvik
