#include "desktop/StandingMessages.h"

#include "desktop/BoxHelp.h"
#include "desktop/BoxLines.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostParagraphs = 10;
constexpr int FewParagraphs = 3;

QString Joined(const QStringList &paragraphs)
{
    QStringList shown = paragraphs.mid(0, MostParagraphs);
    if (paragraphs.size() > MostParagraphs)
        shown += QStringLiteral("and %1 more.").arg(paragraphs.size() - MostParagraphs);
    // Many short sentences are a list, which must not grow out of the screen.
    return shown.join(shown.size() > FewParagraphs ? QStringLiteral("\r\n") : QStringLiteral("\r\n\r\n"));
}

bool CoversAWindow(const QRect &place, const QWidget *box, const QWidget *main)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [&](const QWidget *window) {
        return window != box && window != main && window->isVisible() &&
               window->frameGeometry().intersects(place);
    });
}

/** In the middle of the main window, or above, below or in the first corner of the screen where no other
 * window stands. */
void Place(QMessageBox *box, const QWidget *main)
{
    box->adjustSize();
    const QRect screen = box->screen()->availableGeometry();
    const QSize frame = box->frameGeometry().size().grownBy({6, 30, 6, 6}).boundedTo(screen.size());
    QRect middle(QPoint(), frame);
    middle.moveCenter(main != nullptr ? main->frameGeometry().center() : screen.center());
    const QPoint farthest = screen.bottomRight() - QPoint(frame.width() - 1, frame.height() - 1);
    const QPoint aside(0, frame.height());
    const QPoint places[] = {middle.topLeft(), middle.topLeft() + aside,     middle.topLeft() - aside,
                             screen.topLeft(), {farthest.x(), screen.top()}, {screen.left(), farthest.y()},
                             farthest};
    const auto *free = std::find_if(std::begin(places), std::end(places), [&](const QPoint &place) {
        const QRect there(place, frame);
        return screen.contains(there) && !CoversAWindow(there, box, main);
    });
    box->move(free == std::end(places) ? places[0] : *free);
}

void OwnedBy(QMessageBox *box, const QWidget *owner)
{
    box->windowHandle()->setTransientParent(owner != nullptr ? owner->windowHandle() : nullptr);
}

} // namespace

QWidget *MainWindowOnScreen()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && qobject_cast<const QMainWindow *>(window) != nullptr;
    });
    return found == windows.end() ? nullptr : *found;
}

StandingMessages::~StandingMessages()
{
    for (const Standing &standing : standing_)
        delete standing.box;
}

void StandingMessages::Show(const QString &text, QMessageBox::Icon icon, const QString &title)
{
    // A box that was just answered may wait for its deletion.
    standing_.removeIf(
        [](const Standing &standing) { return standing.box == nullptr || !standing.box->isVisible(); });
    auto same = std::find_if(standing_.begin(), standing_.end(), [&](const Standing &standing) {
        return standing.box->icon() == icon && standing.box->windowTitle() == title;
    });
    if (same == standing_.end()) {
        standing_.append({new QMessageBox, {text}});
        Open(standing_.last(), icon, title);
    } else if (!same->paragraphs.contains(text)) {
        same->paragraphs.append(text);
        same->box->setText(Joined(same->paragraphs));
        if (CoversAWindow(same->box->frameGeometry(), same->box, MainWindowOnScreen()))
            Place(same->box, MainWindowOnScreen());
    }
}

void StandingMessages::Open(Standing &standing, QMessageBox::Icon icon, const QString &title)
{
    QMessageBox *box = standing.box;
    QWidget *main = MainWindowOnScreen();
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIcon(icon);
    box->setWindowTitle(title);
    box->setTextFormat(Qt::PlainText);
    box->setText(Joined(standing.paragraphs));
    box->setStandardButtons(QMessageBox::Ok);
    box->setDefaultButton(QMessageBox::Ok);
    box->setModal(false);
    KeepLinesWhole(*box);
    HelpOnF1(*box, help_);

    // A dialog that holds the program would hold the box too, unless the box belongs to it; once it is gone
    // the box is the main window's.
    QWidget *dialog = QApplication::activeModalWidget();
    const QWidget *active = QApplication::activeWindow();
    box->setAttribute(Qt::WA_ShowWithoutActivating, active != nullptr && active != main && active != dialog);
    box->winId();
    OwnedBy(box, dialog != nullptr ? dialog : main);
    if (dialog != nullptr && dialog->windowHandle() != nullptr)
        connect(dialog->windowHandle(), &QWindow::visibleChanged, box,
                [box, main = QPointer<QWidget>(main)] { OwnedBy(box, main); });
    Place(box, main);
    box->show();
}

} // namespace quorvik
