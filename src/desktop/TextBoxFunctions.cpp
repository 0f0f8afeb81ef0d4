#include "desktop/TextBoxFunctions.h"

#include <QEvent>
#include <QLineEdit>

namespace quorvik
{

namespace
{

class FocusWatcher : public QObject
{
public:
    explicit FocusWatcher(QLineEdit *textBox)
        : QObject(textBox)
        , textBox_(textBox)
    {
        textBox->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn)
            SelectAllText(textBox_);
        return QObject::eventFilter(watched, event);
    }

private:
    QLineEdit *textBox_;
};

} // namespace

void SelectAllText(QLineEdit *textBox)
{
    textBox->setSelection(0, int(textBox->text().size()));
}

void SelectAllOnFocus(QLineEdit *textBox)
{
    new FocusWatcher(textBox);
}

} // namespace quorvik
