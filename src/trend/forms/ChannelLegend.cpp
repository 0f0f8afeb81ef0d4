#include "trend/forms/ChannelLegend.h"

#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendView.h"
#include "trend/forms/ChannelModel.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QCompleter>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

/** Widths in characters; the name takes what is left. */
constexpr std::array<int, ChannelModel::Columns> Characters = {34, 14, 12, 12, 12, 11, 6, 10, 6};
constexpr int NamesInSight = 12;

} // namespace

ChannelLegend::ChannelLegend(const ParameterTable &table, TrendRecorder &recorder, TrendView &view,
                             std::function<QColor(int)> colourOf, QWidget *parent)
    : QWidget(parent)
    , table_(table)
    , recorder_(recorder)
    , view_(view)
    , model_(new ChannelModel(recorder, view, std::move(colourOf), this))
    , tableChannels_(new QTableView(this))
    , textAdd_(new QLineEdit(this))
{
    MakeTable();
    textAdd_->setObjectName(QStringLiteral("TextAddChannel"));
    textAdd_->setAccessibleName(QStringLiteral("Add a channel by name or number"));
    textAdd_->setPlaceholderText(QStringLiteral("Name or number of a parameter"));
    textAdd_->setToolTip(QStringLiteral("Enter adds it. A value box can be dragged onto a plot as well."));
    auto *completer = new QCompleter(&names_, this);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setMaxVisibleItems(NamesInSight);
    textAdd_->setCompleter(completer);
    auto *label = new QLabel(QStringLiteral("A&dd a channel:"), this);
    label->setObjectName(QStringLiteral("LabelAddChannel"));
    label->setBuddy(textAdd_);
    auto *remove = new QPushButton(QStringLiteral("Remove"), this);
    remove->setObjectName(QStringLiteral("CommandRemoveChannel"));
    remove->setToolTip(QStringLiteral("Takes the selected channel out (Delete)"));

    auto *adding = new QHBoxLayout;
    adding->addWidget(label);
    adding->addWidget(textAdd_, 1);
    adding->addWidget(remove);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tableChannels_, 1);
    layout->addLayout(adding);

    // The list of names puts its choice into the field only after it has told of it.
    const auto addSoon = [this] { QTimer::singleShot(0, this, [this] { Guarded([this] { AddTyped(); }); }); };
    On(textAdd_, &QLineEdit::returnPressed, this, addSoon);
    On(completer, qOverload<const QString &>(&QCompleter::activated), this, addSoon);
    On(remove, &QPushButton::clicked, this, [this] { RemoveCurrent(); });
    On(model_, &ChannelModel::Refused, this, [this](const QString &sentence) { Q_EMIT Told(sentence); });
    Refresh();
}

void ChannelLegend::MakeTable()
{
    tableChannels_->setObjectName(QStringLiteral("TableChannels"));
    tableChannels_->setAccessibleName(QStringLiteral("Channels"));
    tableChannels_->setModel(model_);
    tableChannels_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tableChannels_->setSelectionMode(QAbstractItemView::SingleSelection);
    tableChannels_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                                    QAbstractItemView::AnyKeyPressed);
    tableChannels_->setTabKeyNavigation(false);
    tableChannels_->setShowGrid(false);
    tableChannels_->setAlternatingRowColors(true);
    tableChannels_->setDragEnabled(true);
    tableChannels_->setDragDropMode(QAbstractItemView::DragOnly);
    tableChannels_->setContextMenuPolicy(Qt::CustomContextMenu);
    tableChannels_->setWordWrap(false);
    tableChannels_->verticalHeader()->hide();
    const int rowHeight = fontMetrics().height() * 5 / 4;
    tableChannels_->verticalHeader()->setDefaultSectionSize(rowHeight);
    tableChannels_->setMinimumHeight(rowHeight + tableChannels_->horizontalHeader()->sizeHint().height());
    QHeaderView *header = tableChannels_->horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionResizeMode(ChannelModel::Name, QHeaderView::Stretch);
    header->setMinimumSectionSize(Characters[ChannelModel::Fast] * fontMetrics().averageCharWidth());
    for (int column = 1; column < ChannelModel::Columns; ++column)
        header->resizeSection(column,
                              std::max(Characters[std::size_t(column)] * fontMetrics().averageCharWidth(),
                                       header->sectionSizeHint(column)));
    On(&view_, &TrendView::CursorsChanged, this, [this] { FitColumns(); });
    tableChannels_->installEventFilter(this);
    On(tableChannels_, &QWidget::customContextMenuRequested, this,
       [this](const QPoint &place) { ShowMenu(place); });
}

void ChannelLegend::FitColumns()
{
    const bool hasA = view_.Cursor(0).has_value();
    const bool hasB = view_.Cursor(1).has_value();
    tableChannels_->setColumnHidden(ChannelModel::AtA, !hasA);
    tableChannels_->setColumnHidden(ChannelModel::AtB, !hasB);
    tableChannels_->setColumnHidden(ChannelModel::Difference, !hasA || !hasB);
    QHeaderView *header = tableChannels_->horizontalHeader();
    int others = 0;
    for (int column = 1; column < ChannelModel::Columns; ++column)
        others += header->sectionSize(column);
    const int least = Characters[ChannelModel::Name] * fontMetrics().averageCharWidth();
    // Where there is no room for the names, the table scrolls.
    const bool hasRoom = tableChannels_->viewport()->width() - others >= least;
    header->setSectionResizeMode(ChannelModel::Name, hasRoom ? QHeaderView::Stretch : QHeaderView::Fixed);
    if (!hasRoom)
        header->resizeSection(ChannelModel::Name, least);
}

