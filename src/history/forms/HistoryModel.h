#pragma once

#include "history/JournalReader.h"

#include <QAbstractItemModel>
#include <memory>

namespace quorvik
{

/**
 * The journal as a tree: runs, in each its actions with the newest first, in each the rows that it changed;
 * the change of one value alone is one line. Actions are read by pages, and rows when they are looked at.
 */
class HistoryModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column {
        TimeColumn,
        OriginColumn,
        WhatColumn,
        FromColumn,
        ToColumn,
        ResultColumn,
        SetColumn,
        DriveColumn,
        Columns
    };
    static constexpr int Page = 200; ///< actions

    HistoryModel(JournalReader &reader, QObject *parent);
    ~HistoryModel() override;

    /** Begins anew, with the newest ones. */
    void SetFilter(const JournalFilter &filter);
    const JournalFilter &Filter() const { return filter_; }
    /** Takes up what is new, and what became of the entries of the last minutes. */
    void FollowJournal();

    /** The view asks for older ones by these, again and again until it has enough. By canFetchMore() it would
     * do so at each new layout, which each page brings about, and read all there is. */
    bool HasOlder() const { return searchedTo_ > 1; }
    /** Reads a page, or searches so much of the journal as takes no time: of what filters seldom show it may
     * find nothing. */
    void FetchOlder();

    /** Why the journal could not be read the last time; empty where it could. */
    const QString &Failure() const { return failure_; }

    bool IsRun(const QModelIndex &index) const;
    /** The action that a line is or belongs to; null for a run. */
    const ShownAction *ActionAt(const QModelIndex &index) const;
    /** The change of one value; null for a line that is more or less than that. */
    const ShownRow *RowAt(const QModelIndex &index) const;
    /** All changes of a line, also of those below it that have not been looked at. */
    std::vector<ShownRow> RowsAt(const QModelIndex &index) const;
    /** A line in words, as it is read out and copied. */
    QString Spoken(const QModelIndex &index) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    /** A line. */
    struct Node {
        enum class Kind { Run, Action, Row };

        Kind kind = Kind::Run;
        Node *above = nullptr; ///< null for a run
        std::vector<std::unique_ptr<Node>> below = {};
        JournalRun run = {};             ///< of a run
        ShownAction action = {};         ///< of an action
        bool isRead = false;             ///< whether its rows are
        std::vector<ShownRow> rows = {}; ///< of an action
        int position = 0;                ///< of a row
    };

    static Node *NodeOf(const QModelIndex &index);
    QModelIndex IndexOf(const Node *node) const;
    int PositionOf(const Node *node) const;
    /** The changes of an action, read when they are wanted first. */
    const std::vector<ShownRow> &RowsOf(Node &action) const;
    std::vector<ShownAction> ReadActions(const JournalFilter &filter, qint64 beforeId);
    /** What FetchOlder() reads. */
    std::vector<ShownAction> ReadPiece();
    /** @param isNewest whether a run that is not here yet goes to the top. */
    Node *RunOf(const JournalRun &run, bool isNewest);
    void Insert(const ShownAction &action, bool isNewest);
    void InsertPage(const std::vector<ShownAction> &page);
    void Remove(Node *action);
    void Update(Node *action, const ShownAction &now);
    Node *Find(const ShownAction &action) const;
    QString TextOf(const QModelIndex &index) const;
    QString ToolTipOf(const QModelIndex &index) const;

    JournalReader &reader_;
    JournalFilter filter_;
    std::vector<std::unique_ptr<Node>> runs_; ///< the one with the newest action first
    qint64 searchedTo_ = 0;                   ///< actions from this id on were looked at
    qint64 piece_ = 0;                        ///< so many ids are searched at once
    QString failure_;
    int minutesNow_; ///< what the computer's zone adds to UTC
};

} // namespace quorvik
