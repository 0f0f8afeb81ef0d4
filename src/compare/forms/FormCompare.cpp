#include "compare/forms/FormCompare.h"

#include "compare/forms/CompareHost.h"
#include "compare/forms/CompareSides.h"
#include "compare/forms/DifferenceModel.h"
#include "compare/forms/DifferenceView.h"
#include "desktop/OrderTabs.h"
#include "desktop/PlainText.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "settings/forms/ExportList.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>

namespace quorvik
{

namespace
{

using Kind = CompareSource::Kind;

constexpr int TickMs = 500;

struct KindCheck {
    RowKind kind;
    const char *name;
    const char *caption;
};

constexpr KindCheck KindChecks[] = {
    {RowKind::Setting, "CheckSettings", "S&ettings"}, {RowKind::Model, "CheckModel", "Mo&del"},
    {RowKind::Clock, "CheckClock", "C&lock"},         {RowKind::Command, "CheckCommands", "Comma&nds"},
    {RowKind::Status, "CheckStatus", "Stat&us"},
};

QLabel *MakeLine(QWidget *parent, const QString &name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QPushButton *MakeButton(QWidget *parent, const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    return button;
}

} // namespace

const QString &FormCompare::Name()
{
    static const QString name = QStringLiteral("FormCompare");
    return name;
}

FormCompare::FormCompare(Desk &givenDesk, CompareHost &host)
    : Form(givenDesk, Name(), QStringLiteral("Compare"), QStringLiteral("Compare.htm"))
    , ChooseExport([this](const QString &folder) {
        return ShowExportDialog(folder, this, desk().settings, desk().asker);
    })
    , host_(host)
    , blocks_(host.BlockNames())
    , sides_(new CompareSides(givenDesk, host, this))
    , model_(new DifferenceModel(this))
    , proxy_(new DifferenceProxy(model_))
    , view_(new DifferenceView(proxy_, this))
    , labelBanner_(MakeLine(this, QStringLiteral("LabelBanner")))
    , labelCounts_(MakeLine(this, QStringLiteral("LabelCounts")))
    , labelOutcome_(MakeLine(this, QStringLiteral("LabelOutcome")))
    , textSearch_(new QLineEdit(this))
    , comboDirection_(new QComboBox(this))
    , timerUpdateScreen_(new QTimer(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(sides_);
    layout->addWidget(MakeBanner());
    layout->addWidget(MakeFilters());
    layout->addWidget(view_, 1);
    layout->addWidget(MakeCopying());
    layout->addWidget(MakeCommands());

    On(sides_, &CompareSides::Changed, this, [this] {
        // What was said of the last copy was said of other sets.
        model_->SetRefusals({});
        labelOutcome_->clear();
        CompareAnew();
    });
    On(model_, &DifferenceModel::TicksChanged, this, [this] { ShowCounts(); });
    const auto age = [this] { isOpenSetOld_ = true; };
    On(&desk().table.Signals(), &TableSignals::Changed, this, age);
    On(&desk().document, &Document::Marked, this, age);
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(timerUpdateScreen_, &QTimer::timeout, this, [this] {
        sides_->FollowLink();
        FollowOpenSet();
    });
    timerUpdateScreen_->start(TickMs);
    CompareAnew();
    view_->setFocus();
}

QWidget *FormCompare::MakeBanner()
{
    labelBanner_->setFrameStyle(int(QFrame::StyledPanel) | int(QFrame::Plain));
    labelBanner_->setAutoFillBackground(true);
    labelBanner_->setBackgroundRole(QPalette::ToolTipBase);
    labelBanner_->setForegroundRole(QPalette::ToolTipText);
    labelBanner_->setMargin(fontMetrics().height() / 4);
    labelBanner_->hide();
    return labelBanner_;
}

QCheckBox *FormCompare::MakeCheck(const QString &name, const QString &caption, bool isChecked)
{
    auto *check = new QCheckBox(caption, this);
    check->setObjectName(name);
    check->setChecked(isChecked);
    On(check, &QCheckBox::toggled, this, [this] { OnFilterChanged(); });
    return check;
}

QWidget *FormCompare::MakeFilters()
{
    auto *filters = new QWidget(this);
    auto *rows = new QVBoxLayout(filters);
    rows->setContentsMargins({});
    auto *searching = new QHBoxLayout;
    auto *label = new QLabel(QStringLiteral("&Search:"), filters);
    label->setBuddy(textSearch_);
    textSearch_->setObjectName(QStringLiteral("TextSearch"));
    textSearch_->setAccessibleName(QStringLiteral("Search number, name and block"));
    textSearch_->setPlaceholderText(QStringLiteral("Number, name or block"));
    textSearch_->setClearButtonEnabled(true);
    On(textSearch_, &QLineEdit::textChanged, this, [this] { OnFilterChanged(); });
    checkDiffering_ = MakeCheck(QStringLiteral("CheckDiffering"), QStringLiteral("Only what d&iffers"), true);
    checkChanged_ = MakeCheck(QStringLiteral("CheckChanged"), QStringLiteral("Chan&ged from factory"), false);
    checkKnown_ = MakeCheck(QStringLiteral("CheckKnown"), QStringLiteral("Known in e&very set"), false);
    searching->addWidget(label);
    searching->addWidget(textSearch_, 1);
    searching->addWidget(checkDiffering_);
    searching->addWidget(checkChanged_);
    searching->addWidget(checkKnown_);
    rows->addLayout(searching);
    auto *kinds = new QHBoxLayout;
    kinds->addWidget(new QLabel(QStringLiteral("Show:"), filters));
    const DifferenceFilter usual;
    for (const KindCheck &kind : KindChecks) {
        const auto i = std::size_t(kind.kind);
        checkKinds_[i] =
            MakeCheck(QString::fromLatin1(kind.name), QString::fromLatin1(kind.caption), usual.kinds[i]);
        kinds->addWidget(checkKinds_[i]);
    }
    kinds->addStretch(1);
    kinds->addWidget(labelCounts_);
    labelCounts_->setWordWrap(false);
    rows->addLayout(kinds);
    return filters;
}

QWidget *FormCompare::MakeCopying()
{
    auto *copying = new QWidget(this);
    auto *layout = new QHBoxLayout(copying);
    layout->setContentsMargins({});
    QPushButton *take =
        MakeButton(copying, QStringLiteral("CommandTakeAll"), QStringLiteral("Ta&ke All Shown"),
                   QStringLiteral("Ticks every row in sight of the filters"));
    QPushButton *clear = MakeButton(copying, QStringLiteral("CommandClearTicks"),
                                    QStringLiteral("Cle&ar Ticks"), QStringLiteral("Takes all ticks away"));
    QPushButton *copy = MakeButton(copying, QStringLiteral("CommandCopy"), QStringLiteral("&Copy"),
                                   QStringLiteral("Copies the values of the ticked rows that are shown"));
    On(take, &QPushButton::clicked, this, [this] { TickShown(true); });
    On(clear, &QPushButton::clicked, this, [this] { TickShown(false); });
    On(copy, &QPushButton::clicked, this, [this] { CommandCopy_Click(); });
    auto *label = new QLabel(QStringLiteral("Cop&y ticked:"), copying);
    label->setBuddy(comboDirection_);
    comboDirection_->setObjectName(QStringLiteral("ComboDirection"));
    comboDirection_->setAccessibleName(QStringLiteral("From which set into which"));
    comboDirection_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    comboDirection_->setMinimumContentsLength(12);
    On(comboDirection_, &QComboBox::currentTextChanged, this,
       [this](const QString &text) { SetPlainToolTip(comboDirection_, text); });
    layout->addWidget(take);
    layout->addWidget(clear);
    layout->addStretch(1);
    layout->addWidget(label);
    layout->addWidget(comboDirection_, 2);
    layout->addWidget(copy);
    QWidgetList order{textSearch_, checkDiffering_, checkChanged_, checkKnown_};
    for (const KindCheck &kind : KindChecks)
        order.append(checkKinds_[std::size_t(kind.kind)]);
    OrderTabs(order + QWidgetList{view_, take, clear, comboDirection_, copy});
    return copying;
}

QWidget *FormCompare::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    QPushButton *exporting =
        MakeButton(commands, QStringLiteral("CommandExport"), QStringLiteral("E&xport..."),
                   QStringLiteral("Writes the shown rows to a CSV or PDF file"));
    On(exporting, &QPushButton::clicked, this, [this] { CommandExport_Click(); });
    layout->addWidget(labelOutcome_, 1);
    layout->addWidget(exporting);
    layout->addWidget(MakeCommandHelp());
    layout->addWidget(MakeCommandClose());
    return commands;
}

void FormCompare::CompareWithDrive(const CompareSource &other)
{
    sides_->Select(0, other);
    sides_->Select(1, {Kind::Drive});
    sides_->ReadDrive();
}

void FormCompare::CompareWithFactory(int p)
{
    sides_->Select(0, {Kind::OpenSet});
    sides_->Select(1, {Kind::Factory});
    // Whatever kind it is of, and also where it has its factory value.
    SetFilters(false);
    for (QCheckBox *kind : checkKinds_)
        kind->setChecked(true);
    textSearch_->setText(desk().table[p].Name);
    for (int row = 0; row < proxy_->rowCount(); ++row)
        if (model_->Row(proxy_->mapToSource(proxy_->index(row, 0)).row()).param == p) {
            view_->setCurrentIndex(proxy_->index(row, 0));
            view_->scrollTo(proxy_->index(row, 0));
        }
    view_->setFocus();
}

void FormCompare::CompareWithPast(const ParameterSet &set, const QString &note, bool takesBack)
{
    sides_->ListPast(set, note);
    sides_->Select(0, {Kind::Past});
    sides_->Select(2, {});
    if (desk().table.PortOpen()) {
        // Reading waits, and the window may be closed meanwhile.
        const QPointer<FormCompare> self = this;
        CompareWithDrive({Kind::Past});
        if (!self)
            return;
    } else {
        sides_->Select(1, {Kind::OpenSet});
    }
    SetFilters(true);
    checkKnown_->setChecked(takesBack);
    comboDirection_->setCurrentIndex(comboDirection_->findData(QPoint(0, 1)));
    TickShown(false);
    if (takesBack)
        TickShown(true);
    view_->setFocus();
}

void FormCompare::SetFilters(bool onlyDiffering)
{
    textSearch_->clear();
    checkDiffering_->setChecked(onlyDiffering);
    checkChanged_->setChecked(false);
    checkKnown_->setChecked(false);
    const DifferenceFilter usual;
    for (std::size_t kind = 0; kind < checkKinds_.size(); ++kind)
        checkKinds_[kind]->setChecked(usual.kinds[kind]);
}

void FormCompare::CompareAnew()
{
    const QStringList names = sides_->Names();
    model_->SetRows(Compare(sides_->Sets(), blocks_), names);
    const QStringList before = std::exchange(shownNames_, names);
    if (before.size() != names.size())
        view_->SizeColumns();
    if (before != names)
        view_->FitHeads();
    if (!view_->selectionModel()->hasSelection() && proxy_->rowCount() > 0)
        view_->setCurrentIndex(proxy_->index(0, 0));
    ShowBanner();
    ListDirections();
    ShowCounts();
}

void FormCompare::FollowOpenSet()
{
    if (!std::exchange(isOpenSetOld_, false) || !sides_->Uses({Kind::OpenSet}))
        return;
    // Without a word on what was refused: these are the rows that it was said of.
    const QSignalBlocker quiet(sides_);
    sides_->Reload({Kind::OpenSet});
    CompareAnew();
}

void FormCompare::OnFilterChanged()
{
    DifferenceFilter filter{.text = textSearch_->text().trimmed(),
                            .onlyDiffering = checkDiffering_->isChecked(),
                            .onlyChanged = checkChanged_->isChecked(),
                            .onlyKnown = checkKnown_->isChecked()};
    for (std::size_t kind = 0; kind < filter.kinds.size(); ++kind)
        filter.kinds[kind] = checkKinds_[kind]->isChecked();
    proxy_->SetFilter(filter);
    ShowCounts();
}

void FormCompare::ShowBanner()
{
    const QStringList sentences = sides_->Failures() + Mismatches(sides_->Sets());
    const QString text = sentences.join(u'\n');
    if (text == labelBanner_->text())
        return;
    labelBanner_->setText(text);
    labelBanner_->setVisible(!text.isEmpty());
}

void FormCompare::ListDirections()
{
    const QStringList names = sides_->Names();
    QStringList captions;
    QVariantList directions;
    for (int to = 0; to < sides_->Count(); ++to)
        for (int from = 0; from < sides_->Count(); ++from)
            if (from != to && sides_->IsTarget(to) && sides_->Source(from) != sides_->Source(to)) {
                captions += QStringLiteral("%1 to %2").arg(names[from], names[to]);
                directions += QPoint(from, to);
            }
    // It may stand open.
    bool isSame = comboDirection_->count() == captions.size();
    for (int i = 0; isSame && i < comboDirection_->count(); ++i)
        isSame = comboDirection_->itemText(i) == captions[i] && comboDirection_->itemData(i) == directions[i];
    if (isSame)
        return;
    const QVariant chosen = comboDirection_->currentData();
    comboDirection_->clear();
    for (qsizetype i = 0; i < captions.size(); ++i)
        comboDirection_->addItem(captions[i], directions[i]);
    comboDirection_->setCurrentIndex(captions.isEmpty() ? -1
                                                        : std::max(comboDirection_->findData(chosen), 0));
}

void FormCompare::ShowCounts()
{
    const std::vector<DifferenceRow> shown = proxy_->Shown();
    const auto ticked = std::ranges::count_if(
        shown, [this](const DifferenceRow &row) { return model_->IsTicked(row.param); });
    labelCounts_->setText(
        QStringLiteral("%1 of %2 rows, %3 ticked").arg(shown.size()).arg(model_->rowCount()).arg(ticked));
}

} // namespace quorvik
