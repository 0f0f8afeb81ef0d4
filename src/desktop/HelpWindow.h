#pragma once

#include "desktop/HelpLibrary.h"

#include <QWidget>

class QSplitter;
class QTabWidget;

namespace quorvik
{

class HelpPage;
class HelpSearch;
class SettingsStore;

/**
 * The help viewer's window: the search field, contents, index and what was found on the left, the page on the
 * right. What is typed goes to the search field, whatever the window was opened for.
 */
class HelpWindow : public QWidget
{
    Q_OBJECT

public:
    HelpWindow(const QString &helpFile, const QString &indexFolder, SettingsStore &settings);
    ~HelpWindow() override;

    /** Shows the window, beside the one that asks; where that is modal, the viewer stays usable, and outlives
     * it. */
    void ShowFor(QWidget *owner);
    void ShowTopic(const QString &topic);
    void ShowFound(const QString &topic, const QStringList &words);
    /** Opens the page with the row that quotes a message, and marks it. */
    void ShowMessage(const QString &text);
    void ShowContents();
    void ShowSearch();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void AddTabs();
    void AddToolBar();
    void AddKeys();
    void PlaceFor(const QWidget *owner);
    void ShareWidth();
    QString PageOfMessage(const QString &text);
    void SayPage();
    void OpenPage(const QUrl &url);
    void SayMissing(const QString &topic);
    void Print();

    QString helpFile_;
    SettingsStore &settings_;
    HelpLibrary library_;
    HelpSearch *search_;
    QTabWidget *tabs_;
    HelpPage *page_;
    QSplitter *splitter_;
    QSize wanted_; ///< the size that the user has given it
    QSize given_;  ///< the one that it has got for want of room; where it still has that, wanted_ holds
};

} // namespace quorvik
