#include "blocks/BlockForm.h"

#include "desktop/LongestText.h"
#include "desktop/PlainText.h"
#include "desktop/ValueBox.h"
#include "link/ValueStates.h"
#include "operations/EntryRules.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTimer>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double BoxHeight = 3;
constexpr double CaptionDistance = 2.6;
/** Wide enough for what nearly all parameters show, so that the boxes of a window stand in columns. */
constexpr double UsualBoxWidth = 12;
constexpr double TablePitch = 3.8;
constexpr double TableInset = 1.5;
constexpr double TableDistance = 2;

/** What a table's title takes above its first row. */
double HeadOf(const QString &title)
{
    return title.isEmpty() ? TableInset : 3.5;
}

/** Carries a diagram and scales it to the window. */
class DiagramFrame : public QScrollArea
{
public:
    DiagramFrame(DiagramView *view, QWidget *parent)
        : QScrollArea(parent)
        , view_(view)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setAlignment(Qt::AlignCenter);
        setWidget(view);
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        view_->Fit(maximumViewportSize());
        QScrollArea::resizeEvent(event);
    }

private:
    DiagramView *view_;
};

QString CaptionOf(const BlockRow &row, QLatin1String prefix)
{
    const QString name = QString::fromLatin1(row.caption ? row.caption : FactoryNames[row.number]);
    return !row.caption && name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

} // namespace

BlockForm::BlockForm(Desk &desk, const BlockDescriptor &descriptor, int member)
    : Form(desk, QString::fromLatin1(descriptor.form), descriptor.WindowCaption(member),
           QString::fromLatin1(descriptor.helpTopic))
    , descriptor_(descriptor)
    , member_(member)
    , view_(new DiagramView(this))
    , timerUpdateScreen_(new QTimer(this))
{
    if (descriptor.IsFamily())
        SetTag(this, QString::number(member));
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    timerUpdateScreen_->setInterval(descriptor.timerInterval);
    const int offset =
        descriptor.IsFamily() ? (member - descriptor.firstMember) * descriptor.memberDistance : 0;
    for (const BlockRow &row : descriptor.rows) {
        if (row.number == LinkedRow)
            rows_.append({.number = LinkedRow, .caption = rows_.first().caption});
        else
            rows_.append({.number = row.number,
                          .caption = CaptionOf(row, QLatin1String(descriptor.prefix)),
                          .param = row.number + offset});
    }
    for (int row = 0; row < descriptor.freeRows; ++row)
        rows_.append({.number = row, .free = true});
}

