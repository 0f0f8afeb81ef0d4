#pragma once

#include "find/forms/FindHost.h"

#include <QAbstractTableModel>
#include <set>

namespace quorvik
{

struct Desk;

/** The rows that were found, with the values and states that they have now. */
class FindModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { KindColumn, TitleColumn, ValueColumn, StateColumn, PlaceColumn, Columns };

    FindModel(const Desk &desk, const FindHost &host, FindIndex index, QObject *parent);

    const FindIndex &Index() const { return index_; }
    /** @param query what they were found by; empty where they were not searched for. */
    void SetEntries(std::vector<int> entries, const QString &query);
    /** @param row one of the model. */
    const FindEntry &EntryAt(int row) const { return index_.At(entries_[std::size_t(row)]); }
    /** A row in words, as it is read out. */
    QString Spoken(int row) const;

    /** Values and states of these parameters are other ones. */
    void Follow(const std::set<int> &params);
    /** What commands can be chosen is another matter on line than off line. */
    void FollowCommands();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    /** Not shown, but read out. */
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString TextOf(int row, int column) const;
    bool CanBeChosen(const FindEntry &entry) const;
    QString ToolTipOf(const FindEntry &entry) const;

    const Desk &desk_;
    const FindHost &host_;
    const FindIndex index_;
    std::vector<int> entries_;
    QString query_;
};

} // namespace quorvik
