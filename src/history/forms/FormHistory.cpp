#include "history/forms/FormHistory.h"

#include "history/Journal.h"
#include "history/forms/ExportHistory.h"
#include "history/forms/FormStateAt.h"
#include "history/forms/HistoryFilters.h"
#include "history/forms/HistoryHost.h"
#include "history/forms/HistoryModel.h"
#include "history/forms/HistoryView.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "platform/Progress.h"
#include "settings/forms/ExportList.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <algorithm>

namespace quorvik
{

namespace
{

/** So long after a change of the journal the list follows, in milliseconds: a slider makes many. */
constexpr int FollowMs = 250;
constexpr int TickMs = 500;

QLabel *MakeLine(QWidget *parent, const QString &name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

const QString &FormHistory::Name()
{
    static const QString name = QStringLiteral("FormHistory");
    return name;
}

FormHistory::FormHistory(Desk &givenDesk, HistoryHost &host)
    : Form(givenDesk, Name(), QStringLiteral("History"), QStringLiteral("History.htm"))
    , ChooseExport([this](const QString &folder) {
        return ShowExportDialog(folder, this, desk().settings, desk().asker);
    })
    , host_(host)
    , filters_(new HistoryFilters(givenDesk, host, this))
    , model_(new HistoryModel(host.Reader(), this))
    , view_(new HistoryView(model_, this))
    , middle_(new QStackedWidget(this))
    , labelEmpty_(MakeLine(this, QStringLiteral("LabelEmpty")))
    , labelOutcome_(MakeLine(this, QStringLiteral("LabelOutcome")))
{
    labelEmpty_->setAlignment(Qt::AlignCenter);
    labelEmpty_->setMargin(2 * fontMetrics().height());
    middle_->addWidget(view_);
    middle_->addWidget(labelEmpty_);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(filters_);
    layout->addWidget(middle_, 1);
    layout->addWidget(MakeCommands());

    On(filters_, &HistoryFilters::Changed, this, [this] {
        labelOutcome_->hide();
        model_->SetFilter(filters_->Filter());
        ShowEmptiness();
    });
    On(view_, &HistoryView::Chosen, this, [this](const QModelIndex &line) { ShowInWindow(line); });
    On(view_, &HistoryView::Fetched, this, [this] { ShowEmptiness(); });
    On(view_, &HistoryView::CopyWanted, this, [this] { CopyLines(); });
    On(view_, &QWidget::customContextMenuRequested, this, [this](const QPoint &place) { ShowMenu(place); });
    timerFollow_.setObjectName(QStringLiteral("TimerFollow"));
    timerFollow_.setSingleShot(true);
    timerFollow_.setInterval(FollowMs);
    On(&timerFollow_, &QTimer::timeout, this, [this] { FollowJournal(); });
    On(&host.TheJournal(), &Journal::Written, this, [this] {
        if (!timerFollow_.isActive())
            timerFollow_.start();
    });
    timerUpdateScreen_.setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { FollowLink(); });
    timerUpdateScreen_.start(TickMs);
    host.Refresh();
    model_->SetFilter(filters_->Filter());
    ShowEmptiness();
    view_->setFocus();
}

QPushButton *FormHistory::MakeButton(const QString &name, const QString &caption, const QString &toolTip,
                                     void (FormHistory::*act)())
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    On(button, &QPushButton::clicked, this, [this, act] { (this->*act)(); });
    return button;
}

QWidget *FormHistory::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *rows = new QVBoxLayout(commands);
    rows->setContentsMargins({});
    rows->addWidget(labelOutcome_);
    labelOutcome_->hide();
    auto *layout = new QHBoxLayout;
    layout->addWidget(MakeButton(QStringLiteral("CommandTakeBack"), QStringLiteral("Ta&ke Back..."),
                                 QStringLiteral("Compares with what the selected values were before"),
                                 &FormHistory::CommandTakeBack_Click));
    layout->addWidget(MakeButton(QStringLiteral("CommandStateAt"), QStringLiteral("&State at This Time..."),
                                 QStringLiteral("Compares with what a drive held at a moment"),
                                 &FormHistory::CommandStateAt_Click));
    layout->addStretch(1);
    layout->addWidget(MakeButton(QStringLiteral("CommandExport"), QStringLiteral("E&xport..."),
                                 QStringLiteral("Writes all that the filters show to a CSV or PDF file"),
                                 &FormHistory::CommandExport_Click));
    layout->addWidget(MakeCommandHelp());
    layout->addWidget(MakeCommandClose());
    rows->addLayout(layout);
    return commands;
}

void FormHistory::ShowOnly(int p)
{
    filters_->ShowOnly(p);
}

void FormHistory::FollowLink()
{
    AskForDrive(desk().table.PortOpen() && !host_.ThisDrive());
    filters_->FollowLink();
}

void FormHistory::AskForDrive(bool isWanted)
{
    if (isWanted == !asked_.empty())
        return;
    ParameterTable &table = desk().table;
    if (isWanted)
        DriveIdentity::Of(
            [this, &table](int p) {
                if (p <= table.LastParam)
                    asked_.push_back(p);
                return 0;
            },
            table.LastParam);
    for (const int p : asked_) {
        if (isWanted)
            table.AddReadInterest(p);
        else
            table.RemoveReadInterest(p);
    }
    if (!isWanted)
        asked_.clear();
}

void FormHistory::Unload()
{
    AskForDrive(false);
}

void FormHistory::FollowJournal()
{
    view_->Follow();
    ShowEmptiness();
}

