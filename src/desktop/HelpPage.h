#pragma once

#include <QHash>
#include <QImage>
#include <QTextBrowser>
#include <QUrl>

namespace quorvik
{

class HelpLibrary;

/** A text browser whose pages come out of the help file. */
class HelpPage : public QTextBrowser
{
    Q_OBJECT

public:
    HelpPage(HelpLibrary &library, QWidget *parent);

    /** Marks each place where one of the words begins a word of the page, and shows the paragraph or the cell
     * of a table that has most of them. */
    void MarkWords(const QStringList &words);
    /** Marks the row of a table that begins at a place of the document, and shows it. */
    void MarkRow(int position);
    /** Shows the next marked place, or the one before; after the last one the first. */
    void ShowMark(bool backward);

protected:
    QVariant loadResource(int type, const QUrl &name) override;
    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QImage Fitting(const QImage &picture) const;
    /** Marks places in the order of the page, and shows one of them. */
    void Mark(const QList<QTextCursor> &places, qsizetype shown);

    HelpLibrary &library_;
    QHash<QUrl, QImage> pictures_; ///< of the page that shows, in their full size
};

} // namespace quorvik
