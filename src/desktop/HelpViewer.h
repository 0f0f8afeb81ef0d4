#pragma once

#include "desktop/HTMLHelp.h"

#include <QPointer>
#include <QString>

namespace quorvik
{

class HelpWindow;
class SettingsStore;

/**
 * The help viewer of the program. It is built at its first use and remembers its size, and stands
 * beside the window that asks.
 *
 * Where the help file is missing, the viewer says so and names the file.
 */
class HelpViewer : public HTMLHelp
{
public:
    /**
     * @param helpFile path of quorvik.qch.
     * @param indexFolder where the search index may be kept; made when it is missing.
     */
    HelpViewer(QString helpFile, QString indexFolder, SettingsStore &settings);
    ~HelpViewer() override;

    void DisplayTopic(const QString &topic, QWidget *owner) override;
    void DisplayFound(const QString &topic, const QStringList &words, QWidget *owner) override;
    void DisplayMessage(const QString &text, QWidget *owner) override;
    void DisplayContents(QWidget *owner) override;
    void DisplaySearch(QWidget *owner) override;
    void Close() override;

private:
    HelpWindow &Window(QWidget *owner);

    QString helpFile_;
    QString indexFolder_;
    SettingsStore &settings_;
    QPointer<HelpWindow> window_;
};

} // namespace quorvik
