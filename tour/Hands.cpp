#include "tour/Hands.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int menuLimitMs = 3000;
constexpr int keyMs = 8;

/** The menus from the bar down to the one that holds the entry. */
QList<QMenu *> MenusAbove(const QAction *entry)
{
    QList<QMenu *> menus;
    for (const QAction *action = entry; action;) {
        QMenu *holder = nullptr;
        for (QObject *object : action->associatedObjects())
            // The bar keeps a nameless menu for what finds no room on it.
            if (auto *menu = qobject_cast<QMenu *>(object); menu && !menu->objectName().isEmpty())
                holder = menu;
        if (holder)
            menus.prepend(holder);
        action = holder ? holder->menuAction() : nullptr;
    }
    return menus;
}

int Layer(const QWidget *window)
{
    if (window->windowType() == Qt::Popup)
        return 2;
    return window->isModal() ? 1 : 0;
}

} // namespace

QString Hands::Click(QWidget *control)
{
    if (!control || !control->isVisible() || !control->isEnabled())
        return QStringLiteral("a control that should be clicked is not there, or disabled");
    // An option reacts on its mark and its caption, not on the room beside them.
    const bool isOption = control->inherits("QRadioButton") || control->inherits("QCheckBox");
    const QPoint where =
        isOption ? QPoint(control->height() / 2, control->height() / 2) : control->rect().center();
    ++clicks_;
    QTest::mouseClick(control, Qt::LeftButton, {}, where);
    return {};
}

QString Hands::Click(const QString &name)
{
    QWidget *front = QApplication::activeModalWidget();
    const QString failure = Click((front ? front : &program_.Main())->findChild<QWidget *>(name));
    return failure.isEmpty() ? failure : QStringLiteral("%1: %2").arg(name, failure);
}

QString Hands::WalkTo(QAction *entry, bool clickIt)
{
    isBusy_ = true;
    Spot spot;
    QString failure = LeadTo(entry, clickIt, spot);
    isBusy_ = false;
    // The click may open a dialog, in whose loop the next steps are made.
    if (failure.isEmpty() && clickIt) {
        ++clicks_;
        QTest::mouseClick(spot.widget, Qt::LeftButton, {}, spot.place);
    }
    return failure;
}

QString Hands::LeadTo(QAction *entry, bool toTheEntry, Spot &spot)
{
    // Where no window manager runs, nothing has the focus once a dialog has closed, and a program without it
    // closes its menus. A wish for it that comes while the dialog is still going is lost.
    const auto hasFocus = [this] {
        program_.Main().activateWindow();
        return program_.Main().isActiveWindow();
    };
    if (!QTest::qWaitFor(hasFocus, menuLimitMs))
        return QStringLiteral("the main window did not get the focus");
    QMenuBar *bar = program_.Main().menuBar();
    QMenu *menu = nullptr;
    // A menu takes a click only from a pointer that it has seen over the entry, and the display tells it
    // late; so the pointer moves a little, as a hand does, until the entry lights up.
    const auto pointAt = [&](QAction *action) {
        spot.widget = menu ? static_cast<QWidget *>(menu) : bar;
        spot.place = (menu ? menu->actionGeometry(action) : bar->actionGeometry(action)).center();
        int moves = 0;
        const auto isLit = [&] {
            QTest::mouseMove(spot.widget, spot.place + QPoint(moves++ % 2, 0));
            return (menu ? menu->activeAction() : bar->activeAction()) == action;
        };
        return QTest::qWaitFor(isLit, menuLimitMs);
    };
    for (QMenu *next : MenusAbove(entry)) {
        if (pointAt(next->menuAction())) {
            ++clicks_;
            QTest::mouseClick(spot.widget, Qt::LeftButton, {}, spot.place);
        }
        if (!QTest::qWaitFor([next] { return next->isVisible(); }, menuLimitMs))
            return QStringLiteral("the menu %1 did not open").arg(next->objectName());
        menu = next;
    }
    if (!toTheEntry)
        return {};
    if (!entry->isEnabled() || !entry->isVisible())
        return QStringLiteral("the menu entry %1 is disabled").arg(entry->objectName());
    return pointAt(entry) ? QString()
                          : QStringLiteral("the menu entry %1 did not light up").arg(entry->objectName());
}