void ChannelLegend::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    FitColumns();
}

void ChannelLegend::Refresh()
{
    if (names_.rowCount() != table_.LastParam + 1) {
        QStringList names;
        for (int p = 0; p <= table_.LastParam; ++p)
            names += table_.FullName(p);
        names_.setStringList(names);
    }
    model_->Refresh();
}

void ChannelLegend::FocusAdding()
{
    textAdd_->setFocus(Qt::ShortcutFocusReason);
}

bool ChannelLegend::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<const QKeyEvent *>(event);
    const bool isAlt = key->modifiers() == Qt::AltModifier;
    if (key->key() == Qt::Key_Delete && key->modifiers() == Qt::NoModifier)
        Guarded([this] { RemoveCurrent(); });
    else if (isAlt && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down))
        Guarded([&] { MoveCurrent(key->key() == Qt::Key_Up ? -1 : 1); });
    else
        return false;
    return true;
}

void ChannelLegend::AddTyped()
{
    const QString typed = textAdd_->text().trimmed();
    if (typed.isEmpty())
        return;
    bool isNumber = false;
    int p = typed.toInt(&isNumber);
    if (!isNumber) {
        const QStringList names = names_.stringList();
        p = int(names.indexOf(typed));
        for (int q = 0; p < 0 && q < names.size(); ++q)
            if (names[q].contains(typed, Qt::CaseInsensitive))
                p = q;
    }
    if (p < 0 && !isNumber) {
        Q_EMIT Told(QStringLiteral("No parameter is called \"%1\".").arg(typed));
        textAdd_->selectAll();
        return;
    }
    textAdd_->clear();
    AddChannel(p);
}

void ChannelLegend::AddChannel(int p)
{
    // A recording of before takes no channel: what is wanted is the live one.
    if (view_.IsOther())
        view_.ShowLive();
    if (recorder_.Data().TrackOf(p) == nullptr && !recorder_.AddChannel(p, TrendPace::Fast).isEmpty())
        if (const QString refusal = recorder_.AddChannel(p, TrendPace::Slow); !refusal.isEmpty()) {
            Q_EMIT Told(refusal);
            return;
        }
    Select(p);
}

int ChannelLegend::CurrentParam() const
{
    return model_->ParamAt(tableChannels_->currentIndex().row());
}

void ChannelLegend::Select(int param)
{
    if (const int row = model_->RowOf(param); row >= 0)
        tableChannels_->setCurrentIndex(
            model_->index(row, std::max(tableChannels_->currentIndex().column(), 0)));
}

void ChannelLegend::RemoveCurrent()
{
    const int row = tableChannels_->currentIndex().row();
    const int p = model_->ParamAt(row);
    if (p < 0) {
        Q_EMIT Told(QStringLiteral("Select a channel first."));
        return;
    }
    if (view_.IsOther()) {
        Q_EMIT Told(QStringLiteral("A kept recording stays as it is. A curve can be hidden by its check "
                                   "mark."));
        return;
    }
    recorder_.RemoveChannel(p);
    Select(model_->ParamAt(std::min(row, model_->rowCount() - 1)));
}

void ChannelLegend::MoveCurrent(int by)
{
    const int p = CurrentParam();
    const TrendCurve *curve = view_.CurveOf(p);
    if (curve == nullptr || curve->plot + by < 0)
        return;
    view_.Move(p, curve->plot + by);
    Select(p);
}

void ChannelLegend::ShowMenu(const QPoint &place)
{
    const QModelIndex at = tableChannels_->indexAt(place);
    const int row = at.isValid() ? at.row() : tableChannels_->currentIndex().row();
    const int p = model_->ParamAt(row);
    if (p < 0)
        return;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto toggle = [&](const char *name, const QString &caption, ChannelModel::Column column) {
        const QModelIndex cell = model_->index(row, column);
        QAction *action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        action->setCheckable(true);
        action->setChecked(cell.data(Qt::CheckStateRole).toInt() == Qt::Checked);
        action->setEnabled(cell.flags().testFlag(Qt::ItemIsUserCheckable));
        On(action, &QAction::triggered, this, [this, p, column](bool isOn) {
            model_->setData(model_->index(model_->RowOf(p), column), int(isOn ? Qt::Checked : Qt::Unchecked),
                            Qt::CheckStateRole);
        });
    };
    const auto add = [&](const char *name, const QString &caption, const QKeySequence &keys, auto act) {
        QAction *action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(keys);
        On(action, &QAction::triggered, this, [this, p, act] {
            Select(p);
            act();
        });
    };
    toggle("mnuTrendShow", QStringLiteral("&Show Curve"), ChannelModel::Name);
    toggle("mnuTrendFast", QStringLiteral("&Fast"), ChannelModel::Fast);
    toggle("mnuTrendOwnScale", QStringLiteral("&Own Scale"), ChannelModel::OwnScale);
    menu->addSeparator();
    add("mnuTrendUp", QStringLiteral("To the Plot &Above"), QKeySequence(Qt::ALT | Qt::Key_Up),
        [this] { MoveCurrent(-1); });
    add("mnuTrendDown", QStringLiteral("To the Plot &Below"), QKeySequence(Qt::ALT | Qt::Key_Down),
        [this] { MoveCurrent(1); });
    menu->addSeparator();
    add("mnuTrendRemove", QStringLiteral("&Remove"), QKeySequence(Qt::Key_Delete),
        [this] { RemoveCurrent(); });
    menu->popup(tableChannels_->viewport()->mapToGlobal(place));
}

} // namespace quorvik
