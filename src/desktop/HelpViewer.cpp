#include "desktop/HelpViewer.h"

#include "desktop/HelpWindow.h"

#include <utility>

namespace quorvik
{

HelpViewer::HelpViewer(QString helpFile, QString indexFolder, SettingsStore &settings)
    : helpFile_(std::move(helpFile))
    , indexFolder_(std::move(indexFolder))
    , settings_(settings)
{
}

HelpViewer::~HelpViewer()
{
    delete window_;
}

HelpWindow &HelpViewer::Window(QWidget *owner)
{
    if (!window_)
        window_ = new HelpWindow(helpFile_, indexFolder_, settings_);
    window_->ShowFor(owner);
    return *window_;
}

void HelpViewer::DisplayTopic(const QString &topic, QWidget *owner)
{
    Window(owner).ShowTopic(topic);
}

void HelpViewer::DisplayFound(const QString &topic, const QStringList &words, QWidget *owner)
{
    Window(owner).ShowFound(topic, words);
}

void HelpViewer::DisplayMessage(const QString &text, QWidget *owner)
{
    Window(owner).ShowMessage(text);
}

void HelpViewer::DisplayContents(QWidget *owner)
{
    Window(owner).ShowContents();
}

void HelpViewer::DisplaySearch(QWidget *owner)
{
    Window(owner).ShowSearch();
}

void HelpViewer::Close()
{
    if (window_)
        window_->close();
}

} // namespace quorvik
