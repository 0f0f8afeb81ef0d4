#include "blocks/BlockSheet.h"

#include "desktop/LongestText.h"
#include "model/Conversions.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double BoxHeight = 3;
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

QString CaptionOf(const BlockRow &row, QLatin1String prefix)
{
    const QString name = QString::fromLatin1(row.caption ? row.caption : FactoryNames[row.number]);
    return !row.caption && name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

} // namespace

SheetRuler SheetRuler::ByCount()
{
    constexpr double cellsToALetter = 0.9;
    const auto count = [](const QString &text) { return cellsToALetter * double(text.size()); };
    const auto framed = [count](const QString &text) { return count(text) + 2; };
    return {count, framed, framed};
}

QString SheetRow::LabelText() const
{
    return IsFixed() ? NumberAndName(QString::number(param), caption) : caption;
}

BlockSheet::BlockSheet(const BlockDescriptor &descriptor, int member, ParameterTable &table, SheetRuler ruler)
    : table_(table)
    , ruler_(std::move(ruler))
    , member_(member)
{
    const int offset = descriptor.OffsetOf(member);
    for (const BlockRow &row : descriptor.rows) {
        if (row.number == LinkedRow)
            rows_.append({.number = LinkedRow, .caption = rows_.first().caption});
        else
            rows_.append({.number = row.number,
                          .caption = CaptionOf(row, QLatin1String(descriptor.prefix)),
                          .param = row.number + offset});
    }
    for (int row = 0; row < descriptor.freeRows; ++row)
        rows_.append({.number = row, .isFree = true});
}

void BlockSheet::Make()
{
    MeasureRows();
    Draw(drawing);
    // A signal that stands by its name only is as live as the rows are.
    for (const Node &node : drawing.TheNet().nodes)
        if (node.kind != NodeKind::Value && node.param > 0 && !extraInterest_.contains(node.param) &&
            std::ranges::none_of(rows_, [&](const SheetRow &row) { return row.param == node.param; }))
            extraInterest_.append(node.param);
}

void BlockSheet::Follow()
{
    if (!rows_.isEmpty() && rows_.last().IsLinked())
        SetRowParam(LinkedRow, table_.Value(rows_.first().param));
    Update();
    // A sheet that is only computed with has nobody to look at it.
    if (drawing.Changed)
        UpdateLooks();
}

void BlockSheet::UpdateLooks()
{
    if (!results_)
        results_ = std::make_unique<NetValues>(drawing.TheNet());
    results_->Follow(table_);
    for (int i = 0; i < int(drawing.Elements().size()); ++i)
        if (const auto look = LookOf(drawing.At(i), drawing.TheNet(), *results_))
            drawing.SetLook(i, *look);
}

void BlockSheet::MeasureRows()
{
    const bool areFixed = std::ranges::all_of(rows_, &SheetRow::IsFixed);
    const QString longestOfAll = areFixed ? QString() : LongestValueTextOfAll(table_, ruler_.text);
    for (SheetRow &row : rows_) {
        const QString longest = row.IsFixed() ? LongestValueText(table_, row.param) : longestOfAll;
        row.width = std::max(UsualBoxWidth, std::ceil(ruler_.box(longest)));
    }
}

int BlockSheet::IndexOf(int row) const
{
    const auto at = std::ranges::find(rows_, row, &SheetRow::number);
    if (at == rows_.end())
        throw RuntimeFailure(QStringLiteral("The window has no row %1.").arg(row));
    return int(at - rows_.begin());
}

QString BlockSheet::RowText(int row) const
{
    if (painted_)
        return painted_(row);
    const int p = RowParam(row);
    return RowOf(row).isFree && !InTable(p) ? QString() : ValueText(table_.Value(p), table_[p].Attributes);
}

double BlockSheet::RowNumber(int row) const
{
    return CDbl(RowText(row));
}

void BlockSheet::SetRowParam(int row, int p)
{
    SheetRow &found = rows_[IndexOf(row)];
    found.param = p;
    if (found.node >= 0)
        drawing.SetParameter(found.node, p);
}

bool BlockSheet::IsReferenceEnabled() const
{
    const std::int32_t rawState = table_.Value(Param::DriveState);
    return rawState == 1 || rawState == 3;
}

void BlockSheet::SetMinimumBoxWidth(int row, double cells)
{
    SheetRow &found = rows_[IndexOf(row)];
    found.width = std::max(found.width, cells);
}

QSizeF BlockSheet::BoxSize(int row) const
{
    return {RowOf(row).width, BoxHeight};
}

Shape BlockSheet::Box(int number, const QPointF &left, CaptionAt captionAt)
{
    const int index = IndexOf(number);
    SheetRow &row = rows_[index];
    row.rect = QRectF(left - QPointF(0, BoxHeight / 2), BoxSize(number));
    row.captionAt = captionAt;
    const Shape shape = drawing.Value(row.rect, row.param);
    row.node = shape.Node();
    placed_.append(index);
    return shape;
}

void BlockSheet::LastBox(Drawing &d, const Port &from, int row, const QPointF &left)
{
    const Shape box = Box(row, left);
    d.Wire(from, box.Left());
    d.Wire(box.Right(), {box.Right().at + QPointF(5, 0), Side::Left});
}

void BlockSheet::LastBox(Drawing &d, const Port &from, int row, const QPointF &left, const QString &goesOnIn)
{
    const Shape box = Box(row, left);
    d.Wire(from, box.Left());
    d.To(box.Right(), box.Right().at + QPointF(6, 0), goesOnIn, RowParam(row));
}

QRectF BlockSheet::Tables(const QPointF &topLeft, const QList<Group> &groups)
{
    double captions = 0;
    double boxes = 0;
    for (const Group &group : groups)
        for (const int row : group.rows) {
            captions = std::max(captions, ruler_.text(RowOf(row).LabelText()));
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

void BlockSheet::PlaceTable(const QRectF &frame, const Group &group, double captionWidth)
{
    double y = frame.top() + HeadOf(group.title) + BoxHeight / 2;
    for (const int row : group.rows) {
        Box(row, {frame.left() + TableInset + captionWidth, y}, CaptionAt::Left);
        y += TablePitch;
    }
    drawing.Frame(frame, group.title);
}

void BlockSheet::Click(const QString &name, ClickArea::Gesture gesture, const QRectF &cells,
                       const QString &toolTip, std::initializer_list<int> rows, std::function<void()> handler)
{
    placed_.append(-1 - int(areas_.size()));
    areas_.append({name, gesture, cells, toolTip, rows, std::move(handler)});
}

void BlockSheet::ClickToFlip(const QString &name, const QRectF &cells, const QString &toolTip, int row)
{
    // Any text but "True" counts as off.
    Click(name, ClickArea::Gesture::DoubleClick, cells, toolTip, {row},
          [this, row] { Write(RowParam(row), RowText(row) == QStringLiteral("True") ? 0 : 1); });
}

void BlockSheet::Write(int p, std::int32_t rawValue)
{
    const Intent intent(table_, Origin::Switch);
    // On line the acknowledgement of the write refreshes what hangs on the parameter.
    table_.SetParamValue(p, rawValue, true, !table_.PortOpen());
}

} // namespace quorvik
