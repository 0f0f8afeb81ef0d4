#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace quorvik
{

/**
 * What the help is found by: the words of its topics, and those that it says of single parameters. The build
 * writes them beside the help file, so that the program need not read its pages.
 */
struct HelpWords {
    struct Topic {
        QString page; ///< "Velocity Loop.htm"
        QString title;
        QString chapter; ///< the heading it stands under in the contents
        QStringList keywords = {};
        QString words = {};
    };

    QList<Topic> topics;
    QHash<int, QString> parameters; ///< by number

    /** Each different word of a text once, those of one or two letters left out. */
    static QString Essence(const QString &text);

    QByteArray ToText() const;
    /** Lines that are no such text are left out. */
    static HelpWords FromText(const QByteArray &text);
    /** Nothing where the file cannot be read: what else there is can still be found. */
    static HelpWords Load(const QString &path);

    /** The topic with that page, or null. */
    const Topic *Of(const QString &page) const;
};

} // namespace quorvik