void BlockForm::Load()
{
    MeasureRows();
    Draw(view_->drawing);
    view_->Finish();

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

    for (const Row &row : rows_) {
        if (!row.IsFixed())
            continue;
        const QString number = QString::number(row.param);
        SetPlainToolTip(row.label, NumberAndName(number, desk().table[row.param].Name));
        desk().table.AddReadInterest(row.param);
    }
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
    desk().states.disconnect(this);
    for (const Row &row : rows_)
        if (row.IsFixed())
            desk().table.RemoveReadInterest(row.param);
    if (trackedParam_ >= 0)
        desk().table.RemoveReadInterest(trackedParam_);
    for (const int p : extraInterest_)
        desk().table.RemoveReadInterest(p);
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

void BlockForm::MeasureRows()
{
    const ValueBox ruler(QString(), view_);
    const auto cellsFor = [&](const QString &text) {
        return std::ceil(ruler.WidthFor(text) / view_->Unit());
    };
    const QString longestOfAll = std::ranges::all_of(rows_, &Row::IsFixed)
                                     ? QString()
                                     : LongestValueTextOfAll(desk().table, view_->fontMetrics());
    for (Row &row : rows_) {
        const QString longest = row.IsFixed() ? LongestValueText(desk().table, row.param) : longestOfAll;
        row.width = std::max(UsualBoxWidth, cellsFor(longest));
    }
}

void BlockForm::SetMinimumBoxWidth(int row, double cells)
{
    RowOf(row).width = std::max(RowOf(row).width, cells);
}

QSizeF BlockForm::BoxSize(int row) const
{
    return {RowOf(row).width, BoxHeight};
}

Shape BlockForm::Box(int number, const QPointF &left, CaptionAt captionAt)
{
    const int index = IndexOf(number);
    Row &row = rows_[index];
    row.label = view_->MakeLabel(ControlName("Label1", index), row.LabelText(), false);
    SetTag(row.label, QString::number(row.param));
    row.box = new ValueBox(ControlName("Text1", index), view_);
    row.box->setAccessibleName(row.caption);
    row.box->SetDescription([this, number] {
        const int p = RowParam(number);
        return InTable(p) ? desk().states.Describe(p) : QString();
    });
    On(row.box, &ValueBox::clicked, this, [this, number] { Text1_Click(number); });

    const QRectF rect(left - QPointF(0, BoxHeight / 2), BoxSize(number));
    view_->Place(row.box, rect);
    // The caption of a linked row changes with its selector; ten broad characters stand for it.
    const QString longest = row.IsLinked() ? QStringLiteral("(5) WWWWWW...") : row.longestCaption;
    const double y = rect.center().y();
    const auto place = [&](double x, double at, Qt::Alignment alignment) {
        view_->PlaceText(row.label, {x, at}, alignment, longest);
        return Shape(rect);
    };
    switch (captionAt) {
    case CaptionAt::Above:
        return place(rect.left(), y - CaptionDistance, Qt::AlignLeft);
    case CaptionAt::AboveRight:
        return place(rect.right(), y - CaptionDistance, Qt::AlignRight);
    case CaptionAt::Below:
        return place(rect.left(), y + CaptionDistance, Qt::AlignLeft);
    case CaptionAt::BelowRight:
        return place(rect.right(), y + CaptionDistance, Qt::AlignRight);
    case CaptionAt::Left:
        return place(rect.left() - 0.8, y, Qt::AlignRight);
    case CaptionAt::Right:
        break;
    }
    return place(rect.right() + 0.8, y, Qt::AlignLeft);
}

void BlockForm::LastBox(Drawing &d, const Port &from, int row, const QPointF &left)
{
    const Shape box = Box(row, left);
    d.Wire(from, box.Left());
    d.Wire(box.Right(), {box.Right().at + QPointF(5, 0), Side::Left});
}

QRectF BlockForm::Tables(const QPointF &topLeft, const QList<Group> &groups)
{
    double captions = 0;
    double boxes = 0;
    for (const Group &group : groups)
        for (const int row : group.rows) {
            captions = std::max(captions, view_->TextWidth(RowOf(row).LabelText()));
            boxes = std::max(boxes, RowOf(row).width);
        }
    captions = std::ceil(captions) + 1.5;
    QRectF all(topLeft, QSizeF(2 * TableInset + captions + boxes, 0));
    for (const Group &group : groups) {
        for (const int row : group.rows)
            SetMinimumBoxWidth(row, boxes);
        const QPointF corner(topLeft.x(), all.height() > 0 ? all.bottom() + TableDistance : topLeft.y());
        const double height = HeadOf(group.title) + TablePitch * double(group.rows.size()) -
                              (TablePitch - BoxHeight) + TableInset;
        const QRectF frame(corner, QSizeF(all.width(), height));
        PlaceTable(frame, group, captions);
        all.setBottom(frame.bottom());
    }
    return all;
}

void BlockForm::PlaceTable(const QRectF &frame, const Group &group, double captionWidth)
{
    double y = frame.top() + HeadOf(group.title) + BoxHeight / 2;
    for (const int row : group.rows) {
        Box(row, {frame.left() + TableInset + captionWidth, y}, CaptionAt::Left);
        y += TablePitch;
    }
    view_->drawing.Frame(frame, group.title);
}

QPushButton *BlockForm::AddButton(const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    SetPlainToolTip(button, toolTip);
    AddToButtonRow(button);
    return button;
}

ClickArea *BlockForm::Click(const QString &name, ClickArea::Gesture gesture, const QRectF &cells,
                            const QString &toolTip, std::initializer_list<int> rows,
                            std::function<void()> handler)
{
    auto *area = new ClickArea(name, gesture, toolTip, view_);
    view_->Place(area, cells);
    areas_.append({area, rows});
    On(area, &ClickArea::Activated, this, [this, rows = QList<int>(rows), handler = std::move(handler)] {
        if (MayWrite(rows))
            handler();
    });
    return area;
}

ClickArea *BlockForm::ClickToFlip(const QString &name, const QRectF &cells, const QString &toolTip, int row)
{
    // Any text but "True" counts as off.
    return Click(name, ClickArea::Gesture::DoubleClick, cells, toolTip, {row},
                 [this, row] { Write(RowParam(row), RowText(row) == QStringLiteral("True") ? 0 : 1); });
}

bool BlockForm::MayWrite(const QList<int> &rows) const
{
    return std::all_of(rows.begin(), rows.end(),
                       [this](int row) { return desk().table.CanWriteParam(RowParam(row)); });
}

bool BlockForm::IsReferenceEnabled() const
{
    const std::int32_t rawState = desk().table.Value(Param::DriveState);
    return rawState == 1 || rawState == 3;
}

int BlockForm::IndexOf(int row) const
{
    const auto at = std::ranges::find(rows_, row, &Row::number);
    if (at == rows_.end())
        throw RuntimeFailure(QStringLiteral("The window has no row %1.").arg(row));
    return int(at - rows_.begin());
}

QString BlockForm::RowText(int row) const
{
    return RowOf(row).box->text();
}

double BlockForm::RowNumber(int row) const
{
    return CDbl(RowText(row));
}

QLabel *BlockForm::StaticLabel(const QString &name) const
{
    return view_->findChild<QLabel *>(name);
}

void BlockForm::Write(int p, std::int32_t rawValue)
{
    // On line the acknowledgement of the write refreshes what hangs on the parameter.
    desk().table.SetParamValue(p, rawValue, true, !desk().table.PortOpen());
}

void BlockForm::AddExtraInterest(int p)
{
    desk().table.AddReadInterest(p);
    extraInterest_.append(p);
}

void BlockForm::SetTag(QWidget *control, const QString &tag)
{
    if (control->property("Tag").toString() != tag)
        control->setProperty("Tag", tag);
}

void BlockForm::SetRowParam(int row, int p)
{
    RowOf(row).param = p;
    SetTag(RowOf(row).label, QString::number(p));
}

void BlockForm::SetRowCaption(int row, const QString &caption, const QString &toolTip)
{
    RowOf(row).label->setText(caption);
    SetPlainToolTip(RowOf(row).label, toolTip);
    RowOf(row).box->setAccessibleName(toolTip);
}

void BlockForm::Text1_Click(int row)
{
    const int p = RowParam(row);
    desk().rules.EditParameter(RowOf(row).box->property("Tag").toInt(), p);
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
    start.freqDigMode = MentorFreqDigMode();
    desk().WizardIOStart = start;
    if (desk().OpenIOMentor)
        desk().OpenIOMentor();
}

} // namespace quorvik
