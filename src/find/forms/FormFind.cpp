#include "find/forms/FormFind.h"

#include "desktop/HTMLHelp.h"
#include "desktop/PlainText.h"
#include "find/FoldedWords.h"
#include "find/forms/FindModel.h"
#include "link/ValueStates.h"
#include "model/ParameterTable.h"
#include "operations/EntryRules.h"
#include "platform/Guard.h"
#include "settings/forms/ValueDelegate.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QTreeView>
#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

/** Widths of the columns in characters; the titles take what is left. */
constexpr std::array<int, FindModel::Columns> ColumnCharacters = {12, 38, 15, 11, 24};
constexpr int RowsInSight = 14;
constexpr int FewestRows = 3;
/** Lines of the main window that stay in sight above. */
constexpr int LinesAbove = 4;
/** How often the rows follow the table, in milliseconds. */
constexpr int FollowInterval = 250;

} // namespace

const QString &FormFind::Name()
{
    static const QString name = QStringLiteral("FormFind");
    return name;
}

FormFind::FormFind(Desk &givenDesk, FindHost &host, QWidget *mainWindow)
    : Form(givenDesk, Name(), QStringLiteral("Find"), QStringLiteral("Find.htm"))
    , host_(host)
    , mainWindow_(mainWindow)
    , recent_(givenDesk.settings)
    , model_(new FindModel(desk(), host, host.MakeIndex(), this))
    , textFind_(new QLineEdit(this))
    , listFound_(new QTreeView(this))
    , labelFound_(new QLabel(this))
    , read_(givenDesk.table)
    , wasOnline_(givenDesk.table.PortOpen())
{
    setParent(mainWindow, Qt::Dialog);
    textFind_->setObjectName(QStringLiteral("TextFind"));
    textFind_->setAccessibleName(QStringLiteral("Find"));
    textFind_->setPlaceholderText(QStringLiteral("Number, name, unit, text of a value, word of the help"));
    textFind_->setClearButtonEnabled(true);
    textFind_->installEventFilter(this);
    labelFound_->setObjectName(QStringLiteral("LabelFound"));
    labelFound_->setTextFormat(Qt::PlainText);
    labelFound_->setWordWrap(true);
    auto *labelKeys =
        new QLabel(QStringLiteral("Enter opens, Ctrl+Enter changes the value, Alt+Enter shows it "
                                  "on the map, Esc closes"),
                   this);
    labelKeys->setObjectName(QStringLiteral("LabelKeys"));
    labelKeys->setWordWrap(true);
    MakeListView();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(textFind_);
    layout->addWidget(listFound_, 1);
    layout->addWidget(labelFound_);
    layout->addWidget(labelKeys);

    On(textFind_, &QLineEdit::textChanged, this, [this] { Search(); });
    // The main window's own does not reach here.
    On(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this), &QShortcut::activated, this,
       [this] { TakeFocus(); });
    On(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, [this] { close(); });
    Search();
    FollowTable();
    Place(*mainWindow);
    textFind_->setFocus();
}

void FormFind::MakeListView()
{
    listFound_->setObjectName(QStringLiteral("ListFound"));
    listFound_->setAccessibleName(QStringLiteral("Found"));
    listFound_->setRootIsDecorated(false);
    listFound_->setUniformRowHeights(true);
    listFound_->setAlternatingRowColors(true);
    listFound_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    listFound_->setHeaderHidden(true);
    // Typing goes on after a click on a row.
    listFound_->setFocusPolicy(Qt::NoFocus);
    listFound_->setModel(model_);
    listFound_->setItemDelegateForColumn(FindModel::ValueColumn, new ValueDelegate(listFound_));
    QHeaderView *header = listFound_->header();
    header->setMinimumSectionSize(1);
    header->setStretchLastSection(false);
    for (int column = 0; column < FindModel::Columns; ++column)
        header->resizeSection(column,
                              ColumnCharacters[std::size_t(column)] * fontMetrics().averageCharWidth());
    header->setSectionResizeMode(FindModel::TitleColumn, QHeaderView::Stretch);
    listFound_->setMinimumHeight(fontMetrics().lineSpacing() * FewestRows);
    On(listFound_, &QTreeView::doubleClicked, this, [this] { Do(Act::Open); });
    listFound_->setContextMenuPolicy(Qt::CustomContextMenu);
    On(listFound_, &QWidget::customContextMenuRequested, this,
       [this](const QPoint &place) { ShowMenu(place); });
    On(listFound_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { SpeakCurrent(); });
}

