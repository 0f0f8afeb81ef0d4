#include "blocks/FormTripRecord.h"

#include "desktop/PlainText.h"
#include "desktop/SaveDialog.h"
#include "model/Document.h"
#include "model/PathFunctions.h"
#include "operations/TripReport.h"
#include "platform/Asker.h"
#include "platform/AtomicFile.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTreeWidget>

namespace quorvik
{

namespace
{

/** Widths of the columns in characters. */
constexpr int ColumnCharacters[] = {11, 9, 26, 16, 38};
constexpr int TickMs = 500;

std::optional<QString> ShowSaveDialog(const QString &suggested, QWidget *owner, const Desk &desk)
{
    QFileDialog dialog(owner, QStringLiteral("Export"));
    dialog.setNameFilter(QStringLiteral("Comma-separated values (*.csv)"));
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    return RunExportDialog(dialog, suggested, desk.settings, desk.asker);
}

} // namespace

FormTripRecord::FormTripRecord(Desk &givenDesk)
    : Form(givenDesk, QStringLiteral("FormTripRecord"), Caption(), QStringLiteral("Faults.htm"))
    , ChooseExport([this](const QString &suggested) { return ShowSaveDialog(suggested, this, desk()); })
    , listTrips_(new QListWidget(this))
    , labelSummary_(new QLabel(this))
    , listValues_(new QTreeWidget(this))
{
    auto *caption = new QLabel(QStringLiteral("The last fi&ve trips, kept until the program ends:"), this);
    caption->setBuddy(listTrips_);
    listTrips_->setObjectName(QStringLiteral("ListTrips"));
    listTrips_->setAccessibleName(QStringLiteral("Trips, most recent first"));
    // Room for all that are kept, whether or not there are so many yet.
    const int bar = listTrips_->horizontalScrollBar()->sizeHint().height();
    listTrips_->setFixedHeight(int(TripRecords::Most) * (fontMetrics().lineSpacing() + 4) + bar);
    On(listTrips_, &QListWidget::currentRowChanged, this, [this] { ShowTrip(); });

    labelSummary_->setObjectName(QStringLiteral("LabelSummary"));
    labelSummary_->setTextFormat(Qt::PlainText);
    labelSummary_->setWordWrap(true);

    listValues_->setObjectName(QStringLiteral("ListValues"));
    listValues_->setAccessibleName(QStringLiteral("Values at the trip"));
    listValues_->setRootIsDecorated(false);
    listValues_->setUniformRowHeights(true);
    listValues_->setAllColumnsShowFocus(true);
    listValues_->setAlternatingRowColors(true);
    listValues_->setHeaderLabels(TripHeads());
    for (int column = 0; column < listValues_->columnCount(); ++column)
        listValues_->setColumnWidth(column, ColumnCharacters[column] * fontMetrics().averageCharWidth());

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(listTrips_);
    layout->addWidget(labelSummary_);
    layout->addWidget(listValues_, 1);
    layout->addWidget(MakeCommands());
    On(&desk().trips, &TripRecords::Recorded, this, [this] { ListTrips(); });
    On(&desk().trips, &TripRecords::Completed, this, [this] { ListTrips(); });
    timerUpdateScreen_.setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { FollowRecording(); });
    timerUpdateScreen_.start(TickMs);
    ListTrips();
}

QSize FormTripRecord::sizeHint() const
{
    int width = 4 * fontMetrics().height();
    for (const int characters : ColumnCharacters)
        width += characters * fontMetrics().averageCharWidth();
    return {width, 30 * fontMetrics().lineSpacing()};
}

QWidget *FormTripRecord::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    commandExport_ = new QPushButton(QStringLiteral("E&xport..."), commands);
    commandExport_->setObjectName(QStringLiteral("CommandExport"));
    SetPlainToolTip(commandExport_, QStringLiteral("Writes the shown trip to a CSV file"));
    On(commandExport_, &QPushButton::clicked, this, [this] { CommandExport_Click(); });
    layout->addWidget(commandExport_);
    commandRecording_ = new QPushButton(QStringLiteral("&Recording Before It..."), commands);
    commandRecording_->setObjectName(QStringLiteral("CommandRecording"));
    SetPlainToolTip(commandRecording_,
                    QStringLiteral("Shows in the trend recorder what was recorded until the trip"));
    On(commandRecording_, &QPushButton::clicked, this, [this] {
        if (const QString path = desk().RecordingOfTrip(chosen_); !path.isEmpty())
            desk().ShowRecording(path);
    });
    layout->addWidget(commandRecording_);
    layout->addStretch();
    layout->addWidget(MakeCommandClose());
    layout->addWidget(MakeCommandHelp());
    return commands;
}

const TripRecord *FormTripRecord::Chosen() const
{
    for (const TripRecord &record : desk().trips.Records())
        if (record.number == chosen_)
            return &record;
    return nullptr;
}

void FormTripRecord::ListTrips()
{
    int row = 0;
    {
        const QSignalBlocker whileFilled(listTrips_);
        listTrips_->clear();
        for (const TripRecord &record : desk().trips.Records()) {
            if (record.number == chosen_)
                row = listTrips_->count();
            listTrips_->addItem(
                record.seen.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) +
                (record.isOfBefore ? QStringLiteral("  tripped before: ") : QStringLiteral("  ")) +
                TripFaultsText(record));
        }
        listTrips_->setCurrentRow(desk().trips.Records().empty() ? -1 : row);
    }
    ShowTrip();
}

void FormTripRecord::ShowTrip()
{
    const int row = listTrips_->currentRow();
    if (row >= 0)
        chosen_ = desk().trips.Records().at(std::size_t(row)).number;
    const TripRecord *record = Chosen();
    commandExport_->setEnabled(record != nullptr);
    FollowRecording();
    labelSummary_->setText(record
                               ? TripSummary(*record)
                               : QStringLiteral("The drive has not tripped while the program was on line."));
    const int scrolled = listValues_->verticalScrollBar()->value();
    listValues_->clear();
    if (!record)
        return;
    QList<QTreeWidgetItem *> items;
    for (const TripValue &value : record->values)
        items.append(new QTreeWidgetItem(TripFields(value, desk().table)));
    listValues_->addTopLevelItems(items);
    listValues_->verticalScrollBar()->setValue(scrolled);
}

void FormTripRecord::FollowRecording()
{
    commandRecording_->setVisible(Chosen() != nullptr && !desk().RecordingOfTrip(chosen_).isEmpty());
}

void FormTripRecord::CommandExport_Click()
{
    const TripRecord *record = Chosen();
    if (!record)
        return;
    // While the dialog is open another trip may push this one out.
    const TripRecord exported = *record;
    const Document &document = desk().document;
    const QString name = exported.seen.toString(QStringLiteral("'Trip' yyyy-MM-dd HHmmss'.csv'"));
    const std::optional<QString> path = ChooseExport(FilePath(document.FileName) + name);
    if (!path)
        return;
    const QString failure = AtomicFile::Write(*path, TripAsCsv(exported, desk().table, document.FileName));
    if (!failure.isEmpty())
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, QString());
}

void OpenTripRecord(Desk &desk)
{
    const int position = desk.forms.FindOpenBlock(FormTripRecord::Caption());
    desk.ShowChild(position > 0 ? desk.forms.At(position) : new FormTripRecord(desk), true);
}

} // namespace quorvik
