#include "desktop/HelpWindow.h"

#include "desktop/HelpPage.h"
#include "desktop/HelpPlace.h"
#include "desktop/HelpSearch.h"
#include "desktop/MessageRows.h"
#include "platform/Guard.h"
#include "platform/SettingsStore.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

/** What a viewer that shows nothing yet opens on. */
constexpr QLatin1String FirstTopic("Getting Started.htm");
constexpr QLatin1String Section("Help");
constexpr QLatin1String Messages("Troubleshooting.htm");
/** In heights of the font: the list on the left, the window as it opens first and where there is little room.
 */
constexpr int ListWidth = 16;
constexpr QSize FirstSize(72, 44);
constexpr QSize LeastSize(42, 26);

/** What the user sees as the window that asks: a window in the frame is one of its own. */
const QWidget *AskedWindow(const QWidget *owner)
{
    const auto *inFrame = qobject_cast<const QMdiSubWindow *>(owner->parentWidget());
    return inFrame ? inFrame : owner->window();
}

/** Of the desktop, asked for now: a widget keeps what it was told when it was shown. */
QMargins FrameOf(const QWidget *window)
{
    const QWindow *handle = window->windowHandle();
    return handle ? handle->frameMargins() : QMargins();
}

QRect PlaceOf(const QWidget *window)
{
    const QRect place = window->window()->geometry().marginsAdded(FrameOf(window->window()));
    return window->isWindow() ? place
                              : QRect(window->mapToGlobal(QPoint()), window->size()).intersected(place);
}

} // namespace

