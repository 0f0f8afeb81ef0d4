#pragma once

#include "link/PacketMeaning.h"

#include <QAbstractTableModel>
#include <QFont>
#include <deque>
#include <optional>

namespace quorvik
{

class PacketLog;
class ParameterTable;

/** Which packets are shown. */
struct PacketFilter {
    QString text;                     ///< stands anywhere in the row; empty for any
    std::optional<Packet::Kind> kind; ///< none for all
};

/** The packets of the log that the filter lets through, the oldest first. It follows the log when it is told
 * to, and words are made of those rows only that are looked at. */
class PacketModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    PacketModel(const PacketLog &log, const ParameterTable &table, QObject *parent);

    void SetFilter(const PacketFilter &filter);
    /** Takes over what has come and gone since. @return how many rows went from the beginning. */
    int Follow();
    QList<Packet> Shown() const;
    /** All digits of it are as wide. */
    static QFont BytesFont();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool IsShown(const Packet &packet) const;
    /** Those from the number on that the filter lets through. */
    std::deque<qint64> Passing(qint64 from) const;

    const PacketLog &log_;
    const ParameterTable &table_;
    PacketFilter filter_;
    std::deque<qint64> shown_; ///< their numbers in the log
    qint64 seen_ = 0;          ///< up to which the log was looked through
};

} // namespace quorvik
