#include "settings/forms/FormViewParameters.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
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
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

namespace quorvik
{

namespace
{

/** Widths of the columns in characters. */
constexpr std::array<int, ParameterListModel::Columns> ColumnCharacters = {8, 44, 16, 16, 10, 8};
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
    , list_(new ParameterListModel(desk.table, desk.states, this))
    , listView_(new QTreeView(this))
    , checkStates_(new QCheckBox(QStringLiteral("Show &state and age"), this))
    , labelTotal_(new QLabel(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeFilters());
    layout->addWidget(MakeListView(), 1);
    layout->addWidget(MakeCommands(print));
    SelectView(filter);
    BuildList();
    FollowTable();
    listView_->setFocus();
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
    ShowStates(WantsStates());
    QHeaderView *header = listView_->header();
    const int character = fontMetrics().averageCharWidth();
    int width = 0;
    for (int column = 0; column < ParameterListModel::Columns; ++column) {
        header->resizeSection(column, ColumnCharacters[std::size_t(column)] * character);
        width += ColumnCharacters[std::size_t(column)] * character;
    }
    // In a narrower window the names give way, not the values behind them.
    header->setStretchLastSection(false);
    header->setSectionResizeMode(1, QHeaderView::Stretch);
    // No column sorts before it is clicked.
    header->setSortIndicator(-1, Qt::AscendingOrder);
    listView_->setSortingEnabled(true);
    listView_->setMinimumSize(width / 2, fontMetrics().lineSpacing() * 8);
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
    list_->SetRows(CollectRows(desk().table, filter_));
    labelTotal_->setText(QStringLiteral("Total: %1").arg(list_->rowCount()));
}

void FormViewParameters::FollowTable()
{
    On(&desk().table.Signals(), &TableSignals::Changed, this,
       [this](const ParamChange &change) { changed_.insert(change.param); });
    On(&desk().states, &ValueStates::StateChanged, this, [this](int p) { changed_.insert(p); });
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
        ShowExportDialog(FilePath(desk().document.FileName), this, desk().asker);
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
