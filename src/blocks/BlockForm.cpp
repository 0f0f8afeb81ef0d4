#include "blocks/BlockForm.h"

#include "blocks/SignalFollower.h"
#include "blocks/diagram/DiagramFrame.h"
#include "desktop/PlainText.h"
#include "desktop/ValueBox.h"
#include "link/ValueStates.h"
#include "operations/EntryRules.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr double CaptionDistance = 2.6;

/** Where a caption stands beside its box. */
std::pair<QPointF, Qt::Alignment> CaptionPlace(const QRectF &rect, CaptionAt at)
{
    const double y = rect.center().y();
    switch (at) {
    case CaptionAt::Above:
        return {{rect.left(), y - CaptionDistance}, Qt::AlignLeft};
    case CaptionAt::AboveRight:
        return {{rect.right(), y - CaptionDistance}, Qt::AlignRight};
    case CaptionAt::Below:
        return {{rect.left(), y + CaptionDistance}, Qt::AlignLeft};
    case CaptionAt::BelowRight:
        return {{rect.right(), y + CaptionDistance}, Qt::AlignRight};
    case CaptionAt::Left:
        return {{rect.left() - 0.8, y}, Qt::AlignRight};
    case CaptionAt::Right:
        break;
    }
    return {{rect.right() + 0.8, y}, Qt::AlignLeft};
}

} // namespace

BlockForm::BlockForm(Desk &desk, const BlockDescriptor &descriptor, int member)
    : Form(desk, QString::fromLatin1(descriptor.form), descriptor.WindowCaption(member),
           QString::fromLatin1(descriptor.helpTopic))
    , descriptor_(descriptor)
    , member_(member)
    , interest_(desk.table)
    , trackedParam_(desk.table)
    , view_(new DiagramView(this))
    , sheet_(descriptor.sheet(descriptor, member, desk.table, Ruler()))
    , timerUpdateScreen_(new QTimer(this))
{
    if (descriptor.IsFamily())
        SetTag(this, QString::number(member));
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    timerUpdateScreen_->setInterval(descriptor.timerInterval);
    view_->Show(sheet_->drawing);
}

BlockForm::~BlockForm()
{
    // It listens to the sheet's controls, which go last of all.
    delete follower_;
}

BlockForm *MakeBlockForm(Desk &desk, const BlockDescriptor &descriptor, int member)
{
    return (descriptor.make ? descriptor.make : MakeBlock<BlockForm>)(desk, descriptor, member);
}

SheetRuler BlockForm::Ruler() const
{
    const auto ruler = std::make_shared<ValueBox>(QString(), nullptr);
    ruler->setFont(view_->font());
    const auto list = std::make_shared<QComboBox>();
    list->setFont(view_->font());
    return {.text = [this](const QString &text) { return view_->TextWidth(text); },
            .box = [this, ruler](const QString &text) { return ruler->WidthFor(text) / view_->Unit(); },
            .list =
                [this, list](const QString &text) {
                    list->clear();
                    list->addItem(text);
                    return list->sizeHint().width() / view_->Unit();
                }};
}

