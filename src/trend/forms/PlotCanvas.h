#pragma once

#include "trend/forms/PlotBoard.h"

#include <array>

namespace quorvik
{

/**
 * The canvas of the plots, with mouse and keys. Curves are drawn when there is something new; cursors, the
 * box of a zoom and the focus are painted over them, so that moving them costs nothing.
 */
class PlotCanvas : public QCustomPlot
{
public:
    /** @param view must outlive it. */
    PlotCanvas(TrendView &view, QWidget *parent);
    ~PlotCanvas() override;

    PlotBoard &Board() { return board_; }
    const PlotBoard &Board() const { return board_; }
    /** The picture is out of date; it is drawn with the next turn of the event loop, once. */
    void Refresh();
    /** Draws now. */
    void Redraw();
    /** Where something would be dropped; nothing takes the mark away. */
    void ShowDrop(std::optional<int> plot);
    /** The cursor that the keys move, 0 or 1; -1 while there is none. */
    int ActiveCursor() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum class Drag : std::uint8_t { None, Click, Box, Pan, Cursor };

    bool TakeKey(int key, Qt::KeyboardModifiers modifiers);
    void MoveCursor(int key, Qt::KeyboardModifiers modifiers);
    void MoveWindow(int key);
    void ChooseCursor(int which);
    void SetCursorAt(int which, qint64 timeUs);
    void RemoveCursors();
    void ZoomValues(double factor);
    void ShowAll();
    /** What a zoom by the mouse would show; a flat one is of the time alone, and as high as all plots. */
    QRectF Box() const;
    void TakeBox();
    int CursorNear(const QPointF &position) const;
    void FollowPointer(const QPointF &position);

    TrendView &view_;
    PlotBoard board_;
    Drag drag_ = Drag::None;
    QPointF pressedAt_;
    QPointF pointer_;
    PlotWindow pressedWindow_;
    std::array<std::optional<qint64>, 2> cursorsBefore_;
    std::optional<int> drop_;
    int active_ = 0;
    bool isSpaceDown_ = false;
    bool isDue_ = false;
};

} // namespace quorvik
