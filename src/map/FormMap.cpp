#include "map/FormMap.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "blocks/BoxMenu.h"
#include "desktop/PlainText.h"
#include "link/ValueStates.h"
#include "map/MapView.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int TickMs = 500;
constexpr int SoonMs = 100;

const BlockMenuEntry *BlockOf(int card)
{
    for (const BlockMenuEntry &block : BlockCatalogue())
        if (block.sheet && qstrcmp(block.form, MapCards()[std::size_t(card)].form) == 0)
            return &block;
    return nullptr;
}

} // namespace

const QString &FormMap::Name()
{
    static const QString name = QStringLiteral("FormMap");
    return name;
}

FormMap::FormMap(Desk &givenDesk)
    : Form(givenDesk, Name(), QStringLiteral("Map of the Drive"), QStringLiteral("Map.htm"))
    , ChoosePrinter([this](QPrinter &printer) { return ShowPrinterDialog(printer); })
    , ChooseFile([this](const QString &folder) { return ShowSaveDialog(folder); })
    , circuit_(givenDesk)
    , model_(givenDesk.table, givenDesk.states)
    , view_(new MapView(
          model_, [this]() -> Circuit & { return circuit_.Get(); }, this))
    , labelCard_(new QLabel(this))
    , timerUpdateScreen_(new QTimer(this))
    , soon_(new QTimer(this))
    , interest_(givenDesk.table)
{
    labelCard_->setObjectName(QStringLiteral("LabelCard"));
    labelCard_->setTextFormat(Qt::PlainText);
    // As much of the sentence as there is room for; the rest is in its tool tip.
    labelCard_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    labelCard_->setMinimumWidth(12 * fontMetrics().averageCharWidth());
    auto *buttons = new QHBoxLayout;
    MakeButtons(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(view_, 1);
    layout->addLayout(buttons);

    On(view_, &MapView::Activated, this, [this](int card, int row) { Open(card, row); });
    On(view_, &MapView::MenuAsked, this,
       [this](int card, int row, const QPoint &place) { ShowMenu(card, row, place); });
    On(view_, &MapView::LitChanged, this, [this](int card) { ShowCard(card); });
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(timerUpdateScreen_, &QTimer::timeout, this,
       [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    // A value must not pass for live until the next tick once it no longer is; states change in swarms.
    soon_->setSingleShot(true);
    soon_->setInterval(SoonMs);
    On(soon_, &QTimer::timeout, this, [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    On(&desk().states, &ValueStates::StateChanged, this, [this](int p) {
        if (interest_.Contains(p) && !soon_->isActive())
            soon_->start();
    });
    tickGuard_.Run([this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_->start(TickMs);
    view_->setFocus();
}

FormMap::~FormMap()
{
    // It loses the focus as it goes, and tells that to what would be gone by then.
    delete view_;
}

QSize FormMap::sizeHint() const
{
    // As much as a small screen has inside the frame; a larger one lets it grow.
    constexpr QSize small(1300, 560);
    return Form::sizeHint().boundedTo(small);
}

void FormMap::Unload()
{
    timerUpdateScreen_->stop();
    soon_->stop();
    desk().states.disconnect(this);
    interest_.Clear();
}

void FormMap::MakeButtons(QBoxLayout *layout)
{
    const auto add = [this, layout](const char *name, const QString &caption, const QString &toolTip,
                                    auto handler) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(QString::fromLatin1(name));
        button->setToolTip(toolTip);
        On(button, &QPushButton::clicked, this, handler);
        layout->addWidget(button);
    };
    add("CommandFit", QStringLiteral("F&it"),
        QStringLiteral("Shows the whole map (F); + and - zoom, 0 is 100 %"), [this] { view_->Fit(); });
    add("CommandPrint", QStringLiteral("&Print..."), QStringLiteral("Prints the map on one page"),
        [this] { CommandPrint_Click(); });
    add("CommandPdf", QStringLiteral("Save as P&DF..."), QStringLiteral("Writes the map to a PDF file"),
        [this] { CommandPdf_Click(); });
    layout->addWidget(labelCard_, 1);
    layout->addWidget(MakeCommandClose());
    layout->addWidget(MakeCommandHelp());
}

void FormMap::TimerUpdateScreen_Timer()
{
    view_->Follow();
    interest_.Set(model_.Interest());
}

void FormMap::ShowCard(int card)
{
    const int described = card >= 0 ? card : view_->FocusCard();
    const QString words = model_.Describe(described);
    SetSpokenText(view_, words);
    const QString marks = model_.MarkWords(described).join(u' ');
    const QString line = marks.isEmpty() ? words : marks;
    if (labelCard_->text() == line)
        return;
    labelCard_->setText(line);
    SetPlainToolTip(labelCard_, words);
}

bool FormMap::Reveal(int p)
{
    int row = -1;
    const int card = model_.CardOf(circuit_.Get(), p, &row);
    if (card < 0)
        return false;
    view_->Reveal(card, row);
    return true;
}

void FormMap::Open(int card, int row)
{
    const MapCard &entry = MapCards()[std::size_t(card)];
    const int p = row < 0 ? -1 : model_.Rows(card)[std::size_t(row)].param;
    const BlockMenuEntry *block = BlockOf(card);
    if (!block) {
        // The motor's values stand in several windows, its speed in the first of them.
        RevealParameter(desk(), p > 0 ? p : entry.rows.front().param);
    } else if (block->IsFamily() && row < 0) {
        ChooseMember(card);
    } else if (block->IsFamily()) {
        OpenBlock(desk(), *block, block->firstMember + row);
    } else if (entry.isMirror && p > 0) {
        RevealParameter(desk(), p);
    } else {
        auto *form = static_cast<BlockForm *>(OpenBlock(desk(), *block, 0));
        if (p > 0)
            form->Reveal(p);
    }
}

void FormMap::ChooseMember(int card)
{
    const BlockMenuEntry *block = BlockOf(card);
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("MenuMembers"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int member = block->firstMember; member <= block->lastMember; ++member)
        On(menu->addAction(block->MenuCaption(member)), &QAction::triggered, this,
           [this, block, member] { OpenBlock(desk(), *block, member); });
    menu->setActiveAction(menu->actions().first());
    const QPointF below = view_->CardOnScreen(card).bottomLeft();
    menu->popup(view_->mapToGlobal(below.toPoint()));
}

void FormMap::ShowMenu(int card, int row, const QPoint &globalPlace)
{
    const std::vector<MapRow> &rows = model_.Rows(card);
    const auto isInTable = [this](int p) { return p > 0 && p <= desk().table.UpperBound(); };
    if (row >= 0) {
        if (const int p = rows[std::size_t(row)].param; isInTable(p))
            MakeBoxMenu(desk(), p, view_, {})->popup(globalPlace);
        return;
    }
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("MenuCard"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const MapRow &each : rows)
        if (const int p = each.param; isInTable(p))
            On(menu->addAction(
                   QStringLiteral("Add %1 to Trend")
                       .arg(QString(desk().table.FullName(p)).replace(u'&', QStringLiteral("&&")))),
               &QAction::triggered, this, [this, p] { desk().AddToTrend(p); });
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(globalPlace);
}

void OpenMap(Desk &desk, int p)
{
    FormMap *map = nullptr;
    for (int position = 1; position < desk.forms.Count(); ++position)
        if (auto *open = qobject_cast<FormMap *>(desk.forms.At(position)))
            map = open;
    if (!map)
        map = new FormMap(desk);
    desk.ShowChild(map, true);
    if (p >= 0)
        map->Reveal(p);
}

} // namespace quorvik
