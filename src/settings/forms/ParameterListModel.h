#pragma once

#include "compare/ParameterSet.h"
#include "link/ValueStates.h"
#include "settings/Report.h"

#include <QAbstractTableModel>
#include <functional>
#include <optional>
#include <set>

namespace quorvik
{

class ParameterTable;

/**
 * The rows of the parameter list as they are shown, and behind the report's columns where each value comes
 * from and how old it is, in which window it stands, its unit and range, and what the open file holds.
 * Sorting stays on when the rows are replaced.
 */
class ParameterListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        NameColumn = 1,
        ValueColumn = 3,
        StateColumn = ReportColumns,
        AgeColumn,
        BlockColumn,
        UnitColumn,
        RangeColumn,
        FileColumn,
        Columns
    };
    /** The ValueState of a row, as a number. */
    static constexpr int StateRole = Qt::UserRole;

    /** @param blockOf the window in which a parameter stands. */
    ParameterListModel(const ParameterTable &table, const ValueStates &states,
                       std::function<QString(int p)> blockOf, QObject *parent);

    const QList<ReportRow> &Rows() const { return rows_; }
    void SetRows(QList<ReportRow> rows);
    /** Values and states of these parameters are other ones; the rows stay where they are. */
    void Follow(const std::set<int> &params);
    /** Time goes on. */
    void FollowAges();
    /** What the open file holds; a set that knows nothing where there is none. */
    void SetFile(ParameterSet file);
    /** What a head stands for, for whoever chooses columns. */
    static QString HeadOf(int column);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    void SortNow();
    ValueState StateOf(const ReportRow &row) const;
    /** Of the value that is shown, where it is the drive's. */
    std::optional<qint64> AgeOf(const ReportRow &row) const;
    QString TextOf(const ReportRow &row, int column) const;
    QString ToolTipOf(const ReportRow &row, int column) const;
    QString FileText(const ReportRow &row) const;

    const ParameterTable &table_;
    const ValueStates &states_;
    std::function<QString(int p)> blockOf_;
    ParameterSet file_;
    QList<ReportRow> rows_;
    int sortColumn_ = -1; ///< -1 while no column was clicked yet
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace quorvik