void FormFind::SpeakCurrent()
{
    // The focus is in the field, so the row is read out as what the field stands on.
    const QModelIndex current = listFound_->currentIndex();
    SetSpokenText(textFind_, current.isValid() ? model_->Spoken(current.row()) : QString());
}

QSize FormFind::sizeHint() const
{
    int characters = 0;
    for (const int width : ColumnCharacters)
        characters += width;
    const int lines = RowsInSight + LinesAbove;
    return {characters * fontMetrics().averageCharWidth() + 3 * fontMetrics().height(),
            lines * listFound_->fontMetrics().lineSpacing() + 2 * fontMetrics().height()};
}

void FormFind::Place(const QWidget &mainWindow)
{
    const QRect room = mainWindow.screen()->availableGeometry();
    resize(FormFind::sizeHint().boundedTo(room.size() * 9 / 10).expandedTo(minimumSizeHint()));
    const QPoint wanted = mainWindow.mapToGlobal(
        QPoint((mainWindow.width() - width()) / 2, LinesAbove * fontMetrics().lineSpacing()));
    move(std::clamp(wanted.x(), room.left(), std::max(room.left(), room.right() + 1 - width())),
         std::clamp(wanted.y(), room.top(), std::max(room.top(), room.bottom() + 1 - height())));
}

void FormFind::TakeFocus()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    textFind_->setFocus();
    textFind_->selectAll();
}

void FormFind::FollowTable()
{
    On(&desk().table.Signals(), &TableSignals::Changed, this,
       [this](const ParamChange &change) { changed_.insert(change.param); });
    On(&desk().states, &ValueStates::StateChanged, this, [this](int p) { changed_.insert(p); });
    timerFollow_.setObjectName(QStringLiteral("TimerFollow"));
    timerFollow_.setInterval(FollowInterval);
    On(&timerFollow_, &QTimer::timeout, this, [this] { Follow(); });
    timerFollow_.start();
}

void FormFind::ReadRowsInSight()
{
    std::set<int> params;
    const int height = listFound_->viewport()->height();
    for (QModelIndex row = listFound_->indexAt({0, 0}); row.isValid(); row = listFound_->indexBelow(row)) {
        if (listFound_->visualRect(row).top() >= height)
            break;
        const FindEntry &entry = model_->EntryAt(row.row());
        if (entry.kind == FindKind::Parameter && entry.number <= desk().table.UpperBound())
            params.insert(entry.number);
    }
    read_.Set(params);
}

void FormFind::Unload()
{
    read_.Clear();
}

void FormFind::Follow()
{
    ReadRowsInSight();
    model_->Follow(std::exchange(changed_, {}));
    if (std::exchange(wasOnline_, desk().table.PortOpen()) != desk().table.PortOpen())
        model_->FollowCommands();
}

void FormFind::Search()
{
    const QString query = textFind_->text();
    std::vector<int> entries;
    if (query.trimmed().isEmpty()) {
        for (const QString &key : recent_.Keys())
            if (const int entry = model_->Index().Of(key); entry >= 0)
                entries.push_back(entry);
        Tell(entries.empty() ? QStringLiteral("Nothing was found before; type what you look for.")
                             : QStringLiteral("Found recently"));
    } else {
        for (const FindHit &hit : model_->Index().Search(query))
            entries.push_back(hit.entry);
        Tell(entries.empty()
                 ? QStringLiteral("Nothing found. Each word must fit: try fewer of them, or only the "
                                  "beginning of one.")
                 : QStringLiteral("%1 found").arg(entries.size()));
    }
    model_->SetEntries(std::move(entries), query);
    listFound_->setCurrentIndex(model_->index(0, FindModel::TitleColumn));
    listFound_->scrollToTop();
    // Where nothing is left, no row becomes the current one.
    SpeakCurrent();
}

