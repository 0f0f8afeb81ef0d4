#include "blocks/BlockForm.h"

#include "desktop/BoxColors.h"
#include "desktop/LongestText.h"
#include "desktop/PlainText.h"
#include "desktop/ValueBox.h"
#include "model/Conversions.h"
#include "operations/EntryRules.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"

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
constexpr int LinkedCaptionLength = 10;
constexpr double TablePitch = 3.8;
constexpr double TableInset = 1.5;
constexpr double TableDistance = 2;

/** What a table's title takes above its first row. */
double HeadOf(const QString &title)
{
    return title.isEmpty() ? TableInset : 3.5;
}

void SetTag(QWidget *control, const QString &tag)
{
    if (control->property("Tag").toString() != tag)
        control->setProperty("Tag", tag);
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

QString NumberAndName(const QString &numberText, const QString &name)
{
    return u'(' + numberText + QStringLiteral(") ") + name;
}

} // namespace

BlockForm::BlockForm(Desk &desk, const BlockSpec &spec, int member)
    : Form(desk, QString::fromLatin1(spec.name), spec.caption, QString::fromLatin1(spec.helpTopic))
    , view_(new DiagramView(this))
    , timerUpdateScreen_(new QTimer(this))
{
    if (member >= 0)
        SetTag(this, QString::number(member));
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    timerUpdateScreen_->setInterval(spec.timerInterval);
    for (const BlockRow &row : spec.rows) {
        linked_ = row.number == LinkedRow;
        const bool free = row.number == FreeRow;
        rows_.append({.caption = QString::fromLatin1(row.caption),
                      .param = linked_ || free ? 0 : spec.base + row.number,
                      .free = free});
    }
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
    if (IOMentorStart()) {
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

    const qsizetype fixedRows = rows_.size() - (linked_ ? 1 : 0);
    for (qsizetype i = 0; i < fixedRows; ++i) {
        const Row &row = rows_.at(i);
        if (row.free)
            continue;
        const QString number = QString::number(row.param);
        SetPlainToolTip(row.label, NumberAndName(number, desk().model.ParamTable[row.param].Name));
        desk().model.AddReadInterest(row.param);
    }
    On(timerUpdateScreen_, &QTimer::timeout, this,
       [this] { tickGuard_.Run([this] { TimerUpdateScreen_Timer(); }); });
    // A window must not stand empty until its first tick.
    tickGuard_.Run([this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_->start();
}

void BlockForm::Unload()
{
    timerUpdateScreen_->stop();
    const qsizetype fixedRows = rows_.size() - (linked_ ? 1 : 0);
    for (qsizetype i = 0; i < fixedRows; ++i)
        if (!rows_.at(i).free)
            desk().model.RemoveReadInterest(rows_.at(i).param);
    if (trackedParam_ >= 0)
        desk().model.RemoveReadInterest(trackedParam_);
    for (const int p : extraInterest_)
        desk().model.RemoveReadInterest(p);
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
    const auto showsAny = [this](const Row &row) { return row.free || (linked_ && &row == &rows_.last()); };
    const QString longestOfAll = std::any_of(rows_.cbegin(), rows_.cend(), showsAny)
                                     ? LongestValueTextOfAll(desk().model, view_->fontMetrics())
                                     : QString();
    for (Row &row : rows_) {
        const QString longest = showsAny(row) ? longestOfAll : LongestValueText(desk().model, row.param);
        row.width = std::max(UsualBoxWidth, cellsFor(longest));
    }
}

void BlockForm::SetMinimumBoxWidth(int row, double cells)
{
    rows_[row].width = std::max(rows_.at(row).width, cells);
}

QSizeF BlockForm::BoxSize(int row) const
{
    return {rows_.at(row).width, BoxHeight};
}

Shape BlockForm::Box(int rowIndex, const QPointF &left, CaptionAt captionAt)
{
    Row &row = rows_[rowIndex];
    const bool isLinked = linked_ && rowIndex == RowCount() - 1;
    const QString caption =
        isLinked || row.free ? row.caption : NumberAndName(QString::number(row.param), row.caption);
    row.label = view_->MakeLabel(ControlName("Label1", rowIndex), caption, false);
    SetTag(row.label, QString::number(row.param));
    row.box = new ValueBox(ControlName("Text1", rowIndex), view_);
    row.box->setAccessibleName(row.caption);
    On(row.box, &ValueBox::clicked, this, [this, rowIndex] { Text1_Click(rowIndex); });

    const QRectF rect(left - QPointF(0, BoxHeight / 2), BoxSize(rowIndex));
    view_->Place(row.box, rect);
    // The caption of a linked row changes with its selector; ten broad characters stand for it.
    const QString longest = isLinked ? QStringLiteral("(5) WWWWWW...") : row.longestCaption;
    const double y = rect.center().y();
    switch (captionAt) {
    case CaptionAt::Above:
        view_->PlaceText(row.label, {rect.left(), y - CaptionDistance}, Qt::AlignLeft, longest);
        break;
    case CaptionAt::AboveRight:
        view_->PlaceText(row.label, {rect.right(), y - CaptionDistance}, Qt::AlignRight, longest);
        break;
    case CaptionAt::Below:
        view_->PlaceText(row.label, {rect.left(), y + CaptionDistance}, Qt::AlignLeft, longest);
        break;
    case CaptionAt::BelowRight:
        view_->PlaceText(row.label, {rect.right(), y + CaptionDistance}, Qt::AlignRight, longest);
        break;
    case CaptionAt::Left:
        view_->PlaceText(row.label, {rect.left() - 0.8, y}, Qt::AlignRight, longest);
        break;
    case CaptionAt::Right:
        view_->PlaceText(row.label, {rect.right() + 0.8, y}, Qt::AlignLeft, longest);
        break;
    }
    return Shape(rect);
}

QRectF BlockForm::Table(const QPointF &topLeft, const QString &title, std::initializer_list<int> rows)
{
    return Tables(topLeft, {{title, rows}});
}

QRectF BlockForm::Tables(const QPointF &topLeft, const QList<Group> &groups)
{
    double captions = 0;
    double boxes = 0;
    for (const Group &group : groups)
        for (const int row : group.rows) {
            captions = std::max(captions, view_->TextWidth(NumberAndName(QString::number(RowParam(row)),
                                                                         rows_.at(row).caption)));
            boxes = std::max(boxes, rows_.at(row).width);
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
                       [this](int row) { return desk().model.CanWriteParam(RowParam(row)); });
}

int BlockForm::RowParam(int row) const
{
    return rows_.at(row).param;
}

QString BlockForm::RowText(int row) const
{
    return rows_.at(row).box->text();
}

double BlockForm::RowNumber(int row) const
{
    return CDbl(RowText(row));
}

std::int32_t BlockForm::RowValue(int row) const
{
    return desk().model.Value(RowParam(row));
}

QLabel *BlockForm::StaticLabel(const QString &name) const
{
    return view_->findChild<QLabel *>(name);
}

void BlockForm::Write(int p, std::int32_t rawValue)
{
    // On line the acknowledgement of the write refreshes what hangs on the parameter.
    desk().model.SetParamValue(p, rawValue, true, !desk().model.PortOpen());
}

void BlockForm::AddExtraInterest(int p)
{
    desk().model.AddReadInterest(p);
    extraInterest_.append(p);
}

void BlockForm::SetRowParam(int row, int p)
{
    rows_[row].param = p;
    SetTag(rows_.at(row).label, QString::number(p));
}

bool BlockForm::HasParameter(int row) const
{
    const int p = RowParam(row);
    return p >= 0 && p <= desk().model.ParamTable.UpperBound();
}

void BlockForm::SetRowCaption(int row, const QString &caption, const QString &toolTip)
{
    rows_.at(row).label->setText(caption);
    SetPlainToolTip(rows_.at(row).label, toolTip);
    rows_.at(row).box->setAccessibleName(toolTip);
}

void BlockForm::TimerUpdateScreen_Timer()
{
    if (linked_)
        SetRowParam(RowCount() - 1, RowValue(0));
    for (int i = 0; i < RowCount(); ++i) {
        const Row &row = rows_.at(i);
        if (row.free && !HasParameter(i))
            PaintEmptyRow(row);
        else if (PaintRow(row) && linked_ && i == 0)
            Text1_Change();
    }
    if (linked_)
        PaintLinkedCaption();
    for (const GuardedArea &guarded : areas_)
        guarded.area->SetRefused(!MayWrite(guarded.rows));
    Tick();
}

bool BlockForm::PaintRow(const Row &row)
{
    const Model &model = desk().model;
    const ParamRecord &record = model.ParamTable[row.param];
    const int accessClass = model.AccessClass(row.param);
    const bool changed = row.box->SetText(ValueText(record.Value, record.Attributes));
    SetTag(row.box, QString::number(accessClass));
    const QString access = model.AccessDescription(row.param, accessClass);
    SetPlainToolTip(row.box, access);
    // The name that a screen reader says is the caption's; the value would go unsaid.
    SetSpokenText(row.box, row.box->text() + QStringLiteral(", ") + access);
    row.box->SetEditable(accessClass == Access::ReadWrite || accessClass == Access::IcrReadWrite);
    row.box->SetBackColor(ColorOf(model.Colors.at(std::size_t(accessClass))));
    return changed;
}

void BlockForm::PaintEmptyRow(const Row &row)
{
    row.box->SetText({});
    SetTag(row.box, QString::number(Access::Empty));
    SetPlainToolTip(row.box, {});
    SetSpokenText(row.box, {});
    row.box->SetEditable(false);
    row.box->SetBackColor(ColorOf(desk().model.Colors.at(std::size_t(Access::Empty))));
}

void BlockForm::PaintLinkedCaption()
{
    const Row &row = rows_.last();
    const QString full = NumberAndName(RowText(0), desk().model.ParamTable[row.param].Name);
    SetPlainToolTip(row.label, full);
    const QString caption =
        full.size() <= LinkedCaptionLength ? full : full.left(LinkedCaptionLength) + QStringLiteral("...");
    row.label->setText(caption);
}

void BlockForm::Text1_Click(int row)
{
    desk().rules.EditParameter(rows_.at(row).box->property("Tag").toInt(), RowParam(row));
}

void BlockForm::Text1_Change()
{
    const int selected = RowValue(0);
    // A number outside the table fails here, before any count has moved.
    static_cast<void>(desk().model.ParamTable[selected]);
    if (trackedParam_ >= 0)
        desk().model.RemoveReadInterest(trackedParam_);
    trackedParam_ = -1;
    desk().model.AddReadInterest(selected);
    trackedParam_ = selected;
}

void BlockForm::CommandIOMentor_Click()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    // Runs once the Mentor's window handles events.
    QTimer::singleShot(0, qApp, [] { QGuiApplication::restoreOverrideCursor(); });
    desk().model.WizardIOStart = *IOMentorStart();
    if (desk().OpenIOMentor)
        desk().OpenIOMentor();
}

} // namespace quorvik
