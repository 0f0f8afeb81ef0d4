#pragma once

#include <QByteArray>
#include <QHelpEngine>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <memory>

namespace quorvik
{

/** The help file opened for reading: its pages by topic, its contents, index and search. */
class HelpLibrary
{
public:
    /** Opens the file; IsOpen() is false where that failed. */
    HelpLibrary(const QString &helpFile, const QString &indexFolder);

    bool IsOpen() const { return !nameSpace_.isEmpty(); }
    /** Where a page such as "Velocity Loop.htm" lies, or an empty address where there is none. */
    QUrl PageOf(const QString &topic) const;
    /** The pages whose names begin so, in the order of their names. */
    QStringList TopicsLike(const QString &beginning) const;
    QByteArray Data(const QUrl &url) const { return engine_->fileData(url); }
    QHelpEngine &Engine() { return *engine_; }

private:
    std::unique_ptr<QHelpEngine> engine_;
    QString nameSpace_;
};

} // namespace quorvik
