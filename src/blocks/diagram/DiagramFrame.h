#pragma once

#include <QScrollArea>

namespace quorvik
{

class DiagramView;

/** Carries a drawing: scaled to the window, or at a zoom of the user's own with scroll bars where needed. */
class DiagramFrame : public QScrollArea
{
    Q_OBJECT

public:
    static constexpr int SmallestZoom = 50;
    static constexpr int LargestZoom = 300;

    DiagramFrame(DiagramView *view, QWidget *parent);

    /** Percent of the size at the user's font; 0 while the drawing follows the window. */
    int Zoom() const { return zoom_; }
    /** Takes the nearest zoom at which text can be read. The middle stays where it is. @param percent 0 to
     * follow the window. */
    void SetZoom(int percent);
    void Fit() { SetZoom(0); }
    /** The next step of 25 % above or below what is shown. The value box in focus stays in its place, or else
     * the middle. */
    void ZoomIn();
    void ZoomOut();

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    /** With Ctrl it zooms, and what the pointer is on stays under it. */
    void wheelEvent(QWheelEvent *event) override;

private:
    /** The same zoom in pixels of another screen. */
    void FollowScreen() { SetZoom(zoom_); }
    void Step(int steps, const QPointF &anchor);
    void ZoomTo(int percent, const QPointF &anchor);
    /** What the user looks at, in pixels of the viewport. */
    QPointF Anchor() const;

    DiagramView *view_;
    int zoom_ = 0;
    int turned_ = 0; ///< of the wheel, until it makes a step
};

} // namespace quorvik
