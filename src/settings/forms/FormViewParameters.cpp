#include "settings/forms/FormViewParameters.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "settings/forms/ExportList.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/ParameterListModel.h"

#include <QBoxLayout>
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
constexpr std::array<int, ReportColumns> ColumnCharacters = {8, 44, 16, 16};

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
    , list_(new ParameterListModel(this))
    , listView_(new QTreeView(this))
    , labelTotal_(new QLabel(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeFilters());
    layout->addWidget(MakeListView(), 1);
    layout->addWidget(MakeCommands(print));
    SelectView(filter);
    BuildList();
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
    QHeaderView *header = listView_->header();
    const int character = fontMetrics().averageCharWidth();
    int width = 0;
    for (int column = 0; column < ReportColumns; ++column) {
        header->resizeSection(column, ColumnCharacters[std::size_t(column)] * character);
        width += header->sectionSize(column);
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

void FormViewParameters::BuildList()
{
    list_->SetRows(CollectRows(desk().table, filter_));
    labelTotal_->setText(QStringLiteral("Total: %1").arg(list_->rowCount()));
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