void BlockForm::Load()
{
    MakeControls();
    sheet_->SetPainted([this](int row) { return RowText(row); });
    view_->Finish();
    follower_ = new SignalFollower(desk(), *this, *view_);
    for (int i = 0; i < boxes_.size(); ++i)
        if (boxes_[i].box)
            follower_->AddBox(boxes_[i].box, i);
    Extend();

    auto *buttons = new QHBoxLayout;
    for (QWidget *control : buttonRow_)
        buttons->addWidget(control);
    buttons->addStretch();
    if (descriptor_.mentorStart) {
        auto *mentor = new QPushButton(QStringLiteral("I/O Mentor..."), this);
        mentor->setObjectName(QStringLiteral("CommandIOMentor"));
        mentor->setToolTip(QStringLiteral("Start I/O Mentor"));
        On(mentor, &QPushButton::clicked, this, [this] { CommandIOMentor_Click(); });
        buttons->addWidget(mentor);
    }
    buttons->addWidget(MakeCommandClose());
    buttons->addWidget(MakeCommandHelp());
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new DiagramFrame(view_, this));
    layout->addLayout(buttons);
    resize(sizeHint());

    for (int i = 0; i < boxes_.size(); ++i) {
        const SheetRow &row = SheetRowAt(i);
        if (!row.IsFixed())
            continue;
        SetPlainToolTip(boxes_[i].label, desk().table.FullName(row.param));
        interest_.Add(row.param);
    }
    for (const int p : sheet_->ExtraInterest())
        interest_.Add(p);
    On(timerUpdateScreen_, &QTimer::timeout, this,
       [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    // A value must not pass for live until the next tick once it no longer is.
    On(&desk().states, &ValueStates::StateChanged, this,
       [this](int p) { stateGuard_.Run([this, p] { PaintRowsOf(p); }); });
    // A window must not stand empty until its first tick.
    tickGuard_.Run([this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_->start();
}

void BlockForm::Unload()
{
    timerUpdateScreen_->stop();
    follower_->End();
    desk().states.disconnect(this);
    interest_.Clear();
    trackedParam_.Clear();
}

QSize BlockForm::sizeHint() const
{
    const QMargins margins = layout() ? layout()->contentsMargins() : QMargins();
    const int below = layout() ? layout()->spacing() + layout()->itemAt(1)->sizeHint().height() : 0;
    const QSize buttons = layout() ? layout()->itemAt(1)->sizeHint() : QSize();
    const QSize sheet = view_->UsualSize();
    return QSize(std::max(sheet.width(), buttons.width()) + margins.left() + margins.right(),
                 sheet.height() + below + margins.top() + margins.bottom());
}

void BlockForm::MakeControls()
{
    boxes_.resize(sheet_->Rows().size());
    for (const int placed : sheet_->Placed())
        if (placed >= 0)
            MakeRow(placed);
        else
            MakeArea(sheet_->Areas().at(-1 - placed));
}

void BlockForm::MakeRow(int index)
{
    const SheetRow &row = SheetRowAt(index);
    const int number = row.number;
    QLabel *label = view_->MakeLabel(ControlName("Label1", index), row.LabelText(), false);
    SetTag(label, QString::number(row.param));
    auto *box = new ValueBox(ControlName("Text1", index), view_);
    boxes_[index] = {.label = label, .box = box};
    box->setAccessibleName(row.caption);
    box->SetDescription([this, number] {
        const int p = RowParam(number);
        if (!InTable(p))
            return QString();
        QString state = desk().states.Describe(p);
        // The caption of a linked row has no room for the name.
        if (number != LinkedRow)
            return state;
        const QString name = desk().table.FullName(p);
        return state.isEmpty() ? name : name + QStringLiteral(", ") + state;
    });
    On(box, &ValueBox::clicked, this, [this, number] { Text1_Click(number); });
    view_->Place(box, row.rect);
    // The caption of a linked row changes with its selector; ten broad characters stand for it.
    const QString longest = row.IsLinked() ? QStringLiteral("(5) WWWWWW...") : row.longestCaption;
    const auto [at, align] = CaptionPlace(row.rect, row.captionAt);
    view_->PlaceText(label, at, align, longest);
}

void BlockForm::MakeArea(const SheetArea &area)
{
    auto *control = new ClickArea(area.name, area.gesture, area.toolTip, view_);
    view_->Place(control, area.cells);
    areas_.append({control, area.rows});
    On(control, &ClickArea::Activated, this, [this, rows = area.rows, handler = area.handler] {
        if (MayWrite(rows))
            handler();
    });
}

QPushButton *BlockForm::AddButton(const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    SetPlainToolTip(button, toolTip);
    AddToButtonRow(button);
    return button;
}

bool BlockForm::MayWrite(const QList<int> &rows) const
{
    return std::all_of(rows.begin(), rows.end(),
                       [this](int row) { return desk().table.CanWriteParam(RowParam(row)); });
}

QString BlockForm::RowText(int row) const
{
    return boxes_.at(sheet_->IndexOf(row)).box->text();
}

QLabel *BlockForm::StaticLabel(const QString &name) const
{
    return view_->findChild<QLabel *>(name);
}

void BlockForm::Write(int p, std::int32_t rawValue)
{
    const Intent intent(desk().table, Origin::Switch);
    // On line the acknowledgement of the write refreshes what hangs on the parameter.
    desk().table.SetParamValue(p, rawValue, true, !desk().table.PortOpen());
}

void BlockForm::SetTag(QWidget *control, const QString &tag)
{
    if (control->property("Tag").toString() != tag)
        control->setProperty("Tag", tag);
}

void BlockForm::SetRowParam(int row, int p)
{
    sheet_->SetRowParam(row, p);
    SetTag(boxes_.at(sheet_->IndexOf(row)).label, QString::number(p));
}

void BlockForm::SetRowCaption(int row, const QString &caption, const QString &toolTip)
{
    const RowControls &controls = boxes_.at(sheet_->IndexOf(row));
    controls.label->setText(caption);
    SetPlainToolTip(controls.label, toolTip);
    controls.box->setAccessibleName(toolTip);
}

bool BlockForm::Shows(int p) const
{
    return std::ranges::any_of(sheet_->Rows(), [p](const SheetRow &row) { return row.param == p; });
}

bool BlockForm::Reveal(int p)
{
    for (int i = 0; i < boxes_.size(); ++i) {
        if (SheetRowAt(i).param != p || !boxes_[i].box)
            continue;
        if (auto *area = findChild<QScrollArea *>())
            area->ensureWidgetVisible(boxes_[i].box);
        boxes_[i].box->setFocus(Qt::OtherFocusReason);
        boxes_[i].box->Pulse();
        return true;
    }
    return false;
}

void BlockForm::Text1_Click(int row)
{
    const int p = RowParam(row);
    const ValueBox *box = boxes_.at(sheet_->IndexOf(row)).box;
    desk().rules.EditParameter(box->property("Tag").toInt(), p);
    // Only now, for the dialog tells of a refusal.
    if (InTable(p))
        desk().states.Touch(p);
}

void BlockForm::CommandIOMentor_Click()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    // Runs once the Mentor's window handles events.
    QTimer::singleShot(0, qApp, [] { QGuiApplication::restoreOverrideCursor(); });
    WizardIOStartRecord start = *descriptor_.mentorStart;
    start.member = std::uint8_t(descriptor_.IsFamily() ? member_ - descriptor_.firstMember : 0);
    // A block without a mode leaves it at the last one.
    start.freqDigMode = descriptor_.mentorModeRow < 0 ? desk().WizardIOStart.freqDigMode
                                                      : std::uint8_t(RowValue(descriptor_.mentorModeRow));
    desk().WizardIOStart = start;
    if (desk().OpenIOMentor)
        desk().OpenIOMentor();
}

} // namespace quorvik
