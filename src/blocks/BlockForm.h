#pragma once

#include "blocks/BlockDescriptor.h"
#include "blocks/diagram/DiagramView.h"
#include "desktop/Form.h"
#include "link/ValueStates.h"
#include "platform/Guard.h"

#include <QList>
#include <initializer_list>

class QLabel;
class QPushButton;
class QTimer;

namespace quorvik
{

class ValueBox;

/**
 * The window of one function block: rows of caption and value box on a drawing, repainted from the table
 * twice a second. A block adds its drawing and, where something moves, its tick; see
 * docs/architecture-blocks.md.
 */
class BlockForm : public Form
{
    Q_OBJECT

public:
    /** @param member the member of a family, which becomes the form's Tag; any number for a block without. */
    BlockForm(Desk &desk, const BlockDescriptor &descriptor, int member);

    /** Draws the block, takes its read interest and starts its timer. Called once, before it is shown. */
    void Load();

    const Drawing &drawing() const { return view_->drawing; }
    const DiagramView &View() const { return *view_; }
    int RowCount() const { return int(rows_.size()); }

    QSize sizeHint() const override;

protected:
    enum class CaptionAt { Above, AboveRight, Below, BelowRight, Left, Right };

    /** Lays the block out. Boxes and click areas are reached by Tab in the order in which they are placed. */
    virtual void Draw(Drawing &d) = 0;
    /** What the block adds to a tick, after its rows. */
    virtual void Tick() {}
    /** The mode on which the I/O Mentor opens; a block that has none leaves it at the last one. */
    virtual std::uint8_t MentorFreqDigMode() const { return desk().WizardIOStart.freqDigMode; }

    // A row is named by the number of its parameter as the block's table has it.

    int Member() const { return member_; }
    /** Width and height of a row's value box in cells. */
    QSizeF BoxSize(int row) const;
    /** Places a row's value box by its left end and the height of its wire, and its caption. */
    Shape Box(int row, const QPointF &left, CaptionAt captionAt = CaptionAt::Above);
    /** Places a row at the end of a path; its wire leads on out of the sheet. */
    void LastBox(Drawing &d, const Port &from, int row, const QPointF &left);
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
    /** Adds a button at the left of the button row; it follows the boxes in the tab order. Called in Draw().
     */
    QPushButton *AddButton(const QString &name, const QString &caption, const QString &toolTip = {});
    /** The same for any control. */
    void AddToButtonRow(QWidget *control) { buttonRow_.append(control); }
    /** A click area that runs its handler while every row named may be written, and else does nothing. */
    ClickArea *Click(const QString &name, ClickArea::Gesture gesture, const QRectF &cells,
                     const QString &toolTip, std::initializer_list<int> rows, std::function<void()> handler);
    /** The same for a two-valued selector: a double click flips it. */
    ClickArea *ClickToFlip(const QString &name, const QRectF &cells, const QString &toolTip, int row);

    int RowParam(int row) const { return RowOf(row).param; } ///< the number in Label1(row).Tag
    QString RowText(int row) const;                          ///< Text1(row)
    double RowNumber(int row) const; ///< Text1(row) as a number; raises RuntimeFailure where it is none
    /** Whether the drive follows its references: it runs or jogs. */
    bool IsReferenceEnabled() const;
    /** Raw value of the row's parameter. */
    std::int32_t RowValue(int row) const { return desk().table.Value(RowParam(row)); }
    QLabel *StaticLabel(const QString &name) const; ///< a label of the drawing, or null
    /** Points a row at another parameter; read interest is the caller's. A free row may point outside the
     * table, and is empty then. */
    void SetRowParam(int row, int p);
    bool InTable(int p) const { return p >= 0 && p <= desk().table.UpperBound(); }
    /** "(190) Forward Max Speed". */
    /** The text, or as much of it with three dots behind it. */
    static QString Shortened(const QString &text, int length)
    {
        return text.size() <= length ? text : text.left(length) + QStringLiteral("...");
    }
    static QString NumberAndName(const QString &number, const QString &name)
    {
        return u'(' + number + QStringLiteral(") ") + name;
    }
    /** Caption, tool tip and spoken name of a free row. */
    void SetRowCaption(int row, const QString &caption, const QString &toolTip);
    /** Another caption than the table's; called before the row is placed. */
    void SetCaption(int row, const QString &caption) { RowOf(row).caption = caption; }
    /** The space for a free row's caption; called before the row is placed. */
    void SetLongestCaption(int row, const QString &caption) { RowOf(row).longestCaption = caption; }
    void Write(int p, std::int32_t rawValue);
    /** Keeps a parameter polled that no row shows, until the window closes. */
    void AddExtraInterest(int p);
    /** The row's box takes at least so many cells; called before the row is placed. */
    void SetMinimumBoxWidth(int row, double cells);
    DiagramView &view() { return *view_; }

    void Unload() override;

private:
    /** All that what a box shows hangs on. */
    struct Shown {
        int param = -1;
        std::int32_t rawValue = 0;
        std::int32_t attributes = 0;
        int accessClass = 0;
        int source = 0; ///< of a linked destination
        ValueState state = ValueState::Set;
        std::int32_t color = 0;

        bool operator==(const Shown &) const = default;
    };
    struct Row {
        int number = 0;
        QString caption = {};
        int param = 0;
        bool free = false;
        double width = 0;
        QString longestCaption = {};
        QLabel *label = nullptr;
        ValueBox *box = nullptr;
        Shown shown = {};

        bool IsLinked() const { return number == LinkedRow; }
        /** Always the same parameter. */
        bool IsFixed() const { return !free && !IsLinked(); }
        QString LabelText() const
        {
            return IsFixed() ? NumberAndName(QString::number(param), caption) : caption;
        }
    };
    struct GuardedArea {
        ClickArea *area;
        QList<int> rows;
    };

    static void SetTag(QWidget *control, const QString &tag);
    int IndexOf(int row) const; ///< raises RuntimeFailure where the block has no such row
    Row &RowOf(int row) { return rows_[IndexOf(row)]; }
    const Row &RowOf(int row) const { return rows_.at(IndexOf(row)); }
    void Text1_Click(int row);
    void Text1_Change();
    void CommandIOMentor_Click();
    void TimerUpdateScreen_Timer();
    void PaintRowsOf(int p);
    void PaintRow(Row &row);
    bool PaintValue(Row &row); ///< whether its text changed
    void PaintEmptyRow(Row &row);
    void PlaceTable(const QRectF &frame, const Group &group, double captionWidth);
    void PaintLinkedCaption();
    bool MayWrite(const QList<int> &rows) const;
    void MeasureRows();

    const BlockDescriptor &descriptor_;
    int member_;
    QList<Row> rows_;
    int trackedParam_ = -1; ///< TrackedParam: what the linked row keeps polled, -1 none
    QList<int> extraInterest_;
    QList<GuardedArea> areas_;
    QList<QWidget *> buttonRow_;
    DiagramView *view_;
    QTimer *timerUpdateScreen_;
    TickGuard tickGuard_;
    TickGuard stateGuard_;
};

/** Makes a block's window, loaded and ready to be shown. */
template<typename Block, const BlockDescriptor &Descriptor> BlockForm *MakeBlock(Desk &desk, int member)
{
    auto *block = new Block(desk, Descriptor, member);
    block->Load();
    return block;
}

} // namespace quorvik
