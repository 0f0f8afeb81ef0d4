#include "link/forms/PacketModel.h"

#include "link/LinkReport.h"
#include "link/PacketLog.h"
#include "model/ParameterTable.h"

#include <QFontDatabase>
#include <algorithm>

namespace quorvik
{

PacketModel::PacketModel(const PacketLog &log, const ParameterTable &table, QObject *parent)
    : QAbstractTableModel(parent)
    , log_(log)
    , table_(table)
{
}

bool PacketModel::IsShown(const Packet &packet) const
{
    if (filter_.kind && packet.KindOf() != *filter_.kind)
        return false;
    bool isFound = filter_.text.isEmpty();
    for (int column = 0; column < PacketColumns && !isFound; ++column)
        isFound = TextOf(packet, PacketColumn(column), table_).contains(filter_.text, Qt::CaseInsensitive);
    return isFound;
}

std::deque<qint64> PacketModel::Passing(qint64 from) const
{
    std::deque<qint64> numbers;
    for (qint64 number = std::max(from, log_.First()); number < log_.End(); ++number)
        if (IsShown(log_.At(number)))
            numbers.push_back(number);
    return numbers;
}

void PacketModel::SetFilter(const PacketFilter &filter)
{
    beginResetModel();
    filter_ = filter;
    shown_ = Passing(0);
    seen_ = log_.End();
    endResetModel();
}

int PacketModel::Follow()
{
    const int gone = int(std::ranges::lower_bound(shown_, log_.First()) - shown_.begin());
    if (gone > 0) {
        beginRemoveRows({}, 0, gone - 1);
        shown_.erase(shown_.begin(), shown_.begin() + gone);
        endRemoveRows();
    }
    const std::deque<qint64> come = Passing(seen_);
    seen_ = log_.End();
    if (!come.empty()) {
        beginInsertRows({}, rowCount(), rowCount() + int(come.size()) - 1);
        shown_.insert(shown_.end(), come.begin(), come.end());
        endInsertRows();
    }
    return gone;
}

QList<Packet> PacketModel::Shown() const
{
    QList<Packet> packets;
    for (const qint64 number : shown_)
        if (number >= log_.First())
            packets.append(log_.At(number));
    return packets;
}

QFont PacketModel::BytesFont()
{
    static const QString family = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    QFont font;
    font.setFamily(family);
    return font;
}

int PacketModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(shown_.size());
}

int PacketModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : PacketColumns;
}

QVariant PacketModel::data(const QModelIndex &index, int role) const
{
    const qint64 number = index.isValid() ? shown_[std::size_t(index.row())] : -1;
    // The log may have let it go since.
    if (number < log_.First())
        return {};
    const Packet &packet = log_.At(number);
    const auto column = PacketColumn(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return TextOf(packet, column, table_);
    case Qt::TextAlignmentRole:
        if (column == PacketColumn::After)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    case Qt::FontRole: {
        if (column != PacketColumn::Bytes && packet.KindOf() != Packet::Kind::Fault)
            return {};
        QFont font = column == PacketColumn::Bytes ? BytesFont() : QFont();
        font.setBold(packet.KindOf() == Packet::Kind::Fault);
        return font;
    }
    default:
        return {};
    }
}

QVariant PacketModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return HeadOf(PacketColumn(section));
    if (role == Qt::TextAlignmentRole)
        return QVariant((PacketColumn(section) == PacketColumn::After ? Qt::AlignRight : Qt::AlignLeft) |
                        Qt::AlignVCenter);
    return {};
}

} // namespace quorvik
