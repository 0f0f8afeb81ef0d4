#include "link/LinkReport.h"

#include "link/LinkStatistics.h"
#include "link/PacketMeaning.h"

#include <QDateTime>
#include <algorithm>

namespace quorvik
{

namespace
{

/** What is not known, or has not happened. */
const QString &None()
{
    static const QString none = QStringLiteral("-");
    return none;
}

QString TimeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString Fixed(std::optional<double> value)
{
    return value ? QString::number(*value, 'f', 1) : None();
}

QString Milliseconds(std::optional<double> value)
{
    return value ? Fixed(value) + QStringLiteral(" ms") : None();
}

/** With its share of the requests. */
QString Share(qint64 count, qint64 requests)
{
    if (count == 0 || requests == 0)
        return QString::number(count);
    const double percent = 100.0 * double(count) / double(requests);
    return QStringLiteral("%1 (%2 %)").arg(count).arg(QString::number(percent, 'f', percent < 1 ? 2 : 1));
}

QString RateText(const LinkStatistics &statistics)
{
    const QString whole = Fixed(statistics.AnswerRate());
    const std::optional<double> recent = statistics.RecentAnswerRate();
    return recent ? QStringLiteral("%1 (%2 overall)").arg(Fixed(recent), whole) : whole;
}

QString DirectionText(Packet::Source source)
{
    if (source == Packet::Source::Silence)
        return {};
    return source == Packet::Source::Program ? QStringLiteral("to drive") : QStringLiteral("from drive");
}

} // namespace

namespace
{

QString NetworkSentence(const LinkStatistics &statistics)
{
    const std::optional<LinkStatistics::Network> network = statistics.OverNetwork();
    if (!network)
        return {};
    return QStringLiteral(" Over the network, at %1: an answer takes %2 ms, and is waited for %3 ms.")
        .arg(network->address)
        .arg(network->replyMs, 0, 'f', 1)
        .arg(network->timeoutMs);
}

} // namespace

QString StateSentence(const LinkStatistics &statistics)
{
    const QString of = QStringLiteral(" These are the figures of the connection that began at %1.");
    switch (statistics.StateOf()) {
    case LinkStatistics::State::OnLine:
        return QStringLiteral("On line since %1.").arg(TimeText(statistics.Since())) +
               NetworkSentence(statistics);
    case LinkStatistics::State::Ended:
        return QStringLiteral("Off line since %1.").arg(TimeText(statistics.Until())) +
               of.arg(TimeText(statistics.Since())) + NetworkSentence(statistics);
    case LinkStatistics::State::Lost:
        return QStringLiteral("The link was lost at %1.").arg(TimeText(statistics.Until())) +
               of.arg(TimeText(statistics.Since())) + NetworkSentence(statistics);
    case LinkStatistics::State::Never:
        break;
    }
    return QStringLiteral("Not on line since the program was started.");
}

QList<LinkFigure> Figures(const LinkStatistics &statistics)
{
    const LinkStatistics::Counts &totals = statistics.Totals();
    const auto share = [&totals](qint64 count) { return Share(count, totals.requests); };
    return {
        {"LabelRequests", QStringLiteral("Requests"),
         QStringLiteral("%1 (%2 write%3)")
             .arg(totals.requests)
             .arg(totals.writes)
             .arg(totals.writes == 1 ? QString() : QStringLiteral("s"))},
        {"LabelRate", QStringLiteral("Answers a second"), RateText(statistics)},
        {"LabelMedian", QStringLiteral("Median answer time"), Milliseconds(statistics.AnswerTime(50))},
        {"LabelPercentile", QStringLiteral("99th percentile"), Milliseconds(statistics.AnswerTime(99))},
        {"LabelRefusals", QStringLiteral("Refused writes"), QString::number(totals.refusals)},
        {"LabelRepeats", QStringLiteral("Repeats"), share(totals.repeats)},
        {"LabelWrongChecks", QStringLiteral("Wrong checks"), share(totals.wrongChecks)},
        {"LabelWrongLengths", QStringLiteral("Wrong lengths"), share(totals.wrongLengths)},
        {"LabelSilences", QStringLiteral("Silences"), share(totals.silences)},
        {"LabelUnawaited", QStringLiteral("Not awaited"), share(totals.unawaited)},
    };
}

QStringList SilenceLines(const LinkStatistics &statistics, const ParameterTable &table)
{
    QStringList lines;
    for (const LinkStatistics::Silence &silence : statistics.Silences()) {
        // Of the day on which the link came up, the time says enough.
        const bool isOtherDay = silence.at.date() != statistics.Since().date();
        const QString time =
            isOtherDay ? TimeText(silence.at) : silence.at.toString(QStringLiteral("HH:mm:ss"));
        lines.prepend(time + QStringLiteral("  ") + AskedText(silence.request, table));
    }
    return lines;
}

QString HeadOf(PacketColumn column)
{
    static const QString heads[] = {QStringLiteral("Time"), QStringLiteral("Direction"),
                                    QStringLiteral("Bytes"), QStringLiteral("After"),
                                    QStringLiteral("Meaning")};
    return heads[std::size_t(column)];
}

QString TextOf(const Packet &packet, PacketColumn column, const ParameterTable &table)
{
    switch (column) {
    case PacketColumn::Time:
        return QDateTime::fromMSecsSinceEpoch(packet.wallMs).toString(QStringLiteral("HH:mm:ss.zzz"));
    case PacketColumn::Direction:
        return DirectionText(packet.source);
    case PacketColumn::Bytes:
        return QString::fromLatin1(packet.bytes.toHex(' ').toUpper());
    case PacketColumn::After:
        return packet.tookUs < 0 ? QString() : Milliseconds(double(packet.tookUs) / 1000);
    case PacketColumn::Meaning:
        break;
    }
    return MeaningOf(packet, table);
}

QByteArray LinkReport(const LinkStatistics &statistics, const QList<Packet> &packets,
                      const ParameterTable &table)
{
    QString text = StateSentence(statistics) + QStringLiteral("\n\n");
    const QList<LinkFigure> figures = Figures(statistics);
    for (const LinkFigure &figure : figures)
        text += QStringLiteral("%1 %2\n").arg(figure.caption + u':', -20).arg(figure.text);
    for (const QString &line : SilenceLines(statistics, table))
        text += QStringLiteral("Silence at %1\n").arg(line);
    text += QStringLiteral("\nPackets: %1\n").arg(packets.size());
    const auto addRow = [&text](const auto &textOf) {
        using enum PacketColumn;
        text += QStringLiteral("%1  %2  %3  %4  ")
                    .arg(textOf(Time), -12)
                    .arg(textOf(Direction), -10)
                    .arg(textOf(Bytes), -38)
                    .arg(textOf(After), 9);
        text += textOf(Meaning) + u'\n';
    };
    addRow(HeadOf);
    for (const Packet &packet : packets)
        addRow([&](PacketColumn column) { return TextOf(packet, column, table); });
    return text.toUtf8();
}

} // namespace quorvik
