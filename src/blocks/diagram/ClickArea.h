#pragma once

#include <QWidget>
#include <functional>

namespace quorvik
{

/** A transparent area on a block diagram that acts on a click or a double click, or on Enter and Space. */
class ClickArea : public QWidget
{
    Q_OBJECT

public:
    enum class Gesture { Click, DoubleClick };

    ClickArea(const QString &name, Gesture gesture, const QString &toolTip, QWidget *parent);

    /** Whether the area's action would be refused now; shown by the pointer. */
    void SetRefused(bool refused);

Q_SIGNALS:
    void Activated();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Gesture gesture_;
    bool refused_ = false;
};

} // namespace quorvik
