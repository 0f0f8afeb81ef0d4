#include "link/forms/PortList.h"

#include "desktop/BoxColors.h"
#include "platform/Guard.h"
#include "platform/PortAddress.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPromise>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QThreadPool>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int PortsInSight = 6;

enum Column { ColumnPort, ColumnDevice, ColumnAdapter, ColumnSerialNumber, ColumnState };

struct ColumnText {
    const char *caption;
    const char *sample; ///< as wide as what it has to show in most cases
};

constexpr ColumnText Columns[] = {
    {"Port", "Com16 "},
    {"Device", "/dev/ttyUSB0 "},
    {"Adapter", "USB-Serial Controller"},
    {"Serial number", "Serial number "},
    {"State", "no permission (group dialout)"},
};

/** A device without a number is told by its path. */
bool IsSamePort(const PortStatus &one, const PortStatus &other)
{
    return one.number == other.number && (one.number > 0 || one.device == other.device);
}

} // namespace

PortList::PortList(const ParameterTable &table, const Ports &ports, const LinkTimings &timings,
                   QWidget *parent)
    : QWidget(parent)
    , ports_(ports)
    , finder_(table, timings)
    , treePorts_(new QTreeWidget(this))
    , commandFindDrive_(new QPushButton(this))
    , labelFound_(new QLabel(this))
{
    treePorts_->setObjectName(QStringLiteral("TreePorts"));
    treePorts_->setAccessibleName(QStringLiteral("Ports"));
    treePorts_->setRootIsDecorated(false);
    treePorts_->setUniformRowHeights(true);
    treePorts_->setAllColumnsShowFocus(true);
    treePorts_->setTextElideMode(Qt::ElideMiddle);
    treePorts_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QStringList captions;
    for (const ColumnText &column : Columns)
        captions.append(QLatin1String(column.caption));
    treePorts_->setHeaderLabels(captions);
    QHeaderView *header = treePorts_->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(ColumnAdapter, QHeaderView::Stretch);
    int width = treePorts_->verticalScrollBar()->sizeHint().width() + 2 * treePorts_->frameWidth();
    const QFontMetrics metrics = treePorts_->fontMetrics();
    for (int column = 0; const ColumnText &text : Columns) {
        const int wanted = metrics.horizontalAdvance(QLatin1String(text.sample)) + metrics.height();
        header->resizeSection(column++, wanted);
        width += wanted;
    }
    treePorts_->setMinimumWidth(width);
    // So many that the window goes on a small screen with large texts.
    treePorts_->setFixedHeight(header->sizeHint().height() + PortsInSight * (metrics.height() + 4) +
                               2 * treePorts_->frameWidth());

    commandFindDrive_->setObjectName(QStringLiteral("CommandFindDrive"));
    commandFindDrive_->setToolTip(
        QStringLiteral("Asks each free port for the properties of parameter 1, and chooses the one that "
                       "answers. Nothing is written."));
    commandFindDrive_->setAutoDefault(false);
    labelFound_->setObjectName(QStringLiteral("LabelFound"));
    labelFound_->setTextFormat(Qt::PlainText);
    // The window does not grow with the path of a device.
    labelFound_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *finding = new QHBoxLayout;
    finding->addWidget(commandFindDrive_);
    finding->addWidget(labelFound_, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(treePorts_);
    layout->addLayout(finding);
    // The longer one of its two captions, so that the row does not jump.
    commandFindDrive_->setText(QStringLiteral("Find &drive"));
    commandFindDrive_->setMinimumWidth(commandFindDrive_->sizeHint().width());

    On(treePorts_, &QTreeWidget::currentItemChanged, this,
       [this](QTreeWidgetItem *row) { ChooseRow(row, false); });
    On(treePorts_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *row) { ChooseRow(row, true); });
    On(treePorts_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem *row) { ChooseRow(row, true); });
    On(commandFindDrive_, &QPushButton::clicked, this, [this] { CommandFindDrive_Click(); });
    On(&finder_, &DriveFinder::Asking, this, [this](const PortStatus &port) {
        // What the last one answered stays in sight, for this follows at once.
        labelFound_->setText(told_ + port.Name() + QStringLiteral(": asking..."));
    });
    On(&finder_, &DriveFinder::Answered, this,
       [this](const PortStatus &port, const DriveProbe::Answer &answer) { TakeAnswer(port, answer); });
    On(&finder_, &DriveFinder::Finished, this,
       [this](const QList<PortStatus> &drives) { EndFinding(drives); });
    On(&looking_, &QFutureWatcherBase::finished, this, [this] {
        if (looking_.future().resultCount() > 0 && !finder_.IsRunning())
            Show(looking_.result());
    });
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { LookAgain(); });
    timerUpdateScreen_.start(LookForPortsMs);
    Refresh();
}

