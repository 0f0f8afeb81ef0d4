#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace quorvik::help
{

/** One page of the help, as its author wrote it. */
struct Topic {
    QString name;  ///< the page's name, such as "Velocity Loop.htm"
    QString title; ///< its first heading
    QString markdown;
    QStringList keywords; ///< for the index, besides the title
};

/** One line of the table of contents. */
struct ContentsEntry {
    int depth = 0;
    QString title;
    QString topic; ///< empty for a heading without a page of its own
};

/**
 * The help's source: one Markdown file for each topic, and the order of the contents.
 *
 * A file begins with "# Title" and may go on with a line "Index: word; word". Contents are lines indented by
 * two blanks for each level: a topic's name, or a heading in square brackets.
 */
class Topics
{
public:
    /** Reads folder/topics/\*.md and folder/contents.txt; what is wrong goes into problems. */
    void Read(const QString &folder, QStringList &problems);

    const QMap<QString, Topic> &All() const { return topics_; }
    const QList<ContentsEntry> &Contents() const { return contents_; }

    /** Checks that contents and topics name each other, and that every topic of required exists. */
    void Check(const QStringList &required, QStringList &problems) const;

private:
    void ReadTopic(const QString &path, QStringList &problems);
    void ReadContents(const QString &path, QStringList &problems);

    QMap<QString, Topic> topics_;
    QList<ContentsEntry> contents_;
};

/** The whole text of a file, or nothing with a problem told. */
QString ReadText(const QString &path, QStringList &problems);

} // namespace quorvik::help
