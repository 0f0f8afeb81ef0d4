#include "compare/forms/FormVerifiedWrite.h"

#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <utility>

namespace quorvik
{

namespace
{

enum Column { NumberColumn, NameColumn, WrittenColumn, FoundColumn, BecameColumn };

/** Widths of the columns in characters. */
constexpr int ColumnCharacters[] = {10, 34, 16, 16, 52};

QString EndText(WriteReport::End end)
{
    switch (end) {
    case WriteReport::End::Complete:
        break;
    case WriteReport::End::Cancelled:
        return QStringLiteral("Cancelled between two parameters.");
    case WriteReport::End::LinkLost:
        return QStringLiteral(
            "The line to the drive was lost. Resume goes on with the same drive once it is back.");
    case WriteReport::End::NoBackup:
        return QStringLiteral("Nothing was written: the drive's set of before could not be kept.");
    case WriteReport::End::OtherDrive:
        return QStringLiteral("Not resumed: what answers is not the drive with which the write was begun.");
    case WriteReport::End::Changed:
        return QStringLiteral("Not resumed: the drive's other settings are no longer what they were.");
    }
    return QStringLiteral("The write came to its end.");
}

QLabel *MakeLabel(QWidget *form, const char *name)
{
    auto *label = new QLabel(form);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

} // namespace

FormVerifiedWrite::FormVerifiedWrite(Desk &desk, WriteReportCommands commands)
    : Form(desk, QStringLiteral("FormVerifiedWrite"), QStringLiteral("Write Report"),
           QStringLiteral("Safe Writes.htm"))
    , commands_(std::move(commands))
    , labelSummary_(MakeLabel(this, "LabelSummary"))
    , labelEnd_(MakeLabel(this, "LabelEnd"))
    , labelBackup_(MakeLabel(this, "LabelBackup"))
    , checkAll_(new QCheckBox(QStringLiteral("&All values, verified ones too"), this))
    , listRows_(new QTreeWidget(this))
{
    QFont bold = font();
    bold.setBold(true);
    labelSummary_->setFont(bold);
    checkAll_->setObjectName(QStringLiteral("CheckAll"));
    On(checkAll_, &QCheckBox::toggled, this, [this] { ListRows(); });

    listRows_->setObjectName(QStringLiteral("ListRows"));
    listRows_->setAccessibleName(QStringLiteral("Values of the write"));
    listRows_->setRootIsDecorated(false);
    listRows_->setUniformRowHeights(true);
    listRows_->setAllColumnsShowFocus(true);
    listRows_->setAlternatingRowColors(true);
    listRows_->setHeaderLabels({QStringLiteral("Number"), QStringLiteral("Name"), QStringLiteral("Written"),
                                QStringLiteral("In the drive"), QStringLiteral("What became of it")});
    for (int column = 0; column < listRows_->columnCount(); ++column)
        listRows_->setColumnWidth(column, ColumnCharacters[column] * fontMetrics().averageCharWidth());

    auto *layout = new QVBoxLayout(this);
    for (QWidget *part : std::initializer_list<QWidget *>{labelSummary_, labelEnd_, labelBackup_, checkAll_})
        layout->addWidget(part);
    layout->addWidget(listRows_, 1);
    layout->addWidget(MakeCommands());
    ShowReport({});
}

QSize FormVerifiedWrite::sizeHint() const
{
    int width = 4 * fontMetrics().height();
    for (const int characters : ColumnCharacters)
        width += characters * fontMetrics().averageCharWidth();
    return {width, 26 * fontMetrics().lineSpacing()};
}

QPushButton *FormVerifiedWrite::AddCommand(QWidget *commands, const char *name, const QString &caption,
                                           const std::function<void()> &run)
{
    auto *button = new QPushButton(caption, commands);
    button->setObjectName(QString::fromLatin1(name));
    On(button, &QPushButton::clicked, this, run);
    commands->layout()->addWidget(button);
    return button;
}

QWidget *FormVerifiedWrite::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    commandResume_ =
        AddCommand(commands, "CommandResume", QStringLiteral("&Resume"), [this] { commands_.resume(); });
    commandRetry_ = AddCommand(commands, "CommandRetry", QStringLiteral("Re&try Refused"),
                               [this] { commands_.retryRefused(); });
    commandCompare_ = AddCommand(commands, "CommandCompare", QStringLiteral("Com&pare with Before..."),
                                 [this] { commands_.compare(report_.backupPath); });
    layout->addStretch();
    layout->addWidget(MakeCommandClose());
    layout->addWidget(MakeCommandHelp());
    return commands;
}

void FormVerifiedWrite::ShowReport(const WriteReport &report)
{
    report_ = report;
    labelSummary_->setText(report.Summary(desk().table));
    labelEnd_->setText(EndText(report.end));
    labelBackup_->setText(report.backupPath.isEmpty()
                              ? QStringLiteral("No set was kept.")
                              : QStringLiteral("The drive's set of before: %1")
                                    .arg(QDir::toNativeSeparators(report.backupPath)));
    commandResume_->setEnabled(report.CanResume());
    commandRetry_->setEnabled(report.Count(Arrival::Refused) > 0);
    commandCompare_->setEnabled(!report.backupPath.isEmpty());
    const bool isAllThere = report.Count(Arrival::Verified) == int(report.rows.size());
    if (isAllThere != checkAll_->isChecked())
        checkAll_->setChecked(isAllThere);
    else
        ListRows();
}

void FormVerifiedWrite::ListRows()
{
    listRows_->clear();
    QList<QTreeWidgetItem *> items;
    for (const WrittenRow &row : report_.rows) {
        if (row.arrival == Arrival::Verified && !checkAll_->isChecked())
            continue;
        const int p = row.value.param;
        const ParamRecord &record = desk().table[p];
        auto *item = new QTreeWidgetItem;
        item->setText(NumberColumn, QString::number(p));
        item->setText(NameColumn, record.Name);
        item->setText(WrittenColumn, ShownText(row.value.rawValue, record.Attributes));
        item->setText(FoundColumn, row.rawFound ? ShownText(*row.rawFound, record.Attributes)
                                                : QStringLiteral("not read"));
        item->setText(BecameColumn, WriteReport::ArrivalText(row, desk().table));
        items.append(item);
    }
    listRows_->addTopLevelItems(items);
}

} // namespace quorvik
