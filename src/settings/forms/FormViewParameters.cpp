#include "settings/forms/FormViewParameters.h"

#include "compare/Differences.h"
#include "desktop/OrderTabs.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "operations/EntryRules.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "platform/SettingsStore.h"
#include "settings/forms/ExportList.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/ParameterListModel.h"
#include "settings/forms/ValueDelegate.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

namespace quorvik
{

namespace
{

/** Widths of the columns in characters. */
constexpr std::array<int, ParameterListModel::Columns> ColumnCharacters = {8, 36, 14, 16, 10,
                                                                           8, 22, 7,  24, 14};
/** How often the list follows the table, in milliseconds. */
constexpr int FollowInterval = 250;

const QString &Section()
{
    static const QString section = QStringLiteral("View Parameters");
    return section;
}

const QString &ShowStatesKey()
{
    static const QString key = QStringLiteral("Show State and Age");
    return key;
}

const QString &ColumnsKey()
{
    static const QString key = QStringLiteral("Columns");
    return key;
}

/** Whether number or name have all the words, each in any part of them. */
bool HasWords(const ReportRow &row, const QStringList &words)
{
    const QString text = row.numberText + u' ' + row.name;
    return std::ranges::all_of(
        words, [&text](const QString &word) { return text.contains(word, Qt::CaseInsensitive); });
}

QPushButton *MakeButton(QWidget *form, const QString &name, const QString &caption)
{
    auto *button = new QPushButton(caption, form);
    button->setObjectName(name);
    return button;
}

} // namespace

const QString &FormViewParameters::Caption()
{
    static const QString caption = QStringLiteral("View Parameters");
    return caption;
}

FormViewParameters::FormViewParameters(Desk &desk, FilePrint &print, ReportFilter filter)
    : Form(desk, QStringLiteral("FormViewParameters"), Caption(), QStringLiteral("View Parameters.htm"))
    , filter_(filter)
    , list_(new ParameterListModel(desk.table, desk.states, desk.BlockOf, this))
    , listView_(new QTreeView(this))
    , checkStates_(new QCheckBox(QStringLiteral("Show &state and age"), this))
    , checkSettings_(new QCheckBox(QStringLiteral("Settings on&ly"), this))
    , textSearch_(new QLineEdit(this))
    , labelTotal_(new QLabel(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeFilters());
    layout->addWidget(MakeSearch());
    layout->addWidget(MakeListView(), 1);
    layout->addWidget(MakeCommands(print));
    SelectView(filter);
    BuildList();
    ReadFile();
    FollowTable();
    MakeKeys();
    OrderTabs({optionView_[0], optionView_[1], checkStates_, textSearch_, checkSettings_, listView_});
    listView_->setFocus();
}

QWidget *FormViewParameters::MakeSearch()
{
    auto *search = new QWidget(this);
    auto *layout = new QHBoxLayout(search);
    layout->setContentsMargins({});
    auto *label = new QLabel(QStringLiteral("&Number or name:"), search);
    label->setBuddy(textSearch_);
    textSearch_->setObjectName(QStringLiteral("TextSearch"));
    textSearch_->setAccessibleName(QStringLiteral("Part of number or name"));
    textSearch_->setClearButtonEnabled(true);
    textSearch_->setPlaceholderText(QStringLiteral("any part of them"));
    On(textSearch_, &QLineEdit::textChanged, this, [this] { BuildList(); });
    checkSettings_->setObjectName(QStringLiteral("CheckSettings"));
    checkSettings_->setToolTip(QStringLiteral("Leaves out what the drive measures, its clock and commands"));
    On(checkSettings_, &QCheckBox::toggled, this, [this] { BuildList(); });
    layout->addWidget(label);
    layout->addWidget(textSearch_, 1);
    layout->addWidget(checkSettings_);
    return search;
}

void FormViewParameters::MakeKeys()
{
    listView_->installEventFilter(this);
    textSearch_->installEventFilter(this);
    On(listView_, &QTreeView::doubleClicked, this, [this] { Open(false); });
    listView_->setContextMenuPolicy(Qt::CustomContextMenu);
    On(listView_, &QWidget::customContextMenuRequested, this,
       [this](const QPoint &place) { ShowRowMenu(place); });
}

bool FormViewParameters::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return Form::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (watched == listView_ && isEnter) {
        Guarded([&] { Open(key->modifiers() & Qt::ControlModifier); });
        return true;
    }
    if (watched == textSearch_ && key->key() == Qt::Key_Down) {
        // From the field into the rows without the Tab key.
        if (!listView_->currentIndex().isValid())
            listView_->setCurrentIndex(list_->index(0, 0));
        listView_->setFocus();
        return true;
    }
    return Form::eventFilter(watched, event);
}

