#pragma once

#include "compare/Differences.h"

#include <QAbstractTableModel>
#include <QSet>
#include <QSortFilterProxyModel>
#include <map>

namespace quorvik
{

/** The rows of a comparison as they are shown: all of them, with the user's ticks and what was said to a row.
 */
class DifferenceModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    enum class Column { Number, Name, Block, Side, Difference, Kind, Note };
    /** What sorting goes by: numbers by their value, kinds with what differs first. */
    static constexpr int SortRole = Qt::UserRole;

    /** @param names of the sides, as many as each row has. */
    void SetRows(std::vector<DifferenceRow> rows, const QStringList &names);
    const std::vector<DifferenceRow> &Rows() const { return rows_; }
    const DifferenceRow &Row(int row) const { return rows_[std::size_t(row)]; }

    bool IsTicked(int param) const { return ticked_.contains(param); }
    void Tick(const QList<int> &params, bool isTicked);
    /** By parameter, why its value was not taken; shown until the next call. */
    void SetRefusals(std::map<int, QString> reasons);

    Column ColumnAt(int section) const;
    int SectionOf(Column column) const; ///< its first one
    int SideOf(int section) const;      ///< of a column of a side

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void TicksChanged();

private:
    int Sides() const { return int(names_.size()); }
    void TellAll();
    QString Text(const DifferenceRow &row, int section) const;
    QVariant SortKey(const DifferenceRow &row, int section) const;
    QString Note(const DifferenceRow &row) const;
    QString Head(int section) const;

    std::vector<DifferenceRow> rows_;
    QStringList names_;
    QSet<int> ticked_;
    std::map<int, QString> refusals_;
};

/** The rows that a filter lets through, sorted. */
class DifferenceProxy : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit DifferenceProxy(DifferenceModel *model);

    const DifferenceFilter &Filter() const { return filter_; }
    void SetFilter(const DifferenceFilter &filter);
    /** The rows shown, in their order. */
    std::vector<DifferenceRow> Shown() const;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    DifferenceModel *model_;
    DifferenceFilter filter_;
};

} // namespace quorvik
