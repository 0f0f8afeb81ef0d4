#include "platform/ComPortControl.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

/** RFC 854. */
enum Telnet : std::uint8_t { Se = 240, Sb = 250, Will = 251, Wont = 252, Do = 253, Dont = 254, Iac = 255 };
/** RFC 856, RFC 858 and RFC 2217. */
enum TelnetOption : std::uint8_t { Binary = 0, SuppressGoAhead = 3, ComPort = 44 };

/** One setting of the line, by RFC 2217. */
struct LineSetting {
    std::uint8_t command;
    QByteArray value;
    const char *words;
};

/** What the server's answer to a command has more than the command. */
constexpr std::uint8_t AnswerOffset = 100;
constexpr std::uint32_t Baud = 38400;
/** Longer than any sub-negotiation that means something here. */
constexpr qsizetype LongestSub = 64;

const std::array<LineSetting, 5> &LineSettings()
{
    static const std::array<LineSetting, 5> settings{{
        {1, QByteArray::fromHex("00009600"), "38400 baud"},
        {2, QByteArray(1, 8), "8 data bits"},
        {3, QByteArray(1, 1), "no parity"},
        {4, QByteArray(1, 1), "1 stop bit"},
        {5, QByteArray(1, 1), "no handshaking"},
    }};
    return settings;
}

/** A server that does not answer about handshaking has none. */
constexpr unsigned NeededSettings = 0b1111;

QByteArray Command(std::uint8_t verb, std::uint8_t option)
{
    return QByteArray(1, char(Iac)) + char(verb) + char(option);
}

QByteArray Doubled(QByteArray bytes)
{
    return bytes.replace(QByteArray(1, char(Iac)), QByteArray(2, char(Iac)));
}

bool IsSupported(std::uint8_t option)
{
    return option == Binary || option == SuppressGoAhead || option == ComPort;
}

std::uint32_t BigEndian(const QByteArray &bytes)
{
    std::uint32_t value = 0;
    for (const char byte : bytes)
        value = value << 8U | std::uint8_t(byte);
    return value;
}

} // namespace

QByteArray ComPortControl::Begin()
{
    QByteArray bytes;
    for (const std::uint8_t option : {Binary, SuppressGoAhead, ComPort}) {
        options_[option].isAsked = true;
        bytes += Command(Will, option);
    }
    for (const std::uint8_t option : {Binary, SuppressGoAhead}) {
        options_[option].isWanted = true;
        bytes += Command(Do, option);
    }
    return bytes;
}

QByteArray ComPortControl::Take(const QByteArray &bytes, QByteArray &answer)
{
    QByteArray data;
    for (const char byte : bytes)
        TakeByte(std::uint8_t(byte), data, answer);
    return data;
}

void ComPortControl::TakeByte(std::uint8_t byte, QByteArray &data, QByteArray &answer)
{
    switch (reading_) {
    case Reading::AfterReturn:
        reading_ = Reading::Data;
        // Where the bytes are not taken as they are, a return that is one has a zero behind it.
        if (byte == 0)
            return;
        [[fallthrough]];
    case Reading::Data:
        if (byte == Iac) {
            reading_ = Reading::Command;
            return;
        }
        data += char(byte);
        if (byte == '\r' && !options_[Binary].isTheirs)
            reading_ = Reading::AfterReturn;
        return;
    case Reading::Command:
        reading_ = Reading::Data;
        if (byte == Iac) {
            data += char(byte);
        } else if (byte == Sb) {
            sub_.clear();
            isSubTooLong_ = false;
            reading_ = Reading::Sub;
        } else if (byte >= Will && byte <= Dont) {
            verb_ = byte;
            reading_ = Reading::Option;
        }
        return;
    case Reading::Option:
        reading_ = Reading::Data;
        TakeOption(byte, answer);
        return;
    case Reading::Sub:
        if (byte == Iac)
            reading_ = Reading::SubCommand;
        else if (sub_.size() < LongestSub)
            sub_ += char(byte);
        else
            isSubTooLong_ = true;
        return;
    case Reading::SubCommand:
        reading_ = Reading::Sub;
        if (byte == Iac && sub_.size() < LongestSub)
            sub_ += char(byte);
        if (byte != Se)
            return;
        reading_ = Reading::Data;
        if (!isSubTooLong_)
            TakeSub();
        return;
    }
}

void ComPortControl::TakeOption(std::uint8_t number, QByteArray &answer)
{
    Option &option = options_[number];
    // Only what changes something is answered, or both ends would answer each other for ever.
    switch (verb_) {
    case Do:
        if (!IsSupported(number)) {
            if (!std::exchange(option.isDeclined, true))
                answer += Command(Wont, number);
            return;
        }
        if (!std::exchange(option.isAsked, true))
            answer += Command(Will, number);
        option.isOurs = true;
        if (number == ComPort)
            AskForSettings(answer);
        return;
    case Dont:
        if (std::exchange(option.isOurs, false))
            answer += Command(Wont, number);
        if (number == ComPort)
            Refuse(QStringLiteral("does not let its port be controlled by RFC 2217. Where it hands on the "
                                  "plain bytes of the line, write tcp:// instead"));
        return;
    case Will:
        if (number != Binary && number != SuppressGoAhead) {
            if (!std::exchange(option.isDeclined, true))
                answer += Command(Dont, number);
            return;
        }
        if (!std::exchange(option.isWanted, true))
            answer += Command(Do, number);
        option.isTheirs = true;
        return;
    default:
        if (std::exchange(option.isTheirs, false))
            answer += Command(Dont, number);
        return;
    }
}

void ComPortControl::AskForSettings(QByteArray &answer)
{
    if (std::exchange(hasAsked_, true))
        return;
    for (const LineSetting &setting : LineSettings())
        answer += QByteArray(1, char(Iac)) + char(Sb) + char(ComPort) + char(setting.command) +
                  Doubled(setting.value) + char(Iac) + char(Se);
}

void ComPortControl::TakeSub()
{
    if (sub_.size() < 2 || std::uint8_t(sub_.at(0)) != ComPort)
        return;
    const auto &settings = LineSettings();
    const auto found = std::ranges::find_if(settings, [this](const LineSetting &setting) {
        return std::uint8_t(sub_.at(1)) == setting.command + AnswerOffset;
    });
    // Its signature, the states of its lines and half an answer are nothing to go by.
    if (found == settings.end() || sub_.size() != 2 + found->value.size() || state_ != Agreement::Pending)
        return;
    const unsigned bit = 1U << unsigned(found - settings.begin());
    if (sub_.sliced(2) == found->value) {
        confirmed_ |= bit;
        if ((confirmed_ & NeededSettings) == NeededSettings)
            state_ = Agreement::Reached;
    } else if ((bit & NeededSettings) != 0) {
        Refuse(
            QStringLiteral("does not set the line to %1 (its answer is %2); the drive speaks %3 baud, 8 data "
                           "bits, no parity, 1 stop bit. Set the port up so at the server")
                .arg(QLatin1String(found->words))
                .arg(BigEndian(sub_.sliced(2)))
                .arg(Baud));
    }
}

void ComPortControl::Refuse(const QString &whyNot)
{
    if (state_ != Agreement::Pending)
        return;
    state_ = Agreement::Refused;
    whyNot_ = whyNot;
}

QByteArray ComPortControl::Escaped(const QByteArray &bytes) const
{
    QByteArray escaped = Doubled(bytes);
    if (!options_[Binary].isOurs)
        escaped.replace('\r', QByteArray("\r\0", 2));
    return escaped;
}

} // namespace quorvik
