#include "trend/forms/FormRecordings.h"

#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "trend/TrendStore.h"
#include "trend/forms/RecordingTexts.h"
#include "trend/forms/TrendExport.h"
#include "trend/forms/TrendHost.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <algorithm>
#include <set>

namespace quorvik
{

namespace
{

/** Widths of the columns in characters. */
constexpr int ColumnCharacters[] = {23, 34, 22, 11, 40, 36};
constexpr int NotesLines = 3;
constexpr int ListLines = 14;
constexpr int MostTitle = 120;
/** So long after a change the list follows, in milliseconds: several may come at once. */
constexpr int FollowMs = 150;

} // namespace

FormRecordings::FormRecordings(Desk &givenDesk, TrendHost &host, OpenRecording open)
    : Form(givenDesk, Name(), QStringLiteral("Recordings"), QStringLiteral("Trend.htm"))
    , ChooseExport([this](const QString &folder) {
        return ShowTrendExportDialog(QStringLiteral("csv"), folder, this, desk().settings, desk().asker);
    })
    , host_(host)
    , open_(std::move(open))
    , textFilter_(new QLineEdit(this))
    , listRecordings_(new QTreeWidget(this))
    , labelState_(new QLabel(this))
    , textTitle_(new QLineEdit(this))
    , textNotes_(new QPlainTextEdit(this))
{
    auto *caption = new QLabel(QStringLiteral("F&ilter:"), this);
    caption->setBuddy(textFilter_);
    textFilter_->setObjectName(QStringLiteral("TextFilter"));
    textFilter_->setAccessibleName(QStringLiteral("Filter"));
    textFilter_->setPlaceholderText(QStringLiteral("part of a title, channel, drive or note"));
    textFilter_->setClearButtonEnabled(true);
    On(textFilter_, &QLineEdit::textChanged, this, [this] { Filter(); });
    auto *filter = new QHBoxLayout;
    filter->addWidget(caption);
    filter->addWidget(textFilter_, 1);

    listRecordings_->setObjectName(QStringLiteral("ListRecordings"));
    listRecordings_->setAccessibleName(QStringLiteral("Recordings, the newest first"));
    listRecordings_->setRootIsDecorated(false);
    listRecordings_->setUniformRowHeights(true);
    listRecordings_->setAllColumnsShowFocus(true);
    listRecordings_->setAlternatingRowColors(true);
    listRecordings_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    listRecordings_->setHeaderLabels(RecordingTexts::Heads());
    for (int column = 0; column < listRecordings_->columnCount(); ++column)
        listRecordings_->setColumnWidth(column, ColumnCharacters[column] * fontMetrics().averageCharWidth());
    On(listRecordings_, &QTreeWidget::itemSelectionChanged, this, [this] { Follow(); });
    On(listRecordings_, &QTreeWidget::itemActivated, this, [this] { CommandOpen_Click(); });
    auto *remove = new QShortcut(QKeySequence::Delete, listRecordings_);
    remove->setContext(Qt::WidgetShortcut);
    On(remove, &QShortcut::activated, this, [this] { CommandDelete_Click(); });

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(filter);
    layout->addWidget(listRecordings_, 1);
    layout->addWidget(MakeFields());
    layout->addWidget(MakeCommands());
    timerFollow_.setObjectName(QStringLiteral("TimerFollow"));
    timerFollow_.setSingleShot(true);
    timerFollow_.setInterval(FollowMs);
    On(&timerFollow_, &QTimer::timeout, this, [this] { List(); });
    On(&host.Store(), &TrendStore::ListChanged, this, [this] {
        if (!timerFollow_.isActive())
            timerFollow_.start();
    });
    List();
    if (listRecordings_->topLevelItemCount() > 0)
        listRecordings_->setCurrentItem(listRecordings_->topLevelItem(0));
    listRecordings_->setFocus();
}

QSize FormRecordings::sizeHint() const
{
    int width = 4 * fontMetrics().height();
    for (const int characters : ColumnCharacters)
        width += characters * fontMetrics().averageCharWidth();
    const int others = layout()->sizeHint().height() - listRecordings_->sizeHint().height();
    return {width, others + ListLines * fontMetrics().lineSpacing()};
}

QWidget *FormRecordings::MakeFields()
{
    auto *fields = new QWidget(this);
    auto *layout = new QGridLayout(fields);
    layout->setContentsMargins({});
    labelState_->setObjectName(QStringLiteral("LabelState"));
    labelState_->setTextFormat(Qt::PlainText);
    labelState_->setWordWrap(true);
    textTitle_->setObjectName(QStringLiteral("TextTitle"));
    textTitle_->setAccessibleName(QStringLiteral("Title"));
    textTitle_->setMaxLength(MostTitle);
    textNotes_->setObjectName(QStringLiteral("TextNotes"));
    textNotes_->setAccessibleName(QStringLiteral("Notes"));
    textNotes_->setTabChangesFocus(true);
    const int margins = 2 * (textNotes_->frameWidth() + int(textNotes_->document()->documentMargin()));
    textNotes_->setFixedHeight(NotesLines * fontMetrics().lineSpacing() + margins);
    auto *title = new QLabel(QStringLiteral("Tit&le:"), fields);
    title->setBuddy(textTitle_);
    auto *notes = new QLabel(QStringLiteral("&Notes:"), fields);
    notes->setBuddy(textNotes_);
    layout->addWidget(labelState_, 0, 0, 1, 2);
    layout->addWidget(title, 1, 0);
    layout->addWidget(textTitle_, 1, 1);
    layout->addWidget(notes, 2, 0, Qt::AlignTop);
    layout->addWidget(textNotes_, 2, 1);
    return fields;
}

QPushButton *FormRecordings::MakeButton(const char *name, const QString &caption, const QString &toolTip,
                                        void (FormRecordings::*act)())
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(toolTip);
    On(button, &QPushButton::clicked, this, [this, act] { (this->*act)(); });
    return button;
}

