#pragma once

#include "blocks/BlockSheet.h"
#include "blocks/diagram/DiagramView.h"
#include "desktop/Form.h"
#include "link/ValueStates.h"
#include "model/ReadInterest.h"
#include "platform/Guard.h"

#include <QList>
#include <initializer_list>

class QLabel;
class QPushButton;
class QTimer;

namespace quorvik
{

class SignalFollower;
class ValueBox;

/**
 * The window of one function block: it shows the block's sheet, rows of caption and value box on a drawing,
 * repainted from the table twice a second. See docs/architecture-blocks.md.
 */
class BlockForm : public Form
{
    Q_OBJECT

public:
    /** @param member the member of a family, which becomes the form's Tag; any number for a block without. */
    BlockForm(Desk &desk, const BlockDescriptor &descriptor, int member);
    ~BlockForm() override;

    /** Shows the block's sheet, takes its read interest and starts its timer. Called once, before it is
     * shown. */
    void Load();

    const Drawing &drawing() const { return sheet_->drawing; }
    const BlockSheet &Sheet() const { return *sheet_; }
    const DiagramView &View() const { return *view_; }
    int RowCount() const { return int(boxes_.size()); }
    bool Shows(int p) const;
    /** Scrolls to the box of a parameter, gives it the focus and pulses it; false where no row shows it. */
    bool Reveal(int p);

    /** What follows the signals of this window. */
    SignalFollower &Follower() const { return *follower_; }

    QSize sizeHint() const override;

protected:
    /** What the window adds to its sheet: buttons, and controls on it. Called once the sheet stands. */
    virtual void Extend() {}
    /** What the window adds to a tick, after its rows and before what moves on the sheet. */
    virtual void Tick() {}

    BlockSheet &sheet() { return *sheet_; }
    /** Adds a button at the left of the button row; it follows the boxes in the tab order. Called in
     * Extend(). */
    QPushButton *AddButton(const QString &name, const QString &caption, const QString &toolTip = {});
    /** The same for any control. */
    void AddToButtonRow(QWidget *control) { buttonRow_.append(control); }

    // A row is named by the number of its parameter as the block's table has it.

    int RowParam(int row) const { return sheet_->RowParam(row); } ///< the number in Label1(row).Tag
    QString RowText(int row) const;                               ///< Text1(row)
    std::int32_t RowValue(int row) const { return sheet_->RowValue(row); }
    QLabel *StaticLabel(const QString &name) const; ///< a label of the drawing, or null
    /** Points a row at another parameter; read interest is the caller's. A free row may point outside the
     * table, and is empty then. */
    void SetRowParam(int row, int p);
    bool InTable(int p) const { return sheet_->InTable(p); }
    /** Caption, tool tip and spoken name of a free row. */
    void SetRowCaption(int row, const QString &caption, const QString &toolTip);
    void Write(int p, std::int32_t rawValue);
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
    /** What stands for a row of the sheet, at the same index. */
    struct RowControls {
        QLabel *label = nullptr;
        ValueBox *box = nullptr;
        Shown shown = {};
    };
    struct GuardedArea {
        ClickArea *area;
        QList<int> rows;
    };

    static void SetTag(QWidget *control, const QString &tag);
    SheetRuler Ruler() const;
    void MakeControls();
    void MakeRow(int index);
    void MakeArea(const SheetArea &area);
    const SheetRow &SheetRowAt(int index) const { return sheet_->Rows().at(index); }
    void Text1_Click(int row);
    void Text1_Change();
    void CommandIOMentor_Click();
    void TimerUpdateScreen_Timer();
    void PaintRowsOf(int p);
    void PaintRow(int index);
    bool PaintValue(int index); ///< whether its text changed
    void PaintEmptyRow(int index);
    void PaintLinkedCaption();
    bool MayWrite(const QList<int> &rows) const;

    const BlockDescriptor &descriptor_;
    int member_;
    QList<RowControls> boxes_;
    ReadInterest interest_;     ///< in the rows, and in what else the drawing hangs on
    ReadInterest trackedParam_; ///< TrackedParam: in what the linked row shows
    QList<GuardedArea> areas_;
    QList<QWidget *> buttonRow_;
    DiagramView *view_;
    SignalFollower *follower_ = nullptr; ///< from Load() on
    std::unique_ptr<BlockSheet> sheet_;  ///< its drawing tells the view
    QTimer *timerUpdateScreen_;
    TickGuard tickGuard_;
    TickGuard stateGuard_;
};

/** Makes a window that is more than its sheet; what BlockDescriptor::make holds. */
template<typename Block> BlockForm *MakeBlock(Desk &desk, const BlockDescriptor &descriptor, int member)
{
    auto *block = new Block(desk, descriptor, member);
    block->Load();
    return block;
}

/** Makes the window of any block, loaded and ready to be shown. */
BlockForm *MakeBlockForm(Desk &desk, const BlockDescriptor &descriptor, int member);

} // namespace quorvik
