#pragma once

#include "blocks/BlockDescriptor.h"
#include "blocks/diagram/ClickArea.h"
#include "blocks/diagram/Drawing.h"
#include "model/ParameterTable.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

namespace quorvik
{

/** How wide texts are, in cells. */
struct SheetRuler {
    std::function<double(const QString &)> text; ///< as a label shows it
    std::function<double(const QString &)> box;  ///< of the value box that shows it
    std::function<double(const QString &)> list; ///< of the list box that offers it

    /** Widths by the number of characters, for a sheet that nobody looks at. */
    static SheetRuler ByCount();
    /** The wider of two texts. */
    QString Wider(const QString &one, const QString &other) const
    {
        return text(other) > text(one) ? other : one;
    }
};

enum class CaptionAt : std::uint8_t { Above, AboveRight, Below, BelowRight, Left, Right };

/** A row of a sheet: a parameter with its caption, and the place of its value box. */
struct SheetRow {
    int number = 0; ///< of the parameter as the block's table has it; LinkedRow; of free rows counted from 0
    QString caption = {};
    int param = 0; ///< the parameter shown now
    bool isFree = false;
    double width = 0; ///< cells
    QString longestCaption = {};
    int node = -1; ///< in the drawing's net, -1 while it is not placed
    QRectF rect = {};
    CaptionAt captionAt = CaptionAt::Above;

    bool IsLinked() const { return number == LinkedRow; }
    /** Always the same parameter. */
    bool IsFixed() const { return !isFree && !IsLinked(); }
    QString LabelText() const;
};

/** A click area of a sheet. */
struct SheetArea {
    QString name;
    ClickArea::Gesture gesture;
    QRectF cells;
    QString toolTip;
    QList<int> rows; ///< that must be writable
    std::function<void()> handler;
};

/**
 * What one block is, as data: its rows, its drawing with the net of its signals, its click areas, and what
 * moves when a value changes. It needs no window. The window of the block shows a sheet, the circuit of the
 * drive joins the nets of all of them. See docs/architecture-blocks.md.
 */
class BlockSheet
{
public:
    /** @param member the member of a family; any number for a block without. */
    BlockSheet(const BlockDescriptor &descriptor, int member, ParameterTable &table, SheetRuler ruler);
    virtual ~BlockSheet() = default;
    BlockSheet(const BlockSheet &) = delete;
    BlockSheet &operator=(const BlockSheet &) = delete;

    /** Draws the block. Called once, before anything else. */
    void Make();
    /** Moves all that hangs on values to where the table has it now. Raises RuntimeFailure for a value that
     * no drawing has a place for. */
    void Follow();

    Drawing drawing;

    const QList<SheetRow> &Rows() const { return rows_; }
    /** What stands on the sheet in the order in which it was placed: rows as their index, areas as -1 -
     * index.
     */
    const QList<int> &Placed() const { return placed_; }
    const QList<SheetArea> &Areas() const { return areas_; }
    /** Parameters that move the drawing and have no row. */
    const QList<int> &ExtraInterest() const { return extraInterest_; }

    int IndexOf(int row) const; ///< raises RuntimeFailure where the block has no such row
    const SheetRow &RowOf(int row) const { return rows_.at(IndexOf(row)); }
    int RowParam(int row) const { return RowOf(row).param; }
    /** Raw value of the row's parameter. */
    std::int32_t RowValue(int row) const { return table_.Value(RowParam(row)); }
    /** What the row's box shows: what was painted last where a window shows the sheet. */
    QString RowText(int row) const;
    /** Who tells what was painted. */
    void SetPainted(std::function<QString(int row)> painted) { painted_ = std::move(painted); }
    /** Points a free or linked row at another parameter. A free row may point outside the table, and is empty
     * then. */
    void SetRowParam(int row, int p);
    bool InTable(int p) const { return p >= 0 && p <= table_.UpperBound(); }

protected:
    /** Lays the block out. Boxes and click areas are reached by Tab in the order in which they are placed. */
    virtual void Draw(Drawing &d) = 0;
    /** Moves what moves. */
    virtual void Update() {}

