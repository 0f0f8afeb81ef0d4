#pragma once

#include "map/MapPainter.h"

#include <QWidget>
#include <functional>

namespace quorvik
{

class Circuit;

/**
 * Shows the map: zooms, pans, lights the path of what the pointer or the focus is on. It tells which card is
 * to be opened; the window does it.
 */
class MapView : public QWidget
{
    Q_OBJECT

public:
    /** @param circuit gives the circuit of this moment. */
    MapView(MapModel &model, std::function<Circuit &()> circuit, QWidget *parent);

    /** Takes over what the table has now, and paints what changed. */
    void Follow();
    const MapLayout &Layout() const { return layout_; }
    MapLight Light() const;

    double Zoom() const { return zoom_; }
    /** Zooms about a point of the widget. */
    void SetZoom(double zoom, const QPointF &about);
    void ZoomBy(double factor);
    /** All in sight; stays so when the window grows or shrinks, until the next zoom. */
    void Fit();
    void PanBy(const QPointF &pixels);
    /** Brings a card into sight, gives it the focus and pulses it and its row. */
    void Reveal(int card, int row);
    int FocusCard() const { return focusCard_; }
    void SetFocusCard(int card);
    /** The place of a card in the widget. */
    QRectF CardOnScreen(int card) const;

    QSize sizeHint() const override { return layout_.Size().toSize(); }
    QSize minimumSizeHint() const override { return {320, 200}; }

Q_SIGNALS:
    /** A card is to be opened; row -1 for the card as a whole. */
    void Activated(int card, int row);
    /** A menu was asked for, of a row or, -1, of the card as a whole. */
    void MenuAsked(int card, int row, const QPoint &globalPlace);
    /** The card that is lit is another one, or its words are; -1 for none. */
    void LitChanged(int card);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool event(QEvent *event) override;

private:
    QPointF ToMap(const QPointF &pixel) const { return (pixel + origin_) / zoom_; }
    int LitCard() const { return hoverCard_ >= 0 ? hoverCard_ : hasFocus() && isKeyed_ ? focusCard_ : -1; }
    void SetHover(int card, int row);
    void LightUp();
    void HoldInSight();
    void BringIntoSight(int card);
    bool HandleKey(QKeyEvent *event); ///< whether it was one of the map's
    void AskMenuOfFocus();
    bool MoveFocus(int key);
    bool ZoomByKey(QKeyEvent *event);
    QString ToolTipAt(const QPointF &place) const;

    MapModel &model_;
    std::function<Circuit &()> circuit_;
    MapLayout layout_;
    MapPainter painter_;
    double zoom_ = 1;
    QPointF origin_; ///< the widget's top left corner, in pixels of the zoomed map
    bool isFitted_ = true;
    bool isRouted_ = false;
    int focusCard_ = 0;
    bool isKeyed_ = false; ///< keys brought the focus, and its path is lit: nobody looks for one at first
    int hoverCard_ = -1;
    int hoverRow_ = -1;
    std::optional<MapPath> path_;
    int pulsing_ = -1;
    int pulsingRow_ = -1;
    double pulse_ = 0;
    QPointF pressedAt_;
    QPointF lastAt_;
    bool isPressed_ = false;
    bool isPanning_ = false;
};

} // namespace quorvik
