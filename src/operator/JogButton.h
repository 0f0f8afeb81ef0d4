#pragma once

#include "operator/OperatorButton.h"

namespace quorvik
{

/**
 * The Jog button: in force while the left button or the space bar holds it. Whatever else may take the hold
 * away ends it too, and only a new press starts it again.
 */
class JogButton : public OperatorButton
{
    Q_OBJECT

public:
    explicit JogButton(QWidget *parent);

    bool IsHeld() const { return isHeld_; }

    /** Ends the hold, if there is one. */
    void Release();

Q_SIGNALS:
    void MouseDown();
    void MouseUp();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    void Hold();

    bool isHeld_ = false;
};

} // namespace quorvik
