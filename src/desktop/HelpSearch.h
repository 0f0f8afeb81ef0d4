#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class QHelpSearchEngine;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QUrl;
class QWidget;

namespace quorvik
{

/** The search of the help: a field that searches while one types, and the list of the pages found. */
class HelpSearch : public QObject
{
    Q_OBJECT

public:
    /** The widgets go where the caller puts them. */
    explicit HelpSearch(QObject *parent);

    QLineEdit *Field() const { return field_; }
    QWidget *Found() const { return found_; }
    /** Uses an engine, which indexes the help first where that has not been done. */
    void Use(QHelpSearchEngine *engine);
    /** The words that are looked for, in small letters. */
    QStringList Words() const;
    /** Adds a page to what was found. */
    void Add(const QString &title, const QUrl &page);
    /** One page on in the list, or back; false where there is none. */
    bool MoveInFound(int by);

Q_SIGNALS:
    /** The field got its first letter, or lost its last one. */
    void Began();
    void Ended();
    /** No page has all the words of the field. */
    void NothingFound(const QString &text);
    void PageChosen(const QUrl &url);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Search();
    void ShowFound();
    void Choose(const QListWidgetItem *item);

    QHelpSearchEngine *engine_ = nullptr;
    QLineEdit *field_;
    QWidget *found_;
    QLabel *count_;
    QListWidget *list_;
    QTimer pause_; ///< until the next letter of a word that is being typed
};

} // namespace quorvik
