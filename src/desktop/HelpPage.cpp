#include "desktop/HelpPage.h"

#include "desktop/HelpLibrary.h"

#include <QDesktopServices>
#include <QRegularExpression>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTextTable>
#include <algorithm>
#include <map>
#include <set>

namespace quorvik
{

namespace
{

constexpr qsizetype LongWord = 4;

} // namespace

HelpPage::HelpPage(HelpLibrary &library, QWidget *parent)
    : QTextBrowser(parent)
    , library_(library)
{
}

QVariant HelpPage::loadResource(int type, const QUrl &name)
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

void HelpPage::doSetSource(const QUrl &name, QTextDocument::ResourceType type)
{
    if (name.scheme().startsWith(QLatin1String("http")))
        QDesktopServices::openUrl(name);
    else {
        pictures_.clear();
        setExtraSelections({});
        QTextBrowser::doSetSource(name, type);
    }
}

void HelpPage::resizeEvent(QResizeEvent *event)
{
    QTextBrowser::resizeEvent(event);
    if (event->size().width() == event->oldSize().width() || pictures_.isEmpty())
        return;
    for (auto entry = pictures_.cbegin(); entry != pictures_.cend(); ++entry)
        document()->addResource(QTextDocument::ImageResource, entry.key(), Fitting(entry.value()));
    document()->markContentsDirty(0, document()->characterCount());
}

/** The picture, no wider than the page: the browser itself would only cut it off. */
QImage HelpPage::Fitting(const QImage &picture) const
{
    const int widest = viewport()->width() - 4 * fontMetrics().height();
    return picture.width() <= widest || widest <= 0 ? picture
                                                    : picture.scaledToWidth(widest, Qt::SmoothTransformation);
}

void HelpPage::Mark(const QList<QTextCursor> &places, qsizetype shown)
{
    QList<QTextEdit::ExtraSelection> marks;
    for (const QTextCursor &place : places) {
        QTextEdit::ExtraSelection mark;
        mark.cursor = place;
        mark.format.setBackground(palette().highlight());
        mark.format.setForeground(palette().highlightedText());
        marks.append(mark);
    }
    setExtraSelections(marks);
    if (places.isEmpty())
        return;
    QTextCursor before = places[shown];
    before.setPosition(before.selectionStart());
    setTextCursor(before);
    ShowMark(false);
}

void HelpPage::MarkWords(const QStringList &words)
{
    // A short one stands everywhere.
    const bool hasLong =
        std::ranges::any_of(words, [](const QString &word) { return word.size() >= LongWord; });
    QStringList patterns;
    for (const QString &word : words)
        if (!hasLong || word.size() >= LongWord)
            patterns += QRegularExpression::escape(word);
    const QRegularExpression form(QStringLiteral("\\b(?:%1)\\w*").arg(patterns.join(u'|')),
                                  QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::UseUnicodePropertiesOption);
    QList<QTextCursor> places;
    std::map<int, std::set<qsizetype>> wordsOfBlock;
    qsizetype best = 0;
    for (QTextCursor place = document()->find(form, 0); !words.isEmpty() && !place.isNull();
         place = document()->find(form, place)) {
        places.append(place);
        const QString text = place.selectedText();
        const auto word = std::ranges::find_if(
            words, [&](const QString &each) { return text.startsWith(each, Qt::CaseInsensitive); });
        wordsOfBlock[place.blockNumber()].insert(word - words.begin());
        if (wordsOfBlock[place.blockNumber()].size() > wordsOfBlock[places[best].blockNumber()].size())
            best = places.size() - 1;
    }
    Mark(places, best);
}

void HelpPage::MarkRow(int position)
{
    QTextCursor place(document());
    place.setPosition(position);
    if (const QTextTable *table = place.currentTable()) {
        const int row = table->cellAt(position).row();
        QList<QTextCursor> cells;
        for (int column = 0; column < table->columns(); ++column) {
            QTextCursor cell = table->cellAt(row, column).firstCursorPosition();
            cell.setPosition(table->cellAt(row, column).lastPosition(), QTextCursor::KeepAnchor);
            cells.append(cell);
        }
        Mark(cells, 0);
    }
}

void HelpPage::ShowMark(bool backward)
{
    const QList<QTextEdit::ExtraSelection> marks = extraSelections();
    if (marks.isEmpty())
        return;
    const int here = textCursor().position();
    const auto isBefore = [here](const QTextEdit::ExtraSelection &mark) {
        return mark.cursor.selectionEnd() < here;
    };
    const auto isHereOrBefore = [here](const QTextEdit::ExtraSelection &mark) {
        return mark.cursor.selectionEnd() <= here;
    };
    // Found in their order, so that those before this place come first.
    auto next = backward ? std::ranges::partition_point(marks, isBefore)
                         : std::ranges::partition_point(marks, isHereOrBefore);
    if (backward)
        next = next == marks.begin() ? marks.end() - 1 : next - 1;
    else if (next == marks.end())
        next = marks.begin();
    QTextCursor place = next->cursor;
    place.setPosition(place.selectionEnd());
    setTextCursor(place);
    // In the upper part of the page: what follows is what one wants to read.
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(place).top() -
                                  viewport()->height() / 4);
}

} // namespace quorvik