    // A row is named by the number of its parameter as the block's table has it.

    int Member() const { return member_; }
    const ParameterTable &values() const { return table_; }
    const SheetRuler &ruler() const { return ruler_; }
    /** Width and height of a row's value box in cells. */
    QSizeF BoxSize(int row) const;
    /** Places a row's value box by its left end and the height of its wire, and its caption. */
    Shape Box(int row, const QPointF &left, CaptionAt captionAt = CaptionAt::Above);
    /** Places a row at the end of a path; its wire leads on out of the sheet. */
    void LastBox(Drawing &d, const Port &from, int row, const QPointF &left);
    /** The same for a path that goes on in another window, by its name. */
    void LastBox(Drawing &d, const Port &from, int row, const QPointF &left, const QString &goesOnIn);
    /** The place of a row's box, of one that stands on the sheet. */
    Shape Placed(int row) const { return Shape(RowOf(row).rect, RowOf(row).node); }
    /** Rows under a title. */
    struct Group {
        QString title;
        QList<int> rows;
    };
    /** Places tables one under another, all of one width: rows one under another with their captions at the
     *  left, in a frame with a title. @return what they take, in cells. */
    QRectF Tables(const QPointF &topLeft, const QList<Group> &groups);
    QRectF Table(const QPointF &topLeft, const QString &title, const QList<int> &rows)
    {
        return Tables(topLeft, {{title, rows}});
    }
    /** A click area that runs its handler while every row named may be written, and else does nothing. */
    void Click(const QString &name, ClickArea::Gesture gesture, const QRectF &cells, const QString &toolTip,
               std::initializer_list<int> rows, std::function<void()> handler);
    /** The same for a two-valued selector: a double click flips it. */
    void ClickToFlip(const QString &name, const QRectF &cells, const QString &toolTip, int row);
    /** The row's text as a number; raises RuntimeFailure where it is none. */
    double RowNumber(int row) const;
    /** Whether the drive follows its references: it runs or jogs. */
    bool IsReferenceEnabled() const;
    /** Another caption than the table's; called before the row is placed. */
    void SetCaption(int row, const QString &caption) { rows_[IndexOf(row)].caption = caption; }
    /** The space for a free row's caption; called before the row is placed. */
    void SetLongestCaption(int row, const QString &caption) { rows_[IndexOf(row)].longestCaption = caption; }
    /** The row's box takes at least so many cells; called before the row is placed. */
    void SetMinimumBoxWidth(int row, double cells);
    void Write(int p, std::int32_t rawValue);
    /** What is written while it lasts is one change. */
    Intent Together() { return {table_, Origin::Switch}; }
    /** Keeps a parameter polled that no row shows, as long as a window shows the sheet. */
    void AddExtraInterest(int p) { extraInterest_.append(p); }

private:
    void MeasureRows();
    /** Brings up to date what the shapes show of the values around them. */
    void UpdateLooks();
    void PlaceTable(const QRectF &frame, const Group &group, double captionWidth);

    ParameterTable &table_;
    std::function<QString(int row)> painted_;
    SheetRuler ruler_;
    int member_;
    QList<SheetRow> rows_;
    QList<SheetArea> areas_;
    QList<int> placed_;
    QList<int> extraInterest_;
    std::unique_ptr<NetValues> results_; ///< of the drawing's net, made when somebody looks at it
};

/** Makes a block's sheet; what BlockDescriptor::sheet holds. */
template<typename Sheet>
std::unique_ptr<BlockSheet> MakeSheet(const BlockDescriptor &descriptor, int member, ParameterTable &table,
                                      const SheetRuler &ruler)
{
    auto sheet = std::make_unique<Sheet>(descriptor, member, table, ruler);
    sheet->Make();
    return sheet;
}

/** "(190) Forward Max Speed". */
inline QString NumberAndName(const QString &number, const QString &name)
{
    return u'(' + number + QStringLiteral(") ") + name;
}

/** The text, or as much of it with three dots behind it. */
inline QString Shortened(const QString &text, int length)
{
    return text.size() <= length ? text : text.left(length) + QStringLiteral("...");
}

} // namespace quorvik
