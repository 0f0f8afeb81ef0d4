#include "desktop/HelpWindow.h"

#include "platform/Guard.h"
#include "platform/SettingsStore.h"

#include <QCloseEvent>
#include <QDesktopServices>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QHelpSearchQueryWidget>
#include <QHelpSearchResultWidget>
#include <QImage>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QResizeEvent>
#include <QScreen>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolBar>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

/** A text browser whose pages come out of the help file. */
class HelpPage : public QTextBrowser
{
public:
    HelpPage(HelpLibrary &library, QWidget *parent)
        : QTextBrowser(parent)
        , library_(library)
    {
    }

protected:
    QVariant loadResource(int type, const QUrl &name) override
    {
        const QUrl url = name.isRelative() ? source().resolved(name) : name;
        if (url.scheme() != QLatin1String("qthelp") || !library_.IsOpen())
            return QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return library_.Data(url);
        const QImage picture = QImage::fromData(library_.Data(url));
        pictures_.insert(name, picture);
        return Fitting(picture);
    }

    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override
    {
        if (name.scheme().startsWith(QLatin1String("http")))
            QDesktopServices::openUrl(name);
        else {
            pictures_.clear();
            QTextBrowser::doSetSource(name, type);
        }
    }

    void resizeEvent(QResizeEvent *event) override
    {
        QTextBrowser::resizeEvent(event);
        if (event->size().width() == event->oldSize().width() || pictures_.isEmpty())
            return;
        for (auto entry = pictures_.cbegin(); entry != pictures_.cend(); ++entry)
            document()->addResource(QTextDocument::ImageResource, entry.key(), Fitting(entry.value()));
        document()->markContentsDirty(0, document()->characterCount());
    }

private:
    /** The picture, no wider than the page: the browser itself would only cut it off. */
    QImage Fitting(const QImage &picture) const
    {
        const int widest = viewport()->width() - 4 * fontMetrics().height();
        return picture.width() <= widest || widest <= 0
                   ? picture
                   : picture.scaledToWidth(widest, Qt::SmoothTransformation);
    }

    HelpLibrary &library_;
    QHash<QUrl, QImage> pictures_; ///< of the page that shows, in their full size
};

/** What a viewer that shows nothing yet opens on. */
constexpr QLatin1String FirstTopic("Getting Started.htm");
constexpr QLatin1String Section("Help");

} // namespace

HelpWindow::HelpWindow(const QString &helpFile, const QString &indexFolder, SettingsStore &settings)
    : helpFile_(helpFile)
    , settings_(settings)
    , library_(helpFile, indexFolder)
    , tabs_(new QTabWidget)
    , page_(new HelpPage(library_, this))
{
    setObjectName(QStringLiteral("HelpViewer"));
    setWindowTitle(tr("Quorvik Help"));
    page_->setObjectName(QStringLiteral("HelpPage"));
    page_->setAccessibleName(tr("Help page"));
    page_->setOpenLinks(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    AddToolBar();
    auto *splitter = new QSplitter(this);
    splitter->addWidget(tabs_);
    splitter->addWidget(page_);
    splitter->setStretchFactor(1, 1);
    layout->addWidget(splitter, 1);
    if (library_.IsOpen())
        AddTabs();
    else
        tabs_->hide();

    const int em = fontMetrics().height();
    const QSize stored(settings.GetSetting(Section, QStringLiteral("Width")).toInt(),
                       settings.GetSetting(Section, QStringLiteral("Height")).toInt());
    const QSize wanted(82 * em, 48 * em);
    resize(stored.isEmpty() ? wanted.boundedTo(screen()->availableSize() * 9 / 10) : stored);
    splitter->setSizes({18 * em, width() - 18 * em});
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

    QHelpSearchEngine *search = engine.searchEngine();
    auto *searchTab = new QWidget;
    auto *searchLayout = new QVBoxLayout(searchTab);
    searchLayout->addWidget(search->queryWidget());
    searchLayout->addWidget(search->resultWidget(), 1);
    tabs_->addTab(searchTab, tr("&Search"));
    On(search->queryWidget(), &QHelpSearchQueryWidget::search, this,
       [search] { search->search(search->queryWidget()->searchInput()); });
    On(search->resultWidget(), &QHelpSearchResultWidget::requestShowLink, this,
       [this](const QUrl &url) { OpenPage(url); });
    search->scheduleIndexDocumentation();
}

void HelpWindow::ShowFor(QWidget *owner)
{
    QWidget *ownerWindow = owner ? owner->window() : nullptr;
    if (ownerWindow && ownerWindow->isModal() && parentWidget() != ownerWindow) {
        // A modal window blocks every window but its own children.
        setParent(ownerWindow, Qt::Window);
    } else if (parentWidget() && !(ownerWindow && ownerWindow->isModal())) {
        setParent(nullptr, Qt::Window);
    }
    show();
    raise();
    activateWindow();
}

void HelpWindow::ShowTopic(const QString &topic)
{
    const QUrl url = library_.PageOf(topic);
    if (url.isEmpty())
        SayMissing(topic);
    else
        OpenPage(url);
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
    tabs_->setCurrentIndex(tabs_->count() - 1);
    if (!library_.IsOpen())
        SayMissing({});
    else
        library_.Engine().searchEngine()->queryWidget()->setFocus();
}

void HelpWindow::OpenPage(const QUrl &url)
{
    page_->setSource(url);
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
    settings_.SaveSetting(Section, QStringLiteral("Width"), QString::number(width()));
    settings_.SaveSetting(Section, QStringLiteral("Height"), QString::number(height()));
    QWidget::closeEvent(event);
}

} // namespace quorvik
