#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>

namespace quorvik
{

class ParameterTable;

/** What the program has sent, as its bytes tell. */
struct WireRequest {
    enum class Kind : std::uint8_t { Unknown, Read, Next, Write, Properties, End };

    Kind kind = Kind::Unknown;
    int param = -1; ///< -1 where the bytes do not tell, and those before neither

    /** Bytes of its answer, 0 for what is not answered. */
    int ReplyLength() const;
    /** Whether bytes are an answer to it, as long as it must be and with the right check character. */
    bool IsAnsweredBy(const QByteArray &bytes) const;
};

/** @param before what was sent before it: a single byte asks for the parameter behind the last one. */
WireRequest DecodeRequest(const QByteArray &bytes, const WireRequest &before);

/** Bytes that passed the line together, or their absence. */
struct Packet {
    enum class Source : std::uint8_t {
        Program,
        Drive,     ///< while an answer was awaited
        Unawaited, ///< from the drive as well, and thrown away
        Silence,   ///< the answer that did not come
    };
    enum class Kind : std::uint8_t { Request, Answer, Fault };

    Source source = Source::Program;
    qint64 wallMs = 0;        ///< since 1970
    qint64 tookUs = -1;       ///< of an answer: since its request
    QByteArray bytes = {};    ///< none for a silence
    WireRequest request = {}; ///< itself, or what it belongs to

    Kind KindOf() const;
};

/** What was asked, whichever bytes asked for it: "read (226) Fwd Accel A". */
QString AskedText(const WireRequest &request, const ParameterTable &table);
/** A packet in words: "(226) = 5.0 Sec", "3 of 5 bytes". Values are shown in the table's units. */
QString MeaningOf(const Packet &packet, const ParameterTable &table);

} // namespace quorvik
