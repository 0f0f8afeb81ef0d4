#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvik
{

class LinkStatistics;
class ParameterTable;
struct Packet;

/** A figure of the link in words. */
struct LinkFigure {
    const char *name; ///< as controls are called after it
    QString caption;
    QString text;
};

/** Which connection the figures are of. */
QString StateSentence(const LinkStatistics &statistics);
/** The figures in their order; those of answers come first, those of failures from FirstFailure on. */
QList<LinkFigure> Figures(const LinkStatistics &statistics);
inline constexpr int FirstFailure = 5;
/** A line for each silence that is known, the newest first. */
QStringList SilenceLines(const LinkStatistics &statistics, const ParameterTable &table);

enum class PacketColumn { Time, Direction, Bytes, After, Meaning };
inline constexpr int PacketColumns = 5;
QString HeadOf(PacketColumn column);
/** After is the time since the request. */
QString TextOf(const Packet &packet, PacketColumn column, const ParameterTable &table);

/** All of it as text, a line each; the columns of the packets stand below each other. */
QByteArray LinkReport(const LinkStatistics &statistics, const QList<Packet> &packets,
                      const ParameterTable &table);

} // namespace quorvik
