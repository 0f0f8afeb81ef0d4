#pragma once

#include "blocks/diagram/DiagramView.h"
#include "desktop/Form.h"
#include "model/Model.h"
#include "platform/Guard.h"

#include <QList>
#include <initializer_list>
#include <optional>
#include <span>

class QLabel;
class QPushButton;
class QTimer;

namespace quorvik
{

class ValueBox;

/** One row of a block: its caption, and its parameter's number counted from the block's base. */
struct BlockRow {
    const char *caption;
    int number;
};

/** The number of a last row that shows the parameter which row 0 selects. */
inline constexpr int LinkedRow = -1;
/** The number of a row whose parameter, caption and read interest are the window's own business. */
inline constexpr int FreeRow = -2;

/** What a block window is, apart from its drawing. */
struct BlockSpec {
    const char *name;      ///< FormVelocityLoop
    QString caption;       ///< "Velocity Loop"
    const char *helpTopic; ///< "Velocity Loop.htm"
    std::span<const BlockRow> rows;
    int base = 0;            ///< added to each row's number
    int timerInterval = 500; ///< milliseconds between two ticks
};

/**
 * The window of one function block: rows of caption and value box on a drawing, repainted from the table
 * twice a second. A block adds its drawing and, where something moves, its tick; see
 * docs/architecture-blocks.md.
 */
class BlockForm : public Form
{
    Q_OBJECT

public:
    /** @param member the member of a family, which becomes the form's Tag; -1 for a block without. */
    BlockForm(Desk &desk, const BlockSpec &spec, int member = -1);

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
    /** What the I/O Mentor opens on; a block that has none has no button for it. */
    virtual std::optional<WizardIOStartRecord> IOMentorStart() const { return std::nullopt; }

    /** Width and height of a row's value box in cells. */
    QSizeF BoxSize(int row) const;
    /** Places a row's value box by its left end and the height of its wire, and its caption. */
    Shape Box(int row, const QPointF &left, CaptionAt captionAt = CaptionAt::Above);
    /** Places rows one under another with their captions at the left, in a frame with a title.
     *  @return the frame, in cells. */
    QRectF Table(const QPointF &topLeft, const QString &title, std::initializer_list<int> rows);
    /** Rows under a title. */
    struct Group {
        QString title;
        QList<int> rows;
    };
    /** Places tables one under another, all of one width. @return what they take, in cells. */
    QRectF Tables(const QPointF &topLeft, const QList<Group> &groups);
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

    int RowParam(int row) const;          ///< the number in Label1(row).Tag
    QString RowText(int row) const;       ///< Text1(row)
    double RowNumber(int row) const;      ///< Text1(row) as a number; raises RuntimeFailure where it is none
    std::int32_t RowValue(int row) const; ///< raw value of the row's parameter
    QLabel *StaticLabel(const QString &name) const; ///< a label of the drawing, or null
    /** Points a row at another parameter; read interest is the caller's. A free row may point outside the
     * table, and is empty then. */
    void SetRowParam(int row, int p);
    /** Whether the row's number lies within the table. */
    bool HasParameter(int row) const;
    /** Caption, tool tip and spoken name of a free row. */
    void SetRowCaption(int row, const QString &caption, const QString &toolTip);
    /** What room a free row's caption is given; called before the row is placed. */
    void SetLongestCaption(int row, const QString &caption) { rows_[row].longestCaption = caption; }
    void Write(int p, std::int32_t rawValue);
    /** Keeps a parameter polled that no row shows, until the window closes. */
    void AddExtraInterest(int p);
    /** The row's box takes at least so many cells; called before the row is placed. */
    void SetMinimumBoxWidth(int row, double cells);
    DiagramView &view() { return *view_; }

    void Unload() override;

private:
    struct Row {
        QString caption = {};
        int param = 0;
        bool free = false;
        double width = 0;
        QString longestCaption = {};
        QLabel *label = nullptr;
        ValueBox *box = nullptr;
    };
    struct GuardedArea {
        ClickArea *area;
        QList<int> rows;
    };

    void Text1_Click(int row);
    void Text1_Change();
    void CommandIOMentor_Click();
    void TimerUpdateScreen_Timer();
    bool PaintRow(const Row &row); ///< whether its text changed
    void PaintEmptyRow(const Row &row);
    void PlaceTable(const QRectF &frame, const Group &group, double captionWidth);
    void PaintLinkedCaption();
    bool MayWrite(const QList<int> &rows) const;
    void MeasureRows();

    QList<Row> rows_;
    bool linked_ = false;
    int trackedParam_ = -1; ///< TrackedParam: what the linked row keeps polled, -1 none
    QList<int> extraInterest_;
    QList<GuardedArea> areas_;
    QList<QWidget *> buttonRow_;
    DiagramView *view_;
    QTimer *timerUpdateScreen_;
    TickGuard tickGuard_;
};

/** The tail of every factory: a window ready to be shown. */
template<typename Block> BlockForm *Loaded(Block *block)
{
    block->Load();
    return block;
}

} // namespace quorvik