void FormHistory::ShowEmptiness()
{
    QString sentence;
    if (!model_->Failure().isEmpty())
        sentence = QStringLiteral("The journal cannot be read: %1").arg(model_->Failure());
    else if (model_->rowCount() == 0 && !model_->HasOlder())
        sentence =
            filters_->Filter().IsEmpty()
                ? QStringLiteral("Nothing is recorded yet. From now on each change of a value, and each "
                                 "file opened or saved, is listed here.")
                : QStringLiteral("Nothing that was recorded fits these filters.");
    labelEmpty_->setText(sentence);
    const bool hadFocus = view_->hasFocus();
    middle_->setCurrentIndex(sentence.isEmpty() ? 0 : 1);
    if (hadFocus && !sentence.isEmpty())
        filters_->setFocus();
    if (!view_->currentIndex().isValid() && model_->rowCount() > 0)
        view_->selectionModel()->setCurrentIndex(model_->index(0, 0), QItemSelectionModel::NoUpdate);
}

void FormHistory::ShowInWindow(const QModelIndex &line)
{
    const ShownRow *row = model_->RowAt(line);
    if (!row)
        return;
    const int p = row->row.param;
    if (p > desk().table.LastParam)
        Tell(QStringLiteral("This drive has no parameter %1.").arg(p));
    else if (!desk().ShowParameter(p))
        desk().ShowInList(p);
}

void FormHistory::ShowMenu(const QPoint &place)
{
    const QModelIndex line = view_->indexAt(place).siblingAtColumn(0);
    if (!line.isValid())
        return;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char *name, const QString &caption, const QKeySequence &keys, auto act) {
        QAction *action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(keys);
        On(action, &QAction::triggered, this, act);
    };
    if (const ShownRow *row = model_->RowAt(line)) {
        const QPersistentModelIndex kept = line;
        add("mnuHistoryShow", QStringLiteral("&Show in Window"), QKeySequence(Qt::Key_Return),
            [this, kept] { ShowInWindow(kept); });
        add("mnuHistoryOnly", QStringLiteral("&Only This Parameter"), {},
            [this, p = row->row.param] { ShowOnly(p); });
    }
    add("mnuHistoryTakeBack", QStringLiteral("&Take Back..."), {}, [this] { CommandTakeBack_Click(); });
    add("mnuHistoryStateAt", QStringLiteral("State &at This Time..."), {},
        [this] { CommandStateAt_Click(); });
    add("mnuHistoryCopy", QStringLiteral("&Copy"), QKeySequence(QKeySequence::Copy), [this] { CopyLines(); });
    menu->popup(view_->viewport()->mapToGlobal(place));
}

void FormHistory::CopyLines()
{
    QStringList lines;
    for (const QModelIndex &line : view_->SelectedLines())
        lines += model_->Spoken(line);
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void FormHistory::CommandTakeBack_Click()
{
    std::vector<ShownRow> rows;
    for (const QModelIndex &line : view_->SelectedLines())
        for (const ShownRow &row : model_->RowsAt(line))
            // A line and one below it may both be selected.
            if (std::ranges::find(rows, row.id, &ShownRow::id) == rows.end())
                rows.push_back(row);
    if (rows.empty())
        Tell(QStringLiteral("Select what is to be taken back: nothing that is selected changed a value."));
    else
        host_.TakeBack(rows);
}

void FormHistory::CommandStateAt_Click()
{
    std::vector<JournalSighting> drives = host_.Drives();
    if (drives.empty()) {
        Tell(QStringLiteral("The history knows of no drive yet: nothing was written to one."));
        return;
    }
    const QPointer<FormHistory> self = this;
    FormStateAt dialog(desk(), this, std::move(drives), model_->ActionAt(view_->currentIndex()));
    if (dialog.exec() == QDialog::Accepted && self)
        host_.StateAt(dialog.Drive(), dialog.UtcMs());
}

void FormHistory::CommandExport_Click()
{
    const std::optional<QString> path = ChooseExport(FilePath(desk().document.FileName));
    if (!path)
        return;
    ExportHistory exporting(
        *path, host_.TheJournal().Path(),
        {.filter = filters_->Filter(), .filterText = filters_->Text(), .made = JournalTime::Now()});
    // How many there are is known at the end only.
    Progress progress(QStringLiteral("Exporting History"), 0, 0);
    On(&exporting, &ExportHistory::Advanced, &progress,
       [&progress](int rows) { progress.Say(QStringLiteral("%1 rows written").arg(rows)); });
    On(&exporting, &QThread::finished, &progress, [&progress] { progress.End(); });
    On(&progress, &Progress::CancelWanted, &exporting, [&exporting] { exporting.Cancel(); });
    const QPointer<FormHistory> self = this;
    Asker &asker = desk().asker;
    exporting.start();
    asker.ShowProgress(progress);
    exporting.wait();
    if (!self)
        return;
    if (!exporting.Failure().isEmpty())
        asker.MsgBox(exporting.Failure(), MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    else if (exporting.IsCancelled())
        Tell(QStringLiteral("Nothing was exported."));
    else
        Tell(QStringLiteral("%1 %2 exported to \"%3\".")
                 .arg(exporting.Rows())
                 .arg(exporting.Rows() == 1 ? QStringLiteral("row") : QStringLiteral("rows"),
                      FileTitle(*path)));
}

void FormHistory::Tell(const QString &sentence)
{
    labelOutcome_->setText(sentence);
    labelOutcome_->show();
    QAccessibleEvent event(labelOutcome_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvik
