#pragma once

#include <QPushButton>

namespace quorvik
{

enum class OperatorSymbol { Run, Stop, Jog };

/** One of the big picture buttons of an operator's station. Lit, it also says so in words. */
class OperatorButton : public QPushButton
{
    Q_OBJECT

public:
    OperatorButton(OperatorSymbol symbol, QWidget *parent);

    /** Whether the command behind the button is in force. */
    bool IsLit() const { return isLit_; }
    void SetLit(bool isLit);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    OperatorSymbol symbol_;
    bool isLit_ = false;
};

} // namespace quorvik
