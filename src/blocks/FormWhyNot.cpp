#include "blocks/FormWhyNot.h"

#include "desktop/PlainText.h"
#include "link/ValueStates.h"
#include "model/ParameterTable.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int TickMs = 500;
constexpr int ListLines = 21;
constexpr int HeadlineLines = 3;

enum Column { StateColumn, ParameterColumn, ValueColumn, ExpectedColumn, SourceColumn, WindowColumn };
/** Widths of the columns in characters. */
constexpr int ColumnCharacters[] = {13, 31, 14, 44, 54, 18};

/** A sign and a word, so that nothing hangs on a colour. */
QString MarkOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Met:
        return QStringLiteral("\u2713 ") + WordOf(verdict);
    case Verdict::Blocks:
        return QStringLiteral("\u2717 ") + WordOf(verdict);
    case Verdict::Waits:
        return QStringLiteral("\u2026 ") + WordOf(verdict);
    case Verdict::Unknown:
        break;
    }
    return QStringLiteral("? ") + WordOf(verdict);
}

} // namespace

FormWhyNot::FormWhyNot(Desk &givenDesk)
    : Form(givenDesk, QStringLiteral("FormWhyNot"), Caption(), QStringLiteral("Why Not.htm"))
    , circuit_(givenDesk)
    , watched_(givenDesk.table)
    , labelOrigin_(new QLabel(this))
    , labelHeadline_(new QLabel(this))
    , listConditions_(new QTreeWidget(this))
    , timerUpdateScreen_(new QTimer(this))
{
    labelHeadline_->setObjectName(QStringLiteral("LabelHeadline"));
    labelOrigin_->setObjectName(QStringLiteral("LabelOrigin"));
    for (QLabel *label : {labelHeadline_, labelOrigin_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    // The sentence may grow by a remedy; the list below it must not jump.
    labelHeadline_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    labelHeadline_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont large = labelHeadline_->font();
    large.setPointSizeF(large.pointSizeF() * 1.15);
    labelHeadline_->setFont(large);
    labelHeadline_->setMinimumHeight(HeadlineLines * QFontMetrics(large).lineSpacing());
    MakeList();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(labelHeadline_);
    auto *first = new QHBoxLayout;
    commandFirst_ = new QPushButton(this);
    commandFirst_->setObjectName(QStringLiteral("CommandFirst"));
    SetPlainToolTip(commandFirst_, QStringLiteral("Opens the window in which the first cause stands"));
    On(commandFirst_, &QPushButton::clicked, this, [this] {
        if (why_.first >= 0)
            GoTo(why_.conditions[std::size_t(why_.first)].param);
    });
    first->addWidget(commandFirst_);
    setTabOrder(commandFirst_, listConditions_);
    first->addStretch();
    layout->addLayout(first);
    layout->addWidget(labelOrigin_);
    layout->addWidget(listConditions_, 1);
    layout->addWidget(MakeCommands());

    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(timerUpdateScreen_, &QTimer::timeout, this,
       [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    tickGuard_.Run([this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_->start(TickMs);
    listConditions_->setFocus();
}

void FormWhyNot::Unload()
{
    timerUpdateScreen_->stop();
    watched_.Clear();
}

QSize FormWhyNot::sizeHint() const
{
    int width = 5 * fontMetrics().height();
    for (const int characters : ColumnCharacters)
        width += characters * fontMetrics().averageCharWidth();
    return {width, (ListLines + HeadlineLines + 9) * fontMetrics().lineSpacing()};
}

void FormWhyNot::showEvent(QShowEvent *event)
{
    Form::showEvent(event);
    // With what stands before it in sight.
    listConditions_->scrollToItem(listConditions_->currentItem(), QAbstractItemView::PositionAtCenter);
}

void FormWhyNot::MakeList()
{
    listConditions_->setObjectName(QStringLiteral("ListConditions"));
    listConditions_->setAccessibleName(QStringLiteral("Conditions in the order of the signal"));
    listConditions_->setRootIsDecorated(false);
    listConditions_->setUniformRowHeights(true);
    listConditions_->setAllColumnsShowFocus(true);
    listConditions_->setAlternatingRowColors(true);
    listConditions_->setHeaderLabels({QStringLiteral("State"), QStringLiteral("Parameter"),
                                      QStringLiteral("Value"), QStringLiteral("Condition"),
                                      QStringLiteral("Where it comes from"), QStringLiteral("Window")});
    for (int column = 0; column < listConditions_->columnCount(); ++column)
        listConditions_->setColumnWidth(column, ColumnCharacters[column] * fontMetrics().averageCharWidth());
    On(listConditions_, &QTreeWidget::itemActivated, this, [this] { GoTo(ChosenParam()); });
    On(listConditions_, &QTreeWidget::currentItemChanged, this, [this] { EnableCommands(); });
}

QWidget *FormWhyNot::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    const auto add = [&](const char *name, const QString &caption, const QString &toolTip, auto handler) {
        auto *button = new QPushButton(caption, commands);
        button->setObjectName(QLatin1String(name));
        SetPlainToolTip(button, toolTip);
        On(button, &QPushButton::clicked, this, handler);
        layout->addWidget(button);
        return button;
    };
    commandGoTo_ = add("CommandGoTo", QStringLiteral("&Go to Box"),
                       QStringLiteral("Opens the window in which the chosen parameter stands"),
                       [this] { GoTo(ChosenParam()); });
    commandMap_ = add("CommandMap", QStringLiteral("Show on Ma&p"),
                      QStringLiteral("Shows the chosen parameter on the map of the drive"),
                      [this] { desk().ShowOnMap(ChosenParam()); });
    add("CommandCopy", QStringLiteral("&Copy"),
        QStringLiteral("Puts the explanation on the clipboard as text"),
        [this] { QGuiApplication::clipboard()->setText(why_.AsText()); });
    layout->addStretch();
    layout->addWidget(MakeCommandClose());
    layout->addWidget(MakeCommandHelp());
    return commands;
}

bool FormWhyNot::IsKnown(int p) const
{
    switch (desk().states.Of(p)) {
    case ValueState::Live:
    case ValueState::Set:
    case ValueState::Emulated:
        return true;
    case ValueState::Old:
    case ValueState::Never:
    case ValueState::Queued:
    case ValueState::Refused:
    case ValueState::Lost:
        break;
    }
    return false;
}

QString FormWhyNot::OriginText() const
{
    if (desk().states.IsLost())
        return QStringLiteral("The link to the drive is lost, and what it does now is not known.");
    if (desk().table.PortOpen())
        return QStringLiteral("On line: the values are the drive's.");
    return QStringLiteral(
        "Off line: inputs as the I/O Simulator has them; what a drive would compute follows "
        "from the drawings.");
}

void FormWhyNot::TimerUpdateScreen_Timer()
{
    const ParameterTable &table = desk().table;
    const ConditionsGiven given{.isOnLine = table.PortOpen() || desk().states.IsLost(),
                                .isKnown = [this](int p) { return IsKnown(p); }};
    why_ = ExplainStandstill(circuit_.Get(), table, given);
    watched_.Set({why_.reads.begin(), why_.reads.end()});
    if (desk().states.IsLost())
        why_.headline = QStringLiteral("Why the drive does not run cannot be told while it does not answer.");
    labelOrigin_->setText(OriginText());
    if (labelHeadline_->text() != why_.headline)
        labelHeadline_->setText(why_.headline);
    const bool hasFirst = why_.first >= 0;
    commandFirst_->setEnabled(hasFirst && !why_.conditions[std::size_t(why_.first)].block.isEmpty());
    // An ampersand in a drive's own name would pass for a mnemonic.
    const QString name = hasFirst ? table.FullName(why_.conditions[std::size_t(why_.first)].param)
                                  : QStringLiteral("the First Cause");
    commandFirst_->setText(QStringLiteral("Op&en ") + QString(name).replace(u'&', QStringLiteral("&&")));
    ShowConditions();
}

void FormWhyNot::ShowConditions()
{
    const int count = int(why_.conditions.size());
    const int chosen = ChosenParam();
    while (listConditions_->topLevelItemCount() > count)
        delete listConditions_->takeTopLevelItem(listConditions_->topLevelItemCount() - 1);
    while (listConditions_->topLevelItemCount() < count)
        listConditions_->addTopLevelItem(new QTreeWidgetItem);
    for (int row = 0; row < count; ++row)
        ShowCondition(*listConditions_->topLevelItem(row), why_.conditions[std::size_t(row)],
                      row == why_.first);
    Choose(chosen);
    EnableCommands();
}

void FormWhyNot::Choose(int chosen)
{
    // The first cause stays chosen and in sight until the user chooses another row, which then stays so.
    const bool isFollowing = chosen == followed_;
    const auto at = std::ranges::find(why_.conditions, chosen, &Condition::param);
    int row = isFollowing && why_.first >= 0 ? why_.first
              : at == why_.conditions.end()  ? 0
                                             : int(at - why_.conditions.begin());
    // A parameter may stand twice.
    if (!isFollowing && ChosenParam() == chosen)
        row = listConditions_->indexOfTopLevelItem(listConditions_->currentItem());
    QTreeWidgetItem *item = listConditions_->topLevelItem(row);
    if (!item)
        return;
    if (item != listConditions_->currentItem()) {
        listConditions_->setCurrentItem(item);
        listConditions_->scrollToItem(item, isFollowing ? QAbstractItemView::PositionAtCenter
                                                        : QAbstractItemView::EnsureVisible);
    }
    if (isFollowing)
        followed_ = ChosenParam();
}

void FormWhyNot::ShowCondition(QTreeWidgetItem &item, const Condition &condition, bool isFirst) const
{
    const QString texts[] = {MarkOf(condition.verdict),
                             desk().table.FullName(condition.param),
                             condition.valueText,
                             condition.expected.isEmpty() ? QStringLiteral("chooses the way")
                                                          : condition.expected,
                             condition.source,
                             condition.block};
    QFont font = listConditions_->font();
    font.setBold(isFirst);
    for (int column = 0; column < int(std::size(texts)); ++column) {
        // Only what is another one repaints the list.
        if (item.text(column) != texts[column]) {
            item.setText(column, texts[column]);
            item.setToolTip(column, PlainToolTip(texts[column]));
        }
        if (item.font(column) != font)
            item.setFont(column, font);
    }
    item.setData(StateColumn, Qt::UserRole, condition.param);
}

int FormWhyNot::ChosenParam() const
{
    const QTreeWidgetItem *item = listConditions_->currentItem();
    return item ? item->data(StateColumn, Qt::UserRole).toInt() : -1;
}

void FormWhyNot::EnableCommands()
{
    const QTreeWidgetItem *item = listConditions_->currentItem();
    const bool hasBox = item && !item->text(WindowColumn).isEmpty();
    for (QPushButton *command : {commandGoTo_, commandMap_})
        if (command)
            command->setEnabled(hasBox);
}

void FormWhyNot::GoTo(int p)
{
    if (p > 0)
        desk().ShowParameter(p);
}

void OpenWhyNot(Desk &desk)
{
    const int position = desk.forms.FindOpenBlock(FormWhyNot::Caption());
    desk.ShowChild(position > 0 ? desk.forms.At(position) : new FormWhyNot(desk), true);
}

} // namespace quorvik
