#pragma once

#include "desktop/HelpLibrary.h"

#include <QWidget>

class QTabWidget;
class QTextBrowser;

namespace quorvik
{

class SettingsStore;

/** The help viewer's window: contents, index and search on the left, the page on the right. */
class HelpWindow : public QWidget
{
    Q_OBJECT

public:
    HelpWindow(const QString &helpFile, const QString &indexFolder, SettingsStore &settings);
    ~HelpWindow() override;

    /** Shows the window; where a modal window asks for help, the viewer stays usable beside it. */
    void ShowFor(QWidget *owner);
    void ShowTopic(const QString &topic);
    void ShowContents();
    void ShowSearch();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void AddTabs();
    void AddToolBar();
    void OpenPage(const QUrl &url);
    void SayMissing(const QString &topic);
    void Print();

    QString helpFile_;
    SettingsStore &settings_;
    HelpLibrary library_;
    QTabWidget *tabs_;
    QTextBrowser *page_;
};

} // namespace quorvik
