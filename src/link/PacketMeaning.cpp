#include "link/PacketMeaning.h"

#include "link/PacketLayer.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"

namespace quorvik
{

namespace
{

using Kind = WireRequest::Kind;

constexpr qsizetype ReadLength = 5;
constexpr qsizetype WriteLength = 7;
constexpr int ParamAt = 2;
constexpr int ValueAt = 4;

QString NameOf(int p, const ParameterTable &table)
{
    return p <= table.UpperBound() ? table.FullName(p).trimmed() : QStringLiteral("(%1)").arg(p);
}

std::int32_t FieldAt(const QByteArray &bytes, int at, bool isUnsigned)
{
    return RetrieveData(bytes.at(at), bytes.at(at + 1), isUnsigned);
}

/** The value at this place of a packet, as p shows it. */
QString ValueAtText(const QByteArray &bytes, int at, int p, const ParameterTable &table)
{
    if (p < 0 || p > table.UpperBound())
        return QString::number(FieldAt(bytes, at, false));
    return ShownText(FieldAt(bytes, at, table.AttrBit(Attr::Long, p)), table[p].Attributes);
}

/** Of a write, the bytes tell the value. */
QString RequestText(const WireRequest &request, const QByteArray &bytes, const ParameterTable &table)
{
    switch (request.kind) {
    case Kind::Read:
        return QStringLiteral("read %1").arg(NameOf(request.param, table));
    case Kind::Next:
        return request.param < 0 ? QStringLiteral("go on with the next")
                                 : QStringLiteral("go on with the next (%1)").arg(request.param);
    case Kind::Write: {
        const QString write = QStringLiteral("write %1").arg(NameOf(request.param, table));
        return bytes.size() != WriteLength
                   ? write
                   : QStringLiteral("%1 = %2").arg(write, ValueAtText(bytes, ValueAt, request.param, table));
    }
    case Kind::Properties:
        return QStringLiteral("properties of (%1)").arg(request.param);
    case Kind::End:
        return QStringLiteral("end");
    case Kind::Unknown:
        break;
    }
    return QStringLiteral("unknown request");
}

QString AnswerText(const Packet &packet, const ParameterTable &table)
{
    const QByteArray &bytes = packet.bytes;
    const WireRequest &request = packet.request;
    const int due = request.ReplyLength();
    if (due == 0)
        return QStringLiteral("answer to what is not known");
    if (bytes.size() != due)
        return QStringLiteral("%1 of %2 bytes").arg(bytes.size()).arg(due);
    if (!request.IsAnsweredBy(bytes))
        return QStringLiteral("wrong check");
    const QString number =
        request.param < 0 ? QStringLiteral("value") : QStringLiteral("(%1)").arg(request.param);
    switch (request.kind) {
    case Kind::Write:
        return bytes.at(0) == Wire::Ack ? QStringLiteral("taken") : QStringLiteral("refused");
    case Kind::Properties: {
        const QString limits =
            QStringLiteral("%1 to %2").arg(FieldAt(bytes, 2, false)).arg(FieldAt(bytes, 4, false));
        return request.param == Param::FirstSelector
                   ? QStringLiteral("last parameter %1").arg(FieldAt(bytes, 4, false))
                   : QStringLiteral("properties of %1: %2").arg(number, limits);
    }
    default:
        return QStringLiteral("%1 = %2").arg(number, ValueAtText(bytes, 2, request.param, table));
    }
}

} // namespace

int WireRequest::ReplyLength() const
{
    switch (kind) {
    case Kind::Read:
    case Kind::Next:
        return Wire::ReadReplyLength;
    case Kind::Write:
        return Wire::WriteReplyLength;
    case Kind::Properties:
        return Wire::PropertiesReplyLength;
    case Kind::Unknown:
    case Kind::End:
        break;
    }
    return 0;
}

bool WireRequest::IsAnsweredBy(const QByteArray &bytes) const
{
    // The single byte behind a write has no check character.
    return bytes.size() == ReplyLength() && (kind == Kind::Write || IsBccGood(bytes));
}

WireRequest DecodeRequest(const QByteArray &bytes, const WireRequest &before)
{
    if (bytes.size() == 1 && bytes.at(0) == Wire::Eot)
        return {Kind::End};
    if (bytes.size() == 1 && bytes.at(0) == Wire::Ack) {
        const bool isRun = before.kind == Kind::Read || before.kind == Kind::Next;
        return {Kind::Next, isRun && before.param >= 0 ? before.param + 1 : -1};
    }
    if (bytes.size() < ReadLength || bytes.at(0) != Wire::Stx)
        return {};
    const int param = FieldAt(bytes, ParamAt, true);
    switch (Wire::Command(bytes.at(1))) {
    case Wire::Command::Read:
        return {Kind::Read, param};
    case Wire::Command::Write:
        return {bytes.size() == WriteLength ? Kind::Write : Kind::Unknown, param};
    case Wire::Command::ReadProperties:
        return {Kind::Properties, param};
    }
    return {};
}

Packet::Kind Packet::KindOf() const
{
    switch (source) {
    case Source::Program:
        return Kind::Request;
    case Source::Drive:
        // Where the request is not known, nobody can say that something is wrong.
        return request.ReplyLength() == 0 || request.IsAnsweredBy(bytes) ? Kind::Answer : Kind::Fault;
    case Source::Unawaited:
    case Source::Silence:
        break;
    }
    return Kind::Fault;
}

QString AskedText(const WireRequest &request, const ParameterTable &table)
{
    const bool isValue = request.kind == Kind::Next && request.param >= 0;
    return RequestText(isValue ? WireRequest{Kind::Read, request.param} : request, {}, table);
}

QString MeaningOf(const Packet &packet, const ParameterTable &table)
{
    switch (packet.source) {
    case Packet::Source::Program:
        return RequestText(packet.request, packet.bytes, table);
    case Packet::Source::Drive:
        return AnswerText(packet, table);
    case Packet::Source::Unawaited:
        return QStringLiteral("not awaited");
    case Packet::Source::Silence:
        break;
    }
    return QStringLiteral("no answer: %1").arg(AskedText(packet.request, table));
}

} // namespace quorvik
