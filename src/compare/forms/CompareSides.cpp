#include "compare/forms/CompareSides.h"

#include "compare/DriveSet.h"
#include "compare/forms/CompareHost.h"
#include "desktop/Form.h"
#include "desktop/PlainText.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "operations/SaveCommands.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "settings/SettingsTables.h"

#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

namespace quorvik
{

namespace
{

using Kind = CompareSource::Kind;

constexpr int Third = 2;
constexpr int FewestCharacters = 6;

const char *const Ordinals[] = {"first", "second", "third"};

/** With its file, which an export should name. */
QString OpenSetName(const Document &document)
{
    QString name = QStringLiteral("open set");
    if (document.FileName == Document::Unnamed())
        return name;
    return name + QStringLiteral(" (") + ShowableText(FileTitle(document.FileName), false) + u')';
}

QString Now(const Desk &desk)
{
    return desk.Now().time().toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

CompareSides::CompareSides(Desk &desk, CompareHost &host, QWidget *parent)
    : QWidget(parent)
    , desk_(desk)
    , host_(host)
{
    drive_.name = QStringLiteral("drive");
    driveFailure_ = QStringLiteral("The drive has not been read yet. \"Read Drive\" does so.");
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    for (int side = 0; side < MostSets; ++side)
        layout->addWidget(MakeSide(side), 1);
    // Behind the sets, for Tab too.
    readDrive_ = new QPushButton(QStringLiteral("&Read Drive"), this);
    readDrive_->setObjectName(QStringLiteral("CommandReadDrive"));
    readDrive_->setToolTip(QStringLiteral("Reads the drive for this comparison; goes on line for it"));
    On(readDrive_, &QPushButton::clicked, this, [this] { ReadDrive(); });
    layout->addWidget(readDrive_);
    sources_ = {CompareSource{Kind::OpenSet},
                CompareSource{desk.table.PortOpen() ? Kind::Drive : Kind::Factory}, CompareSource{}};
    ListSources();
    for (int side = 0; side < MostSets; ++side)
        Load(side);
}

QWidget *CompareSides::MakeSide(int side)
{
    auto *holder = new QWidget(this);
    auto *layout = new QHBoxLayout(holder);
    layout->setContentsMargins({});
    const QString ordinal = QString::fromLatin1(Ordinals[side]);
    auto *list = new QComboBox(holder);
    list->setObjectName(ControlName("ComboSide", side));
    list->setAccessibleName(QStringLiteral("The %1 set").arg(ordinal));
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(FewestCharacters);
    list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    On(list, &QComboBox::activated, this,
       [this, side, list] { Select(side, list->currentData().value<CompareSource>()); });
    // A long name is not shown whole.
    On(list, &QComboBox::currentTextChanged, list,
       [list](const QString &text) { SetPlainToolTip(list, text); });
    lists_[std::size_t(side)] = list;
    auto *label = new QLabel(QStringLiteral("Set &%1:").arg(side + 1), holder);
    label->setBuddy(list);
    auto *choose = new QToolButton(holder);
    choose->setObjectName(ControlName("CommandFile", side));
    choose->setText(QStringLiteral("..."));
    choose->setToolTip(QStringLiteral("Choose a file"));
    choose->setAccessibleName(QStringLiteral("Choose a file as the %1 set").arg(ordinal));
    choose->setFocusPolicy(Qt::StrongFocus);
    On(choose, &QToolButton::clicked, this, [this, side] { ChooseFile(side); });
    layout->addWidget(label);
    layout->addWidget(list, 1);
    layout->addWidget(choose);
    return holder;
}

void CompareSides::ListSources()
{
    QList<CompareSource> sources{{Kind::OpenSet}, {Kind::Drive}, {Kind::Factory}};
    if (host_.UnwrittenEntries() || Uses({Kind::Unwritten}))
        sources.append({Kind::Unwritten});
    if (!past_.name.isEmpty())
        sources.append({Kind::Past});
    sources += files_;
    for (const CompareHost::KeptSet &kept : host_.KeptSets())
        sources.append({Kind::Backup, kept.path});
    for (int side = 0; side < MostSets; ++side) {
        QComboBox *list = lists_[std::size_t(side)];
        list->clear();
        if (side == Third)
            list->addItem(QStringLiteral("(none)"), QVariant::fromValue(CompareSource{}));
        for (const CompareSource &source : sources)
            list->addItem(CaptionOf(source), QVariant::fromValue(source));
        for (int i = 0; i < list->count(); ++i)
            if (list->itemData(i).value<CompareSource>() == Source(side))
                list->setCurrentIndex(i);
    }
}

QString CompareSides::CaptionOf(const CompareSource &source) const
{
    switch (source.kind) {
    case Kind::OpenSet:
        return QStringLiteral("Open set");
    case Kind::Drive:
        return QStringLiteral("Drive");
    case Kind::Factory:
        return QStringLiteral("Factory set");
    case Kind::Backup:
        return QStringLiteral("Backup ") + ShowableText(QFileInfo(source.path).completeBaseName(), false);
    case Kind::File:
        return ShowableText(FileTitle(source.path), false);
    case Kind::Unwritten:
        return QStringLiteral("Entries not written");
    case Kind::Past:
        return past_.name;
    case Kind::None:
        break;
    }
    return {};
}

int CompareSides::Count() const
{
    return Source(Third).kind == Kind::None ? MostSets - 1 : MostSets;
}

bool CompareSides::Uses(const CompareSource &source) const
{
    return std::ranges::find(sources_, source) != sources_.end();
}

std::vector<const ParameterSet *> CompareSides::Sets() const
{
    std::vector<const ParameterSet *> sets;
    sets.reserve(MostSets);
    for (int side = 0; side < Count(); ++side)
        sets.push_back(&Set(side));
    return sets;
}

QStringList CompareSides::Names() const
{
    QStringList names;
    for (int side = 0; side < Count(); ++side)
        names += Set(side).name;
    return names;
}

QStringList CompareSides::Failures() const
{
    QStringList failures;
    for (int side = 0; side < Count(); ++side)
        if (const QString &failure = failures_[std::size_t(side)];
            !failure.isEmpty() && !failures.contains(failure))
            failures += failure;
    return failures;
}

bool CompareSides::IsTarget(int side) const
{
    const CompareSource &source = Source(side);
    return source.kind == Kind::OpenSet || source.kind == Kind::Drive ||
           (source.kind == Kind::File && host_.Saving().RefusalOf(source.path).isEmpty());
}

void CompareSides::FollowLink()
{
    isDriveCertain_ = isDriveCertain_ && desk_.table.PortOpen();
}

void CompareSides::Select(int side, const CompareSource &source)
{
    sources_[std::size_t(side)] = source;
    ListSources();
    Load(side);
    Q_EMIT Changed();
}

void CompareSides::ListPast(const ParameterSet &set, const QString &note)
{
    past_ = set;
    pastNote_ = note;
    ListSources();
    Reload({Kind::Past});
}

void CompareSides::ChooseFile(int side)
{
    const QString folder = FilePath(desk_.document.FileName);
    const std::optional<QString> path =
        desk_.asker.ShowOpen({QStringLiteral("Compare with File"), folder, QString()});
    if (!path)
        return;
    CompareSource source{Kind::File, *path};
    // A backup stays one, however it was found: nothing is copied into it.
    const QString real = QFileInfo(*path).canonicalFilePath();
    for (const CompareHost::KeptSet &kept : host_.KeptSets())
        if (!real.isEmpty() && QFileInfo(kept.path).canonicalFilePath() == real)
            source = {Kind::Backup, kept.path};
    if (source.kind == Kind::File && !files_.contains(source))
        files_.append(source);
    Select(side, source);
}

void CompareSides::Load(int side)
{
    const CompareSource &source = Source(side);
    ParameterSet &set = sets_[std::size_t(side)];
    QString &failure = failures_[std::size_t(side)];
    failure.clear();
    switch (source.kind) {
    case Kind::OpenSet:
        set = ParameterSet::Of(desk_.table, OpenSetName(desk_.document));
        break;
    case Kind::Drive:
        set = drive_;
        failure = driveFailure_;
        break;
    case Kind::Factory:
        set = ParameterSet::FactoryOf(desk_.table, QStringLiteral("factory set"));
        break;
    case Kind::File:
    case Kind::Backup:
        set = ParameterSet::FromFile(source.path, desk_.table, failure);
        set.name = source.kind == Kind::Backup ? CaptionOf(source).replace(0, 1, u'b') : CaptionOf(source);
        break;
    case Kind::Unwritten:
        set = host_.UnwrittenEntries().value_or(ParameterSet{});
        set.name = QStringLiteral("entries not written");
        break;
    case Kind::Past:
        set = past_;
        failure = pastNote_;
        break;
    case Kind::None:
        set = {};
        break;
    }
}

void CompareSides::Reload(const CompareSource &source)
{
    bool isUsed = false;
    for (int side = 0; side < Count(); ++side)
        if (Source(side) == source) {
            Load(side);
            isUsed = true;
        }
    if (isUsed)
        Q_EMIT Changed();
}

void CompareSides::ReadDrive()
{
    ParameterSet set;
    // Reading waits, and the window may be closed meanwhile.
    const QPointer<CompareSides> self = this;
    readDrive_->setEnabled(false);
    const OperationResult result = host_.ReadDrive(set);
    if (!self)
        return;
    readDrive_->setEnabled(true);
    const bool isAnyKnown = std::ranges::find(set.known, true) != set.known.end();
    // A reading from which nothing came leaves what was read before.
    if (!isAnyKnown) {
        driveFailure_ = drive_.known.empty()
                            ? QStringLiteral("The drive could not be read. \"Read Drive\" tries again.")
                            : QStringLiteral("The drive could not be read again: its values are older.");
    } else {
        driveFailure_.clear();
        isDriveCertain_ = true;
        drive_ = std::move(set);
        if (!result.IsDone())
            drive_.name = QStringLiteral("drive, half read ") + Now(desk_);
        if (!Uses({Kind::Drive}))
            sources_[1] = {Kind::Drive};
    }
    ListSources();
    Reload({Kind::Drive});
}

void CompareSides::TakeWrite(const WriteReport &report)
{
    if (drive_.known.empty())
        return;
    bool hasFound = false;
    std::map<int, std::int32_t> values;
    for (int p = 0; p <= drive_.LastParam(); ++p)
        if (drive_.Knows(p))
            values[p] = drive_.Value(p);
    for (const WrittenRow &row : report.rows)
        if (row.rawFound) {
            values[row.value.param] = *row.rawFound;
            hasFound = true;
        } else if (row.arrival == Arrival::Sent) {
            // Neither the old value nor the new one is certain.
            values.erase(row.value.param);
        }
    // Anew, for what hangs on a selector has other units now.
    drive_ = SetOfDrive(values, desk_.table,
                        hasFound ? QStringLiteral("drive, written ") + Now(desk_) : drive_.name);
    ListSources();
    Reload({Kind::Drive});
}

} // namespace quorvik
