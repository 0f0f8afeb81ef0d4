#include "desktop/HelpSearch.h"

#include "platform/Guard.h"

#include <QHelpSearchEngine>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int PauseMs = 150;
constexpr int MostPages = 60;

} // namespace

HelpSearch::HelpSearch(QObject *parent)
    : QObject(parent)
    , field_(new QLineEdit)
    , found_(new QWidget)
    , count_(new QLabel)
    , list_(new QListWidget)
{
    field_->setObjectName(QStringLiteral("HelpField"));
    field_->setAccessibleName(tr("Search the help"));
    field_->setPlaceholderText(tr("Search the help"));
    field_->setClearButtonEnabled(true);
    field_->installEventFilter(this);
    count_->setWordWrap(true);
    list_->setObjectName(QStringLiteral("HelpFound"));
    list_->setAccessibleName(tr("Pages found"));
    list_->setWordWrap(true);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setResizeMode(QListView::Adjust);
    auto *layout = new QVBoxLayout(found_);
    layout->addWidget(count_);
    layout->addWidget(list_, 1);

    pause_.setSingleShot(true);
    pause_.setInterval(PauseMs);
    On(&pause_, &QTimer::timeout, this, [this] { Search(); });
    On(field_, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text.trimmed().isEmpty()) {
            pause_.stop();
            Search();
            Q_EMIT Ended();
        } else {
            pause_.start();
            Q_EMIT Began();
        }
    });
    On(list_, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) { Choose(item); });
    On(list_, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { Choose(item); });
}

void HelpSearch::Use(QHelpSearchEngine *engine)
{
    engine_ = engine;
    On(engine_, &QHelpSearchEngine::searchingFinished, this, [this] { ShowFound(); });
    // What is typed before the index is made finds nothing yet.
    On(engine_, &QHelpSearchEngine::indexingFinished, this, [this] { Search(); });
    engine_->scheduleIndexDocumentation();
}

QStringList HelpSearch::Words() const
{
    // Marks of a message that was typed or pasted would be operators of the index.
    static const QRegularExpression between(QStringLiteral("[^\\w]+"),
                                            QRegularExpression::UseUnicodePropertiesOption);
    return field_->text().toLower().split(between, Qt::SkipEmptyParts);
}

void HelpSearch::Search()
{
    const QStringList words = Words();
    if (words.isEmpty() || !engine_) {
        list_->clear();
        count_->clear();
        return;
    }
    // The last word may be half typed.
    engine_->search(words.join(u' ') + u'*');
}

void HelpSearch::ShowFound()
{
    list_->clear();
    if (Words().isEmpty())
        return;
    const QList<QHelpSearchResult> pages = engine_->searchResults(0, MostPages);
    for (const QHelpSearchResult &page : pages)
        Add(page.title(), page.url());
    count_->setText(pages.isEmpty()     ? tr("No page has all of these words.")
                    : pages.size() == 1 ? tr("One page")
                                        : tr("%1 pages, the best one first").arg(pages.size()));
    if (pages.isEmpty())
        Q_EMIT NothingFound(field_->text());
}

void HelpSearch::Add(const QString &title, const QUrl &page)
{
    auto *item = new QListWidgetItem(title, list_);
    item->setData(Qt::UserRole, page);
}

void HelpSearch::Choose(const QListWidgetItem *item)
{
    if (item)
        Q_EMIT PageChosen(item->data(Qt::UserRole).toUrl());
}

bool HelpSearch::MoveInFound(int by)
{
    if (list_->count() == 0)
        return false;
    list_->setCurrentRow(std::clamp(list_->currentRow() + by, 0, list_->count() - 1));
    Choose(list_->currentItem());
    return true;
}

bool HelpSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && !Words().isEmpty()) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up) {
            MoveInFound(key == Qt::Key_Down ? 1 : -1);
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (list_->currentItem())
                Choose(list_->currentItem());
            else
                MoveInFound(1);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quorvik