QWidget *FormRecordings::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    commandOpen_ = MakeButton("CommandOpen", QStringLiteral("O&pen"),
                              QStringLiteral("Shows the recording in the trend window (Enter)"),
                              &FormRecordings::CommandOpen_Click);
    commandOverlay_ = MakeButton("CommandOverlay", QStringLiteral("O&verlay"),
                                 QStringLiteral("Lays it over what the trend window shows"),
                                 &FormRecordings::CommandOverlay_Click);
    commandKeep_ = MakeButton("CommandKeep", QStringLiteral("&Keep"),
                              QStringLiteral("Keeps it for good, with this title and these notes"),
                              &FormRecordings::CommandKeep_Click);
    commandDelete_ =
        MakeButton("CommandDelete", QStringLiteral("&Delete..."), QStringLiteral("Deletes the file (Delete)"),
                   &FormRecordings::CommandDelete_Click);
    commandExport_ =
        MakeButton("CommandExport", QStringLiteral("E&xport..."),
                   QStringLiteral("Writes all samples to a CSV file"), &FormRecordings::CommandExport_Click);
    for (QPushButton *button : {commandOpen_, commandOverlay_, commandKeep_, commandExport_, commandDelete_})
        layout->addWidget(button);
    layout->addStretch(1);
    layout->addWidget(MakeCommandHelp());
    layout->addWidget(MakeCommandClose());
    return commands;
}

void FormRecordings::List()
{
    std::set<QString> selected;
    for (const StoredRecording *recording : Selected())
        selected.insert(recording->path);
    const QTreeWidgetItem *const currentItem = listRecordings_->currentItem();
    const QString current =
        currentItem == nullptr ? QString() : currentItem->data(0, Qt::UserRole).toString();
    recordings_ = host_.Store().List();
    {
        const QSignalBlocker whileFilled(listRecordings_);
        listRecordings_->clear();
        for (const StoredRecording &recording : recordings_) {
            auto *item = new QTreeWidgetItem(listRecordings_, RecordingTexts::Fields(recording));
            item->setData(0, Qt::UserRole, recording.path);
            if (recording.path == current)
                listRecordings_->setCurrentItem(item, 0, QItemSelectionModel::NoUpdate);
            item->setSelected(selected.contains(recording.path));
        }
    }
    Filter();
}

void FormRecordings::Filter()
{
    const QString text = textFilter_->text().trimmed();
    for (int i = 0; i < listRecordings_->topLevelItemCount(); ++i) {
        const StoredRecording &recording = recordings_[std::size_t(i)];
        const QStringList texts = RecordingTexts::Fields(recording) << recording.head.notes;
        const bool isShown = std::ranges::any_of(
            texts, [&](const QString &part) { return part.contains(text, Qt::CaseInsensitive); });
        listRecordings_->topLevelItem(i)->setHidden(!isShown);
    }
    Follow();
}