void PortList::SetNumber(int number)
{
    number_ = number;
    Mark(true);
}

void PortList::ShowOnlyPresent()
{
    onlyPresent_ = true;
    // There are few of them, and the adapter tells them apart.
    constexpr int rowsInSight = 4;
    treePorts_->setFixedHeight(treePorts_->height() -
                               (PortsInSight - rowsInSight) * (fontMetrics().height() + 4));
    treePorts_->setColumnHidden(ColumnSerialNumber, true);
    treePorts_->setMinimumWidth(treePorts_->minimumWidth() - fontMetrics().horizontalAdvance(QLatin1String(
                                                                 Columns[ColumnSerialNumber].sample)));
    Refresh();
}

void PortList::SetMayChoose(bool may)
{
    mayChoose_ = may;
    if (!may)
        StopFinding();
    commandFindDrive_->setEnabled(may);
}

void PortList::RefreshSoon()
{
    // Not from within an event of the list, whose rows it may replace.
    QMetaObject::invokeMethod(
        this, [this] { Guarded([this] { Refresh(); }); }, Qt::QueuedConnection);
}

void PortList::Refresh()
{
    // What another thread still looks at is older than this.
    looking_.setFuture({});
    if (!finder_.IsRunning())
        Show(ports_.Survey());
}

void PortList::LookAgain()
{
    // A port that is being asked would show as one in use.
    if (!isVisible() || finder_.IsRunning() || looking_.isRunning())
        return;
    auto promise = std::make_shared<QPromise<QList<PortStatus>>>();
    looking_.setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, ports = ports_.List()] {
        promise->addResult(Ports::WithUse(ports));
        promise->finish();
    });
}

void PortList::Show(QList<PortStatus> ports)
{
    if (onlyPresent_)
        ports.removeIf([this](const PortStatus &port) {
            return port.use == PortStatus::Use::NotPresent && port.number != number_;
        });
    if (ports == shown_)
        return;
    for (const PortStatus &port : ports)
        if (!port.CanBeAsked())
            answers_.erase(port.device);
    const QSignalBlocker quiet(treePorts_);
    // Where the user stands in the list, and what is in sight of it, stays.
    const PortStatus current = shown_.value(treePorts_->indexOfTopLevelItem(treePorts_->currentItem()));
    const int top = treePorts_->verticalScrollBar()->value();
    const bool hadCurrent = treePorts_->currentItem() != nullptr;
    treePorts_->clear();
    shown_ = ports;
    for (const PortStatus &port : ports) {
        auto *row = new QTreeWidgetItem(treePorts_);
        FillRow(*row, port);
        if (hadCurrent && IsSamePort(port, current))
            treePorts_->setCurrentItem(row);
    }
    Mark(false);
    treePorts_->verticalScrollBar()->setValue(top);
}

void PortList::FillRow(QTreeWidgetItem &row, const PortStatus &port) const
{
    const auto answer = answers_.find(port.device);
    const bool isAnswered = port.CanBeAsked() && answer != answers_.end();
    const QString state = !isAnswered ? port.Text()
                          : answer->second.kind == DriveProbe::Answer::Kind::Drive
                              ? QStringLiteral("a Sarvex drive answers")
                              : DriveFinder::TextOf(answer->second);
    QString texts[] = {port.number > 0 ? port.Name() : QString(), port.device, port.adapter,
                       port.serialNumber, state};
    if (const std::optional<PortAddress> address = PortAddress::Of(port.device)) {
        // In parts, which the columns have room for.
        texts[ColumnDevice] = address->Text().section(u':', 0, 0);
        texts[ColumnAdapter] = address->host;
        texts[ColumnSerialNumber] = QStringLiteral("port %1").arg(address->port);
    }
    for (int column = 0; const QString &text : texts) {
        row.setText(column, text);
        // Plain: the names come from the devices.
        row.setToolTip(column++, text.toHtmlEscaped());
    }
    // A list that is switched off is grey as a whole.
    const bool isPale = port.use == PortStatus::Use::NotPresent && isEnabled();
    for (int column = 0; column < int(std::size(Columns)); ++column)
        row.setData(column, Qt::ForegroundRole,
                    isPale ? QVariant(FaintText(palette().color(QPalette::Base))) : QVariant());
}