void FormViewParameters::Open(bool edits)
{
    const int p = CurrentParameter();
    if (p >= 0 && edits)
        desk().rules.EditParameter(desk().table.AccessClass(p), p);
    else if (p >= 0)
        desk().ShowParameter(p);
}

QWidget *FormViewParameters::MakeFilters()
{
    auto *filters = new QWidget(this);
    auto *layout = new QHBoxLayout(filters);
    layout->setContentsMargins({});
    const QString captions[] = {QStringLiteral("&All Parameters"), QStringLiteral("Changed from &Default")};
    for (int index = 0; index < 2; ++index) {
        auto *option = new QRadioButton(captions[index], filters);
        option->setObjectName(ControlName("OptionView", index));
        On(option, &QRadioButton::toggled, this, [this, index](bool isChecked) {
            if (!isChecked || filter_ == ReportFilter(index))
                return;
            filter_ = ReportFilter(index);
            BuildList();
        });
        optionView_[std::size_t(index)] = option;
        layout->addWidget(option);
    }
    checkStates_->setObjectName(QStringLiteral("CheckStates"));
    On(checkStates_, &QCheckBox::clicked, this, [this](bool isChecked) {
        desk().settings.SaveSetting(Section(), ShowStatesKey(),
                                    isChecked ? QStringLiteral("True") : QStringLiteral("False"));
        ShowStates(isChecked);
    });
    layout->addWidget(checkStates_);
    layout->addStretch();
    labelTotal_->setObjectName(QStringLiteral("LabelTotal"));
    layout->addWidget(labelTotal_);
    return filters;
}

QWidget *FormViewParameters::MakeListView()
{
    listView_->setObjectName(QStringLiteral("ListView"));
    listView_->setAccessibleName(QStringLiteral("Parameters"));
    listView_->setRootIsDecorated(false);
    listView_->setUniformRowHeights(true);
    listView_->setAllColumnsShowFocus(true);
    listView_->setAlternatingRowColors(true);
    listView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    listView_->setModel(list_);
    listView_->setItemDelegateForColumn(ParameterListModel::ValueColumn, new ValueDelegate(listView_));
    QHeaderView *header = listView_->header();
    const int character = fontMetrics().averageCharWidth();
    int width = 0;
    for (int column = 0; column < ParameterListModel::Columns; ++column) {
        header->resizeSection(column, ColumnCharacters[std::size_t(column)] * character);
        width += ColumnCharacters[std::size_t(column)] * character;
    }
    header->setStretchLastSection(true);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    On(header, &QWidget::customContextMenuRequested, this,
       [this](const QPoint &place) { ShowColumnsMenu(place); });
    RestoreColumns();
    // No column sorts before it is clicked.
    header->setSortIndicator(-1, Qt::AscendingOrder);
    listView_->setSortingEnabled(true);
    ShowStates(WantsStates());
    listView_->setMinimumSize(width / 3, fontMetrics().lineSpacing() * 8);
    size_ = QSize(width + 3 * fontMetrics().height(), fontMetrics().lineSpacing() * 32);
    return listView_;
}

QWidget *FormViewParameters::MakeCommands(FilePrint &print)
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    QPushButton *refresh = MakeButton(commands, QStringLiteral("CommandRefresh"), QStringLiteral("&Refresh"));
    QPushButton *printButton = MakeButton(commands, QStringLiteral("CommandPrint"), QStringLiteral("&Print"));
    QPushButton *exportButton =
        MakeButton(commands, QStringLiteral("CommandExport"), QStringLiteral("Export..."));
    On(refresh, &QPushButton::clicked, this, [this] { BuildList(); });
    On(printButton, &QPushButton::clicked, this, [this, &print] { print.mnuFilePrint_Click(this); });
    On(exportButton, &QPushButton::clicked, this, [this] { CommandExport_Click(); });
    layout->addWidget(refresh);
    layout->addWidget(printButton);
    layout->addWidget(exportButton);
    layout->addStretch();
    layout->addWidget(MakeCommandClose());
    return commands;
}

QSize FormViewParameters::sizeHint() const
{
    return size_;
}

const QList<ReportRow> &FormViewParameters::Rows() const
{
    return list_->Rows();
}

void FormViewParameters::SelectView(ReportFilter filter)
{
    optionView_[std::size_t(filter)]->setChecked(true);
}

void FormViewParameters::SelectParameter(int p)
{
    const QList<ReportRow> &rows = Rows();
    for (int row = 0; row < rows.size(); ++row)
        if (rows[row].param == p)
            listView_->setCurrentIndex(list_->index(row, 0));
}

