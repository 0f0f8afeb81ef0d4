#pragma once

#include "generator/Topics.h"

#include <QSet>

namespace quorvik
{
class ParameterTable;
}

namespace quorvik::help
{

/**
 * Turns topics into pages. Besides plain Markdown with tables an author may write:
 *
 * - a line "@217 Its meaning.": a row of a table that adds name, range, factory value and access of parameter
 * 217 from the factory table. Such lines in a row make one table. "@344..348 text" stands for a run of them.
 * The meaning must say more than the parameter's name.
 * - "![caption](picture:FormVelocityLoop)": the picture of a window, as the running program shows it.
 * - a line "{{parameters}}": the table of all parameters.
 * - a line "{{changes}}": what SetChanges() was given.
 * - a line "{{faults}}": a section for each fault: meaning, likely causes in order, what to check, where to
 * look.
 */
class PageWriter
{
public:
    /** @param table holds the factory table. */
    PageWriter(const ParameterTable &table, const Topics &topics, QString pictureFolder, QString outFolder);

    /** The newest section of a list of changes, its headings included. @param changes the whole list, as
     * Markdown with a "## " heading for each version. */
    void SetChanges(const QString &changes);

    /** Writes all pages and copies the pictures they show; dead links and missing pictures go into problems.
     */
    void WriteAll(QStringList &problems);

    /** File names written, relative to the output folder. */
    const QStringList &Files() const { return files_; }

private:
    QString Expand(const Topic &topic, QStringList &problems);
    QString ParameterRow(const QString &line, const QString &topic, QStringList &problems) const;
    QString TableOfParameters() const;
    static QString SectionsOfFaults();
    QString Picture(const QString &name, const QString &caption, const QString &topic, QStringList &problems);
    void CheckLinks(const QString &html, const QString &topic, QStringList &problems) const;

    const ParameterTable &table_;
    const Topics &topics_;
    QString pictureFolder_;
    QString outFolder_;
    QString changes_;
    QStringList files_;
    QSet<QString> pictures_;
};

} // namespace quorvik::help
