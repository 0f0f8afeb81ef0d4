#include "desktop/EnterKey.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>

namespace quorvik
{

namespace
{

bool IsEnter(const QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *key = static_cast<const QKeyEvent *>(event);
    return (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
           (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

class EnterKey : public QObject
{
public:
    explicit EnterKey(QWidget *window)
        : QObject(window)
        , window_(window)
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == window_ && event->type() == QEvent::Show)
            WatchControls();
        if (watched == window_ || !IsEnter(event))
            return false;
        auto *control = static_cast<QWidget *>(watched);
        QPushButton *button = qobject_cast<QPushButton *>(control);
        if (!button)
            button = DefaultFor(control);
        if (!button || !button->isEnabled())
            return false;
        if (!static_cast<const QKeyEvent *>(event)->isAutoRepeat())
            button->click();
        return true;
    }

private:
    void WatchControls()
    {
        for (QWidget *control : window_->findChildren<QWidget *>())
            if (qobject_cast<QPushButton *>(control) || TakesDefault(control))
                control->installEventFilter(this);
    }

    static bool TakesDefault(const QWidget *control)
    {
        return qobject_cast<const QRadioButton *>(control) || qobject_cast<const QCheckBox *>(control) ||
               qobject_cast<const QComboBox *>(control) || qobject_cast<const QAbstractItemView *>(control);
    }

    QPushButton *DefaultFor(const QWidget *control) const
    {
        // The opened list of a combo box is a window of its own, where Enter picks.
        if (control->window() != window_->window())
            return nullptr;
        for (QPushButton *button : window_->findChildren<QPushButton *>())
            if (button->isDefault() && button->isVisible())
                return button;
        return nullptr;
    }

    QWidget *window_;
};

} // namespace

void MakeEnterPressButtons(QWidget *window)
{
    new EnterKey(window);
}

} // namespace quorvik
