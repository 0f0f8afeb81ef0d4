#include "desktop/Form.h"

#include "desktop/EnterKey.h"
#include "desktop/HTMLHelp.h"
#include "platform/Guard.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QShortcut>
#include <utility>

namespace quorvik
{

namespace
{

template<typename Window> void PrepareWindow(Window *window, const QString &name, const QString &caption)
{
    window->setObjectName(name);
    window->setWindowTitle(caption);
    auto *helpKey = new QShortcut(QKeySequence(Qt::Key_F1), window);
    helpKey->setContext(Qt::WidgetWithChildrenShortcut);
    On(helpKey, &QShortcut::activated, window, [window] { window->ShowHelp(); });
}

template<typename Window> QPushButton *MakeHelpButton(Window *window)
{
    auto *button = new QPushButton(QStringLiteral("Help"), window);
    button->setObjectName(QStringLiteral("CommandHelp"));
    On(button, &QPushButton::clicked, window, [window] { window->ShowHelp(); });
    return button;
}

} // namespace

Form::Form(Desk &desk, const QString &name, const QString &caption, const QString &helpTopic)
    : desk_(desk)
    , helpTopic_(helpTopic)
{
    setAttribute(Qt::WA_DeleteOnClose);
    PrepareWindow(this, name, caption);
    desk.forms.Add(this);
}

Form::~Form()
{
    // A closed one has left already, and may outlive the desk until the event loop deletes it.
    if (!isUnloaded_)
        desk_.forms.Remove(this);
}

void Form::ShowHelp()
{
    if (!helpTopic_.isEmpty())
        desk_.help.DisplayTopic(helpTopic_, this);
}

void Form::LeaveDesktop()
{
    hide();
    // A window that has the focus and a parent as it goes would leave the focus to that without a word.
    destroy();
}

QPushButton *Form::MakeCommandClose()
{
    auto *button = new QPushButton(QStringLiteral("Close"), this);
    button->setObjectName(QStringLiteral("CommandClose"));
    On(button, &QPushButton::clicked, this, [this] { CommandClose_Click(); });
    return button;
}

QPushButton *Form::MakeCommandHelp()
{
    return MakeHelpButton(this);
}

void Form::closeEvent(QCloseEvent *event)
{
    event->accept();
    // A window may be asked to close again before the event loop deletes it.
    if (std::exchange(isUnloaded_, true))
        return;
    desk_.forms.Remove(this);
    Guarded([this] { Unload(); });
}

DialogForm::DialogForm(Desk &desk, QWidget *owner, const QString &name, const QString &caption,
                       const QString &helpTopic)
    : QDialog(owner)
    , desk_(desk)
    , helpTopic_(helpTopic)
{
    PrepareWindow(this, name, caption);
    MakeEnterPressButtons(this);
}

void DialogForm::ShowHelp()
{
    if (!helpTopic_.isEmpty())
        desk_.help.DisplayTopic(helpTopic_, this);
}

QPushButton *DialogForm::MakeCommandHelp()
{
    return MakeHelpButton(this);
}

QString ControlName(const char *name, int index)
{
    const QString bare = QString::fromLatin1(name);
    return index < 0 ? bare : QStringLiteral("%1(%2)").arg(bare).arg(index);
}

} // namespace quorvik
