#pragma once

#include <QPushButton>

namespace quorvik
{

/** A push-on, push-off button that shows its contact open or closed. The caption may have two lines. */
class LatchButton : public QPushButton
{
    Q_OBJECT

public:
    explicit LatchButton(QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quorvik