void FormViewParameters::BuildList()
{
    const int current = CurrentParameter();
    QList<ReportRow> rows = CollectRows(desk().table, filter_);
    const QStringList words = textSearch_->text().split(u' ', Qt::SkipEmptyParts);
    const bool onlySettings = checkSettings_->isChecked();
    rows.removeIf([&](const ReportRow &row) {
        return !HasWords(row, words) ||
               (onlySettings && KindOf(row.param, desk().table[row.param].Attributes) != RowKind::Setting);
    });
    list_->SetRows(rows);
    labelTotal_->setText(QStringLiteral("Total: %1").arg(list_->rowCount()));
    SelectParameter(current);
}

int FormViewParameters::CurrentParameter() const
{
    const QModelIndex current = listView_->currentIndex();
    const int p = current.isValid() ? Rows().at(current.row()).param : -1;
    // A drive with fewer parameters may have come after the rows.
    return p <= desk().table.UpperBound() ? p : -1;
}

void FormViewParameters::ReadFile()
{
    ParameterSet file;
    fileShown_ = desk().document.FileName;
    if (desk().document.FileName != Document::Unnamed()) {
        QString failure;
        file = ParameterSet::FromFile(desk().document.FileName, desk().table, failure);
    }
    list_->SetFile(std::move(file));
}

void FormViewParameters::RestoreColumns()
{
    const QString kept = desk().settings.GetSetting(Section(), ColumnsKey());
    if (!kept.isEmpty())
        listView_->header()->restoreState(QByteArray::fromBase64(kept.toLatin1()));
}

void FormViewParameters::Unload()
{
    desk().settings.SaveSetting(Section(), ColumnsKey(),
                                QString::fromLatin1(listView_->header()->saveState().toBase64()));
}

void FormViewParameters::ShowColumnsMenu(const QPoint &place)
{
    QHeaderView *header = listView_->header();
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int column = ParameterListModel::BlockColumn; column < ParameterListModel::Columns; ++column) {
        QAction *entry = menu->addAction(ParameterListModel::HeadOf(column));
        entry->setCheckable(true);
        entry->setChecked(!header->isSectionHidden(column));
        On(entry, &QAction::toggled, this,
           [header, column](bool isShown) { header->setSectionHidden(column, !isShown); });
    }
    menu->popup(header->mapToGlobal(place));
}

void FormViewParameters::ShowRowMenu(const QPoint &place)
{
    const int p = CurrentParameter();
    if (p < 0)
        return;
    if (QMenu *menu = desk().MenuOf(p, this))
        menu->popup(listView_->viewport()->mapToGlobal(place));
}

void FormViewParameters::FollowTable()
{
    On(&desk().table.Signals(), &TableSignals::Changed, this,
       [this](const ParamChange &change) { changed_.insert(change.param); });
    On(&desk().states, &ValueStates::StateChanged, this, [this](int p) { changed_.insert(p); });
    On(&desk().document, &Document::Saved, this, [this] { ReadFile(); });
    On(&desk().document, &Document::TitleChanged, this, [this] {
        if (fileShown_ != desk().document.FileName)
            ReadFile();
    });
    timerFollow_.setObjectName(QStringLiteral("TimerFollow"));
    timerFollow_.setInterval(FollowInterval);
    On(&timerFollow_, &QTimer::timeout, this, [this] { Follow(); });
    timerFollow_.start();
}

void FormViewParameters::Follow()
{
    ShowStates(WantsStates());
    list_->Follow(std::exchange(changed_, {}));
    if (!listView_->isColumnHidden(ParameterListModel::AgeColumn))
        list_->FollowAges();
}

bool FormViewParameters::WantsStates() const
{
    const QString chosen = desk().settings.GetSetting(Section(), ShowStatesKey());
    return chosen.isEmpty() ? desk().table.PortOpen() || desk().states.IsLost()
                            : chosen == QStringLiteral("True");
}

void FormViewParameters::ShowStates(bool isShown)
{
    checkStates_->setChecked(isShown);
    for (const int column : {ParameterListModel::StateColumn, ParameterListModel::AgeColumn})
        listView_->setColumnHidden(column, !isShown);
}

void FormViewParameters::CommandExport_Click()
{
    const std::optional<QString> path =
        ShowExportDialog(FilePath(desk().document.FileName), this, desk().settings, desk().asker);
    if (!path)
        return;
    const QString failure = ExportRows(*path, desk().document, Rows());
    if (!failure.isEmpty())
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, QString());
}

void OpenViewParameters(Desk &desk, FilePrint &print, ReportFilter filter)
{
    const int position = desk.forms.FindOpenBlock(FormViewParameters::Caption());
    auto *form = position > 0 ? qobject_cast<FormViewParameters *>(desk.forms.At(position)) : nullptr;
    if (form != nullptr)
        form->SelectView(filter);
    else
        form = new FormViewParameters(desk, print, filter);
    desk.ShowChild(form, true);
}

} // namespace quorvik