void FormFind::Tell(const QString &sentence)
{
    if (labelFound_->text() == sentence)
        return;
    labelFound_->setText(sentence);
    QAccessibleEvent event(labelFound_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

bool FormFind::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != textFind_ || event->type() != QEvent::KeyPress)
        return Form::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    switch (key->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        QCoreApplication::sendEvent(listFound_, event);
        return true;
    default:
        break;
    }
    bool isTaken = false;
    Guarded([&] { isTaken = TakesKey(key->key(), key->modifiers()); });
    return isTaken || Form::eventFilter(watched, event);
}

bool FormFind::TakesKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    const Qt::KeyboardModifiers held = modifiers & ~Qt::KeypadModifier;
    if (held == Qt::ControlModifier)
        Do(Act::Edit);
    else if (held == Qt::AltModifier)
        Do(Act::Map);
    else
        Do(Act::Open);
    return true;
}

void FormFind::ShowMenu(const QPoint &place)
{
    const QModelIndex index = listFound_->indexAt(place);
    if (!index.isValid())
        return;
    listFound_->setCurrentIndex(index);
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char *name, const QString &caption, const QKeySequence &keys, Act act) {
        QAction *action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(keys);
        On(action, &QAction::triggered, this, [this, act] { Do(act); });
    };
    add("mnuFindOpen", QStringLiteral("&Open"), QKeySequence(Qt::Key_Return), Act::Open);
    if (model_->EntryAt(index.row()).kind == FindKind::Parameter) {
        add("mnuFindEdit", QStringLiteral("&Change the Value..."), QKeySequence(Qt::CTRL | Qt::Key_Return),
            Act::Edit);
        add("mnuFindMap", QStringLiteral("&Show on the Map"), QKeySequence(Qt::ALT | Qt::Key_Return),
            Act::Map);
    }
    menu->popup(listFound_->viewport()->mapToGlobal(place));
}

void FormFind::Do(Act act)
{
    const QModelIndex current = listFound_->currentIndex();
    if (!current.isValid())
        return;
    const FindEntry entry = model_->EntryAt(current.row());
    if (act == Act::Open) {
        Open(entry);
    } else if (entry.kind != FindKind::Parameter) {
        Tell(act == Act::Edit ? QStringLiteral("Only a parameter has a value.")
                              : QStringLiteral("Only a parameter stands on the map."));
    } else if (act == Act::Edit) {
        Edit(entry.number);
    } else {
        Leave(entry);
        desk().ShowOnMap(entry.number);
    }
}

void FormFind::Open(const FindEntry &entry)
{
    const bool isCommand = entry.kind == FindKind::Window || entry.kind == FindKind::Command;
    if (isCommand)
        if (const QString whyNot = host_.CommandOf(entry.key).whyNot; !whyNot.isEmpty()) {
            Tell(QStringLiteral("\"%1\" %2.").arg(entry.title, whyNot));
            return;
        }
    const QStringList words = FoldedWords(textFind_->text());
    Leave(entry);
    if (isCommand)
        host_.Choose(entry.key);
    else if (entry.kind == FindKind::Topic)
        desk().help.DisplayFound(entry.key, words, mainWindow_);
    else if (!desk().ShowParameter(entry.number))
        host_.ListParameter(entry.number);
}

void FormFind::Edit(int p)
{
    ParameterTable &table = desk().table;
    if (p > table.LastParam)
        return;
    const int accessClass = table.AccessClass(p);
    if (accessClass > Access::IcrReadWrite) {
        Tell(QStringLiteral("%1 cannot be changed: %2.")
                 .arg(table.FullName(p), table.AccessDescription(p, accessClass)));
        return;
    }
    recent_.Add(model_->EntryAt(listFound_->currentIndex().row()).key);
    desk().rules.EditParameter(accessClass, p);
}

void FormFind::Leave(const FindEntry &entry)
{
    recent_.Add(entry.key);
    close();
    mainWindow_->activateWindow();
}

} // namespace quorvik
