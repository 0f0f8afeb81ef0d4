#include "history/forms/HistoryModel.h"

#include "history/HistoryTexts.h"

#include <QElapsedTimer>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Results come within that time, and so does what another program has begun to write. */
constexpr qint64 SettledAfterMs = 600000;

/** A search keeps nothing else waiting: it takes so long at once, in milliseconds. */
constexpr qint64 LongestSearchMs = 10;
constexpr qint64 FirstPiece = 2000; ///< ids
constexpr qint64 LeastPiece = 200;
constexpr qint64 MostPiece = 1000000;

} // namespace

HistoryModel::HistoryModel(JournalReader &reader, QObject *parent)
    : QAbstractItemModel(parent)
    , reader_(reader)
    , minutesNow_(JournalTime::Now().offsetMinutes)
{
}

HistoryModel::~HistoryModel() = default;

HistoryModel::Node *HistoryModel::NodeOf(const QModelIndex &index)
{
    return static_cast<Node *>(index.internalPointer());
}

int HistoryModel::PositionOf(const Node *node) const
{
    if (node->kind == Node::Kind::Row)
        return node->position;
    if (node->kind == Node::Kind::Run)
        return int(std::ranges::find(runs_, node, &std::unique_ptr<Node>::get) - runs_.begin());
    const auto &siblings = node->above->below;
    const auto isNewer = [node](const auto &other) { return other->action.id > node->action.id; };
    return int(std::ranges::partition_point(siblings, isNewer) - siblings.begin());
}

QModelIndex HistoryModel::IndexOf(const Node *node) const
{
    return node ? createIndex(PositionOf(node), 0, node) : QModelIndex();
}

const std::vector<ShownRow> &HistoryModel::RowsOf(Node &action) const
{
    if (!action.isRead) {
        action.rows = reader_.RowsOf(action.action, filter_);
        action.isRead = true;
    }
    return action.rows;
}

std::vector<ShownAction> HistoryModel::ReadActions(const JournalFilter &filter, qint64 beforeId)
{
    std::vector<ShownAction> page = reader_.Actions(filter, beforeId, Page);
    failure_ = reader_.Failure();
    return page;
}

std::vector<ShownAction> HistoryModel::ReadPiece()
{
    JournalFilter piece = filter_;
    piece.fromId = std::max(qint64(1), searchedTo_ - piece_);
    QElapsedTimer taken;
    taken.start();
    std::vector<ShownAction> page = ReadActions(piece, searchedTo_);
    if (!failure_.isEmpty()) {
        searchedTo_ = 0;
        return {};
    }
    searchedTo_ = int(page.size()) == Page ? page.back().id : piece.fromId;
    if (taken.elapsed() > LongestSearchMs)
        piece_ = std::max(LeastPiece, piece_ / 2);
    else if (taken.elapsed() < LongestSearchMs / 2)
        piece_ = std::min(MostPiece, piece_ * 2);
    return page;
}

void HistoryModel::SetFilter(const JournalFilter &filter)
{
    beginResetModel();
    runs_.clear();
    filter_ = filter;
    piece_ = FirstPiece;
    const std::vector<ShownAction> newest = reader_.Actions({}, 0, 1);
    searchedTo_ = newest.empty() ? 0 : newest.front().id + 1;
    failure_ = reader_.Failure();
    const std::vector<ShownAction> page = HasOlder() ? ReadPiece() : std::vector<ShownAction>();
    for (const ShownAction &action : page) {
        auto known =
            std::ranges::find_if(runs_, [&action](const auto &run) { return run->run.id == action.run.id; });
        if (known == runs_.end())
            known = runs_.insert(known, std::make_unique<Node>(Node{.run = action.run}));
        Node *run = known->get();
        run->below.push_back(
            std::make_unique<Node>(Node{.kind = Node::Kind::Action, .above = run, .action = action}));
    }
    endResetModel();
}

