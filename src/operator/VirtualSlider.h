#pragma once

#include <QAbstractSlider>
#include <QString>
#include <cstdint>

namespace quorvik
{

/**
 * A vertical slider whose upper end stands for Min and whose lower end for Max, either of which may be the
 * greater one. It shows a scale between the two.
 *
 * The wheel moves it only while it has the focus: a page scrolled by accident must not move a machine.
 */
class VirtualSlider : public QAbstractSlider
{
    Q_OBJECT

public:
    explicit VirtualSlider(QWidget *parent);

    int Min() const { return min_; }
    int Max() const { return max_; }
    int LargeChange() const { return pageStep(); }

    /**
     * Sets both ends and moves the position between them without a signal.
     * @param min raw value of the upper end.
     * @param max raw value of the lower end.
     * @param largeChange step of a click beside the handle, 1 or more.
     */
    void SetLimits(std::int16_t min, std::int16_t max, int largeChange);

    /** As SetLimits(), with the ends that a slider has before it is set up. */
    void SetDesignLimits();

    /** The texts at the upper end and the lower end of the scale. */
    void SetScaleTexts(const QString &topText, const QString &bottomText);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    /** Where the drawing begins, which stands in the middle of the widget. */
    int Left() const;
    QRect HandleRect() const;
    int TravelTop() const;
    int TravelLength() const;
    bool TopIsGreater() const { return min_ >= max_; }
    void DrawScale(QPainter &painter) const;
    void DrawHandle(QPainter &painter) const;

    int min_ = 0;
    int max_ = 0;
    int grabOffset_ = 0; ///< from the handle's middle to the pointer while it is dragged
    QString topText_;
    QString bottomText_;
};

} // namespace quorvik