QString Hands::ChooseMenu(const QString &entry)
{
    QAction *action = program_.Main().Menus().Entry(entry);
    return action ? WalkTo(action, true) : QStringLiteral("there is no menu entry %1").arg(entry);
}

QString Hands::OpenMenu(const QString &menu)
{
    const QMenu *wanted = program_.Main().Menus().Menu(menu);
    if (!wanted || wanted->actions().isEmpty())
        return QStringLiteral("there is no menu %1").arg(menu);
    return WalkTo(wanted->actions().first(), false);
}

void Hands::CloseMenus()
{
    while (QWidget *popup = QApplication::activePopupWidget())
        QTest::keyClick(popup, Qt::Key_Escape);
}

QLineEdit *Hands::FileNameEntry()
{
    const QWidget *dialog = QApplication::activeModalWidget();
    return dialog ? dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")) : nullptr;
}

QString Hands::TypeFileName(const QString &path)
{
    QLineEdit *name = FileNameEntry();
    if (!name)
        return QStringLiteral("the file dialog has no entry for the name");
    // The dialog looks for names that begin so after each key, and must come to it as it does with a user.
    isBusy_ = true;
    name->selectAll();
    QTest::keyClicks(name, path, Qt::NoModifier, keyMs);
    CloseMenus();
    isBusy_ = false;
    return {};
}

QPushButton *Hands::AcceptButton()
{
    const QWidget *dialog = QApplication::activeModalWidget();
    for (QPushButton *button : dialog ? dialog->findChildren<QPushButton *>() : QList<QPushButton *>())
        if (button->isDefault() && button->isVisible() && button->isEnabled())
            return button;
    return nullptr;
}

QString Hands::TypeOver(const QString &text)
{
    auto *entry = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    if (!entry)
        return QStringLiteral("no entry has the focus");
    entry->selectAll();
    QTest::keyClicks(entry, text);
    return {};
}

bool Hands::CanType()
{
    return qobject_cast<QLineEdit *>(QApplication::focusWidget()) != nullptr;
}

QString Hands::TextOf(const QString &name) const
{
    // A value box is a button by kind: it takes clicks, and no typing.
    const auto *button = program_.Main().findChild<QAbstractButton *>(name);
    return button ? button->text() : QString();
}

QWidget *Hands::Modal(const QString &name) const
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->objectName() == name && modal->isVisible() ? modal : nullptr;
}

QWidget *Hands::WindowTitled(const QString &caption) const
{
    for (QMdiSubWindow *child : program_.Main().findChildren<QMdiSubWindow *>())
        if (child->isVisible() && child->windowTitle() == caption)
            return child;
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle() == caption)
            return window;
    return nullptr;
}

QPixmap Hands::Scene() const
{
    const MDIFormMain &main = program_.Main();
    QPixmap scene = program_.Main().grab();
    QWidgetList fronts;
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window != &main && window->isVisible())
            fronts.append(window);
    std::stable_sort(fronts.begin(), fronts.end(),
                     [](const QWidget *a, const QWidget *b) { return Layer(a) < Layer(b); });
    QPainter painter(&scene);
    for (QWidget *window : fronts) {
        const QPoint corner = window->mapToGlobal(QPoint()) - main.mapToGlobal(QPoint());
        painter.drawPixmap(corner, window->grab());
        painter.setPen(main.palette().color(QPalette::Shadow));
        painter.drawRect(QRect(corner, window->size()).adjusted(-1, -1, 0, 0));
    }
    return scene;
}

} // namespace quorvik