HelpWindow::HelpWindow(const QString &helpFile, const QString &indexFolder, SettingsStore &settings)
    : helpFile_(helpFile)
    , settings_(settings)
    , library_(helpFile, indexFolder)
    , search_(new HelpSearch(this))
    , tabs_(new QTabWidget)
    , page_(new HelpPage(library_, this))
    , splitter_(new QSplitter(this))
{
    setObjectName(QStringLiteral("HelpViewer"));
    setWindowTitle(tr("Quorvik Help"));
    page_->setObjectName(QStringLiteral("HelpPage"));
    page_->setAccessibleName(tr("Help page"));
    page_->setOpenLinks(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    AddToolBar();
    auto *left = new QWidget;
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(fontMetrics().height() / 4, 0, 0, 0);
    leftLayout->addWidget(search_->Field());
    leftLayout->addWidget(tabs_, 1);
    splitter_->addWidget(left);
    splitter_->addWidget(page_);
    splitter_->setStretchFactor(1, 1);
    layout->addWidget(splitter_, 1);
    if (library_.IsOpen())
        AddTabs();
    else
        left->hide();
    AddKeys();

    const int em = fontMetrics().height();
    const QSize stored(settings.GetSetting(Section, QStringLiteral("Width")).toInt(),
                       settings.GetSetting(Section, QStringLiteral("Height")).toInt());
    wanted_ = stored.isEmpty() ? (FirstSize * em).boundedTo(screen()->availableSize() * 9 / 10) : stored;
    resize(wanted_);
    ShareWidth();
}

HelpWindow::~HelpWindow() = default;

void HelpWindow::AddToolBar()
{
    auto *bar = new QToolBar(this);
    layout()->addWidget(bar);
    QAction *back = bar->addAction(tr("&Back"), page_, &QTextBrowser::backward);
    back->setObjectName(QStringLiteral("HelpBack"));
    back->setShortcut(QKeySequence::Back);
    QAction *forward = bar->addAction(tr("&Forward"), page_, &QTextBrowser::forward);
    forward->setShortcut(QKeySequence::Forward);
    QAction *print = bar->addAction(tr("&Print..."));
    print->setObjectName(QStringLiteral("HelpPrint"));
    On(print, &QAction::triggered, this, [this] { Print(); });
    // Links and the way back open pages, too.
    On(page_, &QTextBrowser::sourceChanged, this, [this] { SayPage(); });
    for (QAction *action : {back, forward})
        action->setEnabled(false);
    connect(page_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
}

void HelpWindow::AddTabs()
{
    QHelpEngine &engine = library_.Engine();
    QHelpContentWidget *contents = engine.contentWidget();
    tabs_->addTab(contents, tr("&Contents"));
    On(contents, &QHelpContentWidget::linkActivated, this, [this](const QUrl &url) { OpenPage(url); });
    connect(engine.contentModel(), &QHelpContentModel::contentsCreated, contents, &QTreeView::expandAll);

    auto *indexTab = new QWidget;
    auto *indexLayout = new QVBoxLayout(indexTab);
    auto *filter = new QLineEdit;
    filter->setAccessibleName(tr("Look for"));
    filter->setPlaceholderText(tr("Look for"));
    QHelpIndexWidget *index = engine.indexWidget();
    indexLayout->addWidget(filter);
    indexLayout->addWidget(index, 1);
    tabs_->addTab(indexTab, tr("&Index"));
    On(filter, &QLineEdit::textChanged, index, [index](const QString &text) { index->filterIndices(text); });
    On(filter, &QLineEdit::returnPressed, index, [index] { index->activateCurrentItem(); });
    On(index, &QHelpIndexWidget::documentActivated, this,
       [this](const QHelpLink &link) { OpenPage(link.url); });
    On(index, &QHelpIndexWidget::documentsActivated, this, [this](const QList<QHelpLink> &links) {
        if (!links.isEmpty())
            OpenPage(links.first().url);
    });

    tabs_->addTab(search_->Found(), tr("F&ound"));
    search_->Use(engine.searchEngine());
    On(search_, &HelpSearch::Began, this, [this] { tabs_->setCurrentWidget(search_->Found()); });
    On(search_, &HelpSearch::Ended, this, [this] {
        if (tabs_->currentWidget() == search_->Found())
            tabs_->setCurrentIndex(0);
    });
    // A message as it was shown holds names and values of its case, which stand on no page.
    On(search_, &HelpSearch::NothingFound, this, [this](const QString &text) {
        if (const QString page = PageOfMessage(text); !page.isEmpty())
            search_->Add(tr("Troubleshooting: what is most like it"), library_.PageOf(page));
    });
    On(search_, &HelpSearch::PageChosen, this, [this](const QUrl &url) {
        OpenPage(url);
        page_->MarkWords(search_->Words());
    });
}

void HelpWindow::AddKeys()
{
    const auto add = [this](const QKeySequence &keys, auto &&handler) {
        auto *key = new QShortcut(keys, this);
        On(key, &QShortcut::activated, this, handler);
    };
    add(Qt::CTRL | Qt::Key_F, [this] {
        search_->Field()->setFocus(Qt::ShortcutFocusReason);
        search_->Field()->selectAll();
    });
    add(Qt::Key_F3, [this] { page_->ShowMark(false); });
    add(Qt::SHIFT | Qt::Key_F3, [this] { page_->ShowMark(true); });
    add(Qt::Key_Escape, [this] {
        if (search_->Field()->text().isEmpty()) {
            close();
        } else {
            search_->Field()->clear();
            search_->Field()->setFocus();
        }
    });
    search_->Field()->installEventFilter(this);
}

/** The field keeps the focus while one reads, so its keys for moving move the page. */
bool HelpWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        QScrollBar *bar = page_->verticalScrollBar();
        const std::pair<int, QAbstractSlider::SliderAction> moves[] = {
            {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
            {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
            {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
            {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},
        };
        const bool isInList = key->key() == Qt::Key_Down || key->key() == Qt::Key_Up;
        for (const auto &[move, action] : moves)
            if (key->key() == move && !(isInList && !search_->Words().isEmpty())) {
                bar->triggerAction(action);
                return true;
            }
    }
    return QWidget::eventFilter(watched, event);
}

void HelpWindow::ShowFor(QWidget *owner)
{
    QWidget *ownerWindow = owner ? owner->window() : nullptr;
    QWidget *modal = ownerWindow && ownerWindow->isModal() ? ownerWindow : QApplication::activeModalWidget();
    if (modal && parentWidget() != modal) {
        // A modal window blocks every window but its own children.
        setParent(modal, Qt::Window);
        // What one has looked up is to stay when the question has been answered.
        if (auto *dialog = qobject_cast<QDialog *>(modal))
            connect(dialog, &QDialog::finished, this, [this, dialog] {
                if (parentWidget() != dialog)
                    return;
                const bool wasVisible = isVisible();
                const QPoint place = pos();
                setParent(nullptr, Qt::Window);
                // The new window's frame is not known yet, so that the widget's own move would leave it out.
                if (windowHandle())
                    windowHandle()->setFramePosition(place);
                setAttribute(Qt::WA_ShowWithoutActivating);
                setVisible(wasVisible);
                setAttribute(Qt::WA_ShowWithoutActivating, false);
            });
    } else if (parentWidget() && !modal) {
        setParent(nullptr, Qt::Window);
    }
    if (owner)
        PlaceFor(owner);
    show();
    raise();
    activateWindow();
    search_->Field()->setFocus();
}

/** Leaves the window where it is unless it is not seen yet or hides the one that asks. */
void HelpWindow::PlaceFor(const QWidget *owner)
{
    const QRect asked = PlaceOf(AskedWindow(owner));
    if (asked.isEmpty() || (isVisible() && !PlaceOf(this).intersects(asked)))
        return;
    // Its own frame is not known before it is shown; that of the other will be much the same.
    const QMargins margins = FrameOf(isVisible() ? this : owner->window());
    const QSize frame(margins.left() + margins.right(), margins.top() + margins.bottom());
    if (size() != given_)
        wanted_ = size();
    const int em = fontMetrics().height();
    const auto placed = [&](const QSize &least) {
        return PlaceHelp(asked, wanted_ + frame, least + frame, owner->screen()->availableGeometry(), em / 2);
    };
    QRect place = placed(LeastSize * em);
    // Who asks in the main window wants to read and not to see it.
    if (qobject_cast<const QMainWindow *>(AskedWindow(owner)) && place.intersects(asked))
        place = placed(wanted_);
    given_ = place.size() - frame;
    resize(given_);
    move(place.topLeft());
    ShareWidth();
}

void HelpWindow::ShareWidth()
{
    const int list = std::min(ListWidth * fontMetrics().height(), width() / 3);
    splitter_->setSizes({list, width() - list});
}

void HelpWindow::ShowTopic(const QString &topic)
{
    const QUrl url = library_.PageOf(topic);
    if (url.isEmpty())
        SayMissing(topic);
    else
        OpenPage(url);
}

void HelpWindow::ShowFound(const QString &topic, const QStringList &words)
{
    ShowTopic(topic);
    page_->MarkWords(words);
}

/** The page with the row that quotes most of a message; empty where none does. */
QString HelpWindow::PageOfMessage(const QString &text)
{
    QString page;
    MessageRow best;
    for (const QString &topic : library_.TopicsLike(QStringLiteral("Troubleshooting"))) {
        QTextDocument document;
        document.setHtml(QString::fromUtf8(library_.Data(library_.PageOf(topic))));
        if (const MessageRow row = RowOfMessage(document, text); row.score > best.score) {
            best = row;
            page = topic;
        }
    }
    return page;
}

void HelpWindow::ShowMessage(const QString &text)
{
    const QString page = PageOfMessage(text);
    ShowTopic(page.isEmpty() ? QString(Messages) : page);
    if (const MessageRow row = RowOfMessage(*page_->document(), text); row.position >= 0)
        page_->MarkRow(row.position);
}

void HelpWindow::ShowContents()
{
    tabs_->setCurrentIndex(0);
    if (!library_.IsOpen())
        SayMissing({});
    else if (page_->source().isEmpty())
        ShowTopic(FirstTopic);
}

void HelpWindow::ShowSearch()
{
    ShowContents();
    tabs_->setCurrentWidget(search_->Found());
}

void HelpWindow::OpenPage(const QUrl &url)
{
    page_->setSource(url);
}

void HelpWindow::SayPage()
{
    setWindowTitle(page_->documentTitle().isEmpty() ? tr("Quorvik Help")
                                                    : tr("%1 - Quorvik Help").arg(page_->documentTitle()));
}

void HelpWindow::SayMissing(const QString &topic)
{
    if (!library_.IsOpen())
        page_->setPlainText(
            tr("The help file is missing or cannot be read:\n\n%1\n\nInstall the program again "
               "to get it back.")
                .arg(helpFile_));
    else
        page_->setPlainText(tr("The help file has no page \"%1\".").arg(topic));
}

void HelpWindow::Print()
{
    QPrinter printer;
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted)
        page_->print(&printer);
}

void HelpWindow::closeEvent(QCloseEvent *event)
{
    if (size() != given_)
        wanted_ = size();
    settings_.SaveSetting(Section, QStringLiteral("Width"), QString::number(wanted_.width()));
    settings_.SaveSetting(Section, QStringLiteral("Height"), QString::number(wanted_.height()));
    QWidget::closeEvent(event);
}

} // namespace quorvik
