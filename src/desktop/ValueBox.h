#pragma once

#include "link/ValueStates.h"

#include <QAbstractButton>
#include <functional>

namespace quorvik
{

/**
 * The box that shows a parameter's value on the colour of its access class. It takes no typing: a click,
 * Enter or Space asks to edit the value.
 */
class ValueBox : public QAbstractButton
{
    Q_OBJECT

public:
    ValueBox(const QString &name, QWidget *parent);

    const QColor &BackColor() const { return backColor_; }
    void SetBackColor(const QColor &color);
    /** Whether a click has an effect, which hand and outline then show. Boxes begin without. */
    void SetEditable(bool editable);
    /** Shows the text; repaints only when it differs. @return whether it did. */
    bool SetText(const QString &shownText);
    ValueState State() const { return state_; }
    /** Where the text comes from, which its marks show. Boxes begin Set, and show none. */
    void SetState(ValueState state);
    /** Who says what the tool tip adds in a second line. It is asked whenever a tip is to be shown, since
     * ages go on; an empty text adds none. */
    void SetDescription(std::function<QString()> describe) { describe_ = std::move(describe); }

    /** Draws the eye to the box for a second. */
    void Pulse();

    QSize sizeHint() const override;
    /** Pixels that a box needs for a text. */
    int WidthFor(const QString &shownText) const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void ShowToolTip(const QPoint &place);

    QColor backColor_;
    ValueState state_ = ValueState::Set;
    std::function<QString()> describe_;
    bool editable_ = false;
    double pulse_ = 0; ///< from 1 to 0 as it fades
};

} // namespace quorvik
