#include "desktop/HelpLibrary.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace quorvik
{

namespace
{

constexpr QLatin1String Stamp("stamp");

} // namespace

HelpLibrary::HelpLibrary(const QString &helpFile, const QString &indexFolder)
{
    QDir().mkpath(indexFolder);
    // The collection and the search index are written to, so they cannot lie beside the program.
    engine_ = std::make_unique<QHelpEngine>(indexFolder + QStringLiteral("/quorvik.qhc"));
    const QString nameSpace = QHelpEngineCore::namespaceName(helpFile);
    if (nameSpace.isEmpty())
        return;
    // Otherwise the engine resolves the collection of an older visit and keeps it as it was.
    engine_->setReadOnly(false);
    if (!engine_->setupData())
        return;

    const QFileInfo info(helpFile);
    const QString stamp = info.absoluteFilePath() + u' ' + info.lastModified().toString(Qt::ISODateWithMs);
    const bool isKnown = engine_->registeredDocumentations().contains(nameSpace);
    if (!isKnown || engine_->customValue(Stamp).toString() != stamp) {
        if (isKnown)
            engine_->unregisterDocumentation(nameSpace);
        if (!engine_->registerDocumentation(info.absoluteFilePath()))
            return;
        engine_->setCustomValue(Stamp, stamp);
        engine_->setupData();
    }
    nameSpace_ = nameSpace;
}

QUrl HelpLibrary::PageOf(const QString &topic) const
{
    if (!IsOpen())
        return {};
    for (const QUrl &url : engine_->files(nameSpace_, QString()))
        if (url.fileName().compare(topic, Qt::CaseInsensitive) == 0)
            return url;
    return {};
}

QStringList HelpLibrary::TopicsLike(const QString &beginning) const
{
    QStringList topics;
    if (IsOpen())
        for (const QUrl &url : engine_->files(nameSpace_, QString()))
            if (url.fileName().startsWith(beginning))
                topics.append(url.fileName());
    topics.sort();
    return topics;
}

} // namespace quorvik