void PortList::Mark(bool isGoingThere)
{
    const QSignalBlocker quiet(treePorts_);
    for (qsizetype i = 0; i < shown_.size(); ++i) {
        QTreeWidgetItem *row = treePorts_->topLevelItem(int(i));
        const bool isChosen = number_ > 0 && shown_.at(i).number == number_;
        QFont font = treePorts_->font();
        font.setBold(isChosen);
        for (int column = 0; column < int(std::size(Columns)); ++column)
            row->setFont(column, font);
        if (isChosen && (isGoingThere || treePorts_->currentItem() == nullptr))
            treePorts_->setCurrentItem(row);
    }
}

void PortList::ChooseRow(QTreeWidgetItem *row, bool isClear)
{
    const int index = treePorts_->indexOfTopLevelItem(row);
    if (!mayChoose_ || index < 0)
        return;
    // The keys pass over a device without a number; it does not get one by that.
    const PortStatus port = shown_.at(index);
    if (port.number > 0 || isClear)
        Choose(port);
}

void PortList::Choose(const PortStatus &port)
{
    StopFinding();
    int number = port.number;
    if (number == 0) {
        number = ports_.NumberFor(port.device);
        if (number == 0)
            number = std::max(number_, Ports::First);
        ports_.SetDevice(number, port.device);
    }
    chosen_ = number_ = number;
    Mark(true);
    RefreshSoon();
    Q_EMIT Chosen(number);
}

void PortList::CommandFindDrive_Click()
{
    if (finder_.IsRunning()) {
        StopFinding();
        return;
    }
    answers_.clear();
    told_.clear();
    shown_.clear();
    Refresh();
    QList<PortStatus> ports = shown_;
    // Where it is most likely.
    std::stable_partition(ports.begin(), ports.end(),
                          [this](const PortStatus &port) { return port.number == number_; });
    finder_.Start(ports);
    ShowFinding();
}

void PortList::ShowFinding()
{
    commandFindDrive_->setText(finder_.IsRunning() ? QStringLiteral("Stop") : QStringLiteral("Find &drive"));
}

void PortList::StopFinding()
{
    if (!finder_.IsRunning())
        return;
    finder_.Cancel();
    labelFound_->clear();
    ShowFinding();
}

void PortList::TakeAnswer(const PortStatus &port, const DriveProbe::Answer &answer)
{
    answers_[port.device] = answer;
    told_ = port.Name() + QStringLiteral(": ") + DriveFinder::TextOf(answer) + QStringLiteral(".  ");
    for (qsizetype i = 0; i < shown_.size(); ++i)
        if (IsSamePort(shown_.at(i), port))
            FillRow(*treePorts_->topLevelItem(int(i)), port);
}

void PortList::EndFinding(const QList<PortStatus> &drives)
{
    ShowFinding();
    if (drives.isEmpty()) {
        labelFound_->setText(answers_.empty() ? QStringLiteral("There is no free port to ask.")
                                              : QStringLiteral("No drive answers on any free port."));
        return;
    }
    const PortStatus &first = drives.first();
    QString text = first.Name() + QStringLiteral(": ") + DriveFinder::TextOf(answers_.at(first.device));
    if (drives.size() > 1)
        text += QStringLiteral(", and %1 more").arg(drives.size() - 1);
    labelFound_->setText(text);
    Choose(first);
}

void PortList::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange)
        for (qsizetype i = 0; i < shown_.size(); ++i)
            FillRow(*treePorts_->topLevelItem(int(i)), shown_.at(i));
    QWidget::changeEvent(event);
}

void PortList::hideEvent(QHideEvent *event)
{
    StopFinding();
    QWidget::hideEvent(event);
}

} // namespace quorvik