void FormRecordings::Choose(const QString &path)
{
    List();
    for (int i = 0; i < listRecordings_->topLevelItemCount(); ++i)
        if (QTreeWidgetItem *item = listRecordings_->topLevelItem(i);
            item->data(0, Qt::UserRole).toString() == path)
            listRecordings_->setCurrentItem(item, 0,
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

std::vector<const StoredRecording *> FormRecordings::Selected() const
{
    std::vector<const StoredRecording *> selected;
    for (int i = 0; i < listRecordings_->topLevelItemCount(); ++i)
        if (const QTreeWidgetItem *item = listRecordings_->topLevelItem(i);
            item->isSelected() && !item->isHidden())
            selected.push_back(&recordings_[std::size_t(i)]);
    return selected;
}

void FormRecordings::Follow()
{
    const std::vector<const StoredRecording *> selected = Selected();
    const StoredRecording *const one = selected.size() == 1 ? selected.front() : nullptr;
    const bool canRead =
        !selected.empty() && std::ranges::all_of(selected, [](const StoredRecording *recording) {
            return recording->failure.isEmpty();
        });
    commandOpen_->setEnabled(one != nullptr && canRead);
    commandOverlay_->setEnabled(canRead);
    commandKeep_->setEnabled(one != nullptr && canRead);
    commandExport_->setEnabled(one != nullptr && canRead);
    commandDelete_->setEnabled(std::ranges::any_of(
        selected, [](const StoredRecording *recording) { return !recording->isRunning; }));
    textTitle_->setEnabled(commandKeep_->isEnabled());
    textNotes_->setEnabled(commandKeep_->isEnabled());
    if (recordings_.empty())
        Tell(QStringLiteral("There are no recordings yet. What the trend window records is listed here."));
    else if (selected.size() > 1)
        Tell(QStringLiteral("%1 recordings are selected.").arg(selected.size()));
    else
        Tell(one == nullptr ? QString() : RecordingTexts::State(*one));
    // What the user is writing stays when the list is read anew.
    const QString path = one == nullptr ? QString() : one->path;
    if (path == shown_)
        return;
    shown_ = path;
    textTitle_->setText(one == nullptr ? QString() : one->head.title);
    textNotes_->setPlainText(one == nullptr ? QString() : one->head.notes);
}

void FormRecordings::Tell(const QString &sentence)
{
    if (labelState_->text() == sentence)
        return;
    labelState_->setText(sentence);
    QAccessibleEvent event(labelState_, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void FormRecordings::CommandOpen_Click()
{
    if (commandOpen_->isEnabled())
        open_(Selected().front()->path, false);
}

void FormRecordings::CommandOverlay_Click()
{
    // It may list them anew.
    QStringList paths;
    for (const StoredRecording *recording : Selected())
        paths += recording->path;
    for (const QString &path : paths)
        open_(path, true);
}

void FormRecordings::CommandKeep_Click()
{
    const std::vector<const StoredRecording *> selected = Selected();
    if (selected.size() != 1)
        return;
    const QString failure = host_.Store().Keep(selected.front()->path, textTitle_->text().simplified(),
                                               textNotes_->toPlainText());
    if (!failure.isEmpty())
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    List();
}

void FormRecordings::CommandExport_Click()
{
    const std::vector<const StoredRecording *> selected = Selected();
    if (selected.size() != 1)
        return;
    const QString recordingPath = selected.front()->path;
    const std::optional<QString> path = ChooseExport(FilePath(desk().document.FileName));
    if (!path)
        return;
    QString failure;
    const TrendDataPtr recording = host_.Store().Load(recordingPath, &failure);
    if (!recording) {
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
        return;
    }
    const QPointer<FormRecordings> self = this;
    Asker &asker = desk().asker;
    const TrendExportResult result = ExportTrendCsv(*path, recording, asker);
    if (result.isFailed)
        asker.MsgBox(result.sentence, MsgButtons::Ok, MsgIcon::Exclamation, QString());
    else if (self)
        Tell(result.sentence);
}

void FormRecordings::CommandDelete_Click()
{
    QStringList paths;
    QString name;
    for (const StoredRecording *recording : Selected())
        if (!recording->isRunning) {
            paths += recording->path;
            name = RecordingTexts::When(*recording);
        }
    if (paths.isEmpty())
        return;
    Question question;
    question.text = paths.size() == 1 ? QStringLiteral("Delete the recording of %1?").arg(name)
                                      : QStringLiteral("Delete these %1 recordings?").arg(paths.size());
    question.title = windowTitle();
    question.explanation = QStringLiteral("Nothing brings it back.");
    question.choices = {{MsgAnswer::Yes, QStringLiteral("Delete")}, {MsgAnswer::No, QStringLiteral("Keep")}};
    question.safe = MsgAnswer::No;
    if (desk().asker.Ask(question) != MsgAnswer::Yes)
        return;
    QStringList failures;
    for (const QString &path : paths)
        if (const QString failure = host_.Store().Remove(path); !failure.isEmpty())
            failures += failure;
    List();
    if (!failures.isEmpty())
        desk().asker.MsgBox(failures.join(QLatin1Char('\n')), MsgButtons::Ok, MsgIcon::Exclamation,
                            windowTitle());
}

} // namespace quorvik