HistoryModel::Node *HistoryModel::RunOf(const JournalRun &run, bool isNewest)
{
    const auto known =
        std::ranges::find_if(runs_, [&run](const auto &other) { return other->run.id == run.id; });
    if (known != runs_.end())
        return known->get();
    const int position = isNewest ? 0 : int(runs_.size());
    beginInsertRows({}, position, position);
    const auto added = runs_.insert(runs_.begin() + position, std::make_unique<Node>(Node{.run = run}));
    endInsertRows();
    return added->get();
}

void HistoryModel::Insert(const ShownAction &action, bool isNewest)
{
    Node *run = RunOf(action.run, isNewest);
    auto added = std::make_unique<Node>(Node{.kind = Node::Kind::Action, .above = run, .action = action});
    const int position = PositionOf(added.get());
    beginInsertRows(IndexOf(run), position, position);
    run->below.insert(run->below.begin() + position, std::move(added));
    endInsertRows();
}

void HistoryModel::InsertPage(const std::vector<ShownAction> &page)
{
    // Most of a page is of one run: a few insertions, not one for each line.
    for (auto next = page.begin(); next != page.end();) {
        const auto end = std::find_if(next, page.end(),
                                      [&](const ShownAction &other) { return other.run.id != next->run.id; });
        Node *run = RunOf(next->run, false);
        const int position = int(run->below.size());
        beginInsertRows(IndexOf(run), position, position + int(end - next) - 1);
        for (; next != end; ++next)
            run->below.push_back(
                std::make_unique<Node>(Node{.kind = Node::Kind::Action, .above = run, .action = *next}));
        endInsertRows();
    }
}

void HistoryModel::FetchOlder()
{
    if (HasOlder())
        InsertPage(ReadPiece());
}

HistoryModel::Node *HistoryModel::Find(const ShownAction &action) const
{
    const auto run =
        std::ranges::find_if(runs_, [&action](const auto &other) { return other->run.id == action.run.id; });
    if (run == runs_.end())
        return nullptr;
    const auto &actions = (*run)->below;
    const auto found = std::ranges::partition_point(
        actions, [&action](const auto &other) { return other->action.id > action.id; });
    return found != actions.end() && (*found)->action.id == action.id ? found->get() : nullptr;
}

void HistoryModel::Remove(Node *action)
{
    Node *run = action->above;
    const int position = PositionOf(action);
    beginRemoveRows(IndexOf(run), position, position);
    run->below.erase(run->below.begin() + position);
    endRemoveRows();
    if (!run->below.empty())
        return;
    const int place = PositionOf(run);
    beginRemoveRows({}, place, place);
    runs_.erase(runs_.begin() + place);
    endRemoveRows();
}

void HistoryModel::Update(Node *action, const ShownAction &now)
{
    const QModelIndex line = IndexOf(action);
    const int shown = int(action->below.size());
    action->action = now;
    action->isRead = false;
    Q_EMIT dataChanged(line, line.siblingAtColumn(Columns - 1));
    if (shown > 0 && int(RowsOf(*action).size()) != shown) {
        beginRemoveRows(line, 0, shown - 1);
        action->below.clear();
        endRemoveRows();
        fetchMore(line);
    } else if (shown > 0) {
        Q_EMIT dataChanged(index(0, 0, line), index(shown - 1, Columns - 1, line));
    }
}

