#pragma once

#include <QAbstractButton>

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

    QSize sizeHint() const override;
    /** Pixels that a box needs for a text. */
    int WidthFor(const QString &shownText) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QColor backColor_;
    bool editable_ = false;
};

} // namespace quorvik