void HistoryModel::FollowJournal()
{
    if (!failure_.isEmpty()) {
        SetFilter(filter_);
        return;
    }
    // A clock that was set back must hide nothing.
    const qint64 nowMs = JournalTime::Now().utcMs;
    qint64 newestMs = runs_.empty() ? nowMs : 0;
    for (const auto &run : runs_)
        newestMs = std::max(newestMs, run->below.front()->action.action.time.utcMs);
    JournalFilter recent = filter_;
    recent.sinceUtcMs = std::max(filter_.sinceUtcMs, std::min(newestMs, nowMs) - SettledAfterMs);
    // What is older comes as it is searched.
    recent.fromId = searchedTo_;
    std::vector<ShownAction> now;
    while (true) {
        const std::vector<ShownAction> page = ReadActions(recent, now.empty() ? 0 : now.back().id);
        if (!failure_.isEmpty())
            return;
        now.insert(now.end(), page.begin(), page.end());
        if (int(page.size()) < Page)
            break;
    }

    std::vector<Node *> gone;
    for (const auto &run : runs_)
        for (const auto &action : run->below)
            if (action->action.action.time.utcMs >= recent.sinceUtcMs &&
                std::ranges::find(now, action->action.id, &ShownAction::id) == now.end())
                gone.push_back(action.get());
    for (Node *action : gone)
        Remove(action);
    // The oldest first, so that a new run goes over the ones before it.
    std::ranges::reverse(now);
    for (const ShownAction &action : now) {
        if (Node *known = Find(action))
            Update(known, action);
        else
            Insert(action, true);
    }
}

bool HistoryModel::IsRun(const QModelIndex &index) const
{
    return index.isValid() && NodeOf(index)->kind == Node::Kind::Run;
}

const ShownAction *HistoryModel::ActionAt(const QModelIndex &index) const
{
    if (!index.isValid() || IsRun(index))
        return nullptr;
    const Node *node = NodeOf(index);
    return &(node->kind == Node::Kind::Row ? node->above : node)->action;
}

const ShownRow *HistoryModel::RowAt(const QModelIndex &index) const
{
    if (!index.isValid() || IsRun(index))
        return nullptr;
    Node *node = NodeOf(index);
    if (node->kind == Node::Kind::Action && !HistoryTexts::IsOneLine(node->action))
        return nullptr;
    const std::vector<ShownRow> &rows = RowsOf(node->kind == Node::Kind::Row ? *node->above : *node);
    // A row that has just gone out of the filter is shown no more with the next following.
    return node->position < int(rows.size()) ? &rows[std::size_t(node->position)] : nullptr;
}

std::vector<ShownRow> HistoryModel::RowsAt(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    if (const ShownRow *row = RowAt(index))
        return {*row};
    Node *node = NodeOf(index);
    if (node->kind == Node::Kind::Action)
        return RowsOf(*node);
    std::vector<ShownRow> rows;
    for (const auto &action : node->below) {
        const std::vector<ShownRow> &more = RowsOf(*action);
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

QModelIndex HistoryModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || column >= Columns || row >= rowCount(parent))
        return {};
    const auto &nodes = parent.isValid() ? NodeOf(parent)->below : runs_;
    return createIndex(row, column, nodes[std::size_t(row)].get());
}

QModelIndex HistoryModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? IndexOf(NodeOf(index)->above) : QModelIndex();
}

int HistoryModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    return int((parent.isValid() ? NodeOf(parent)->below : runs_).size());
}

int HistoryModel::columnCount(const QModelIndex &) const
{
    return Columns;
}

bool HistoryModel::hasChildren(const QModelIndex &parent) const
{
    const Node *node = parent.isValid() ? NodeOf(parent) : nullptr;
    if (!node || node->kind != Node::Kind::Action)
        return rowCount(parent) > 0;
    return parent.column() == 0 && node->action.rowCount > 0 && !HistoryTexts::IsOneLine(node->action);
}

bool HistoryModel::canFetchMore(const QModelIndex &parent) const
{
    return parent.isValid() && hasChildren(parent) && NodeOf(parent)->below.empty();
}

void HistoryModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    Node *action = NodeOf(parent);
    const int count = int(RowsOf(*action).size());
    if (count == 0)
        return;
    beginInsertRows(parent, 0, count - 1);
    for (int position = 0; position < count; ++position)
        action->below.push_back(
            std::make_unique<Node>(Node{.kind = Node::Kind::Row, .above = action, .position = position}));
    endInsertRows();
}

} // namespace quorvik
