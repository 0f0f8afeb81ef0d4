#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <cstdio>

namespace quorvik
{

/** One field of the rows that a command prints. */
struct OutputColumn {
    QString key;          ///< in JSON; part of what scripts rely on
    QString heading;      ///< in CSV and above the rows for people
    int width = 0;        ///< for people, in characters; 0 for the last column, which takes what it needs
    bool isRight = false; ///< for people: set to the right, as numbers are
};

/**
 * What a run prints: rows on the standard output, in one of three forms, and all that is no result on the
 * error stream. In JSON each row is an object on a line of its own, with its kind as "type"; a value that is
 * not known is null. In CSV there is one heading, and text that a spreadsheet would take for a formula is
 * defused. Nothing of a text reaches a terminal as a control character.
 */
class BatchOutput
{
public:
    enum class Format : std::uint8_t { Text, Json, Csv };

    BatchOutput(std::FILE *out, std::FILE *errors, Format format = Format::Text);

    void SetFormat(Format format) { format_ = format; }
    Format CurrentFormat() const { return format_; }
    /** Leaves all out that is neither a row nor a failure. */
    void SetQuiet(bool quiet) { isQuiet_ = quiet; }

    /** The rows that follow are of this kind; CSV and text print their headings before the first.
     * @param type the "type" of each JSON object. */
    void Begin(const QString &type, const QList<OutputColumn> &columns);
    /** @param values one for each column: texts, numbers, truth values, or null for what is not known. */
    void Row(const QVariantList &values);
    /** A sentence of the result, for people; on the error stream where the output is for programs. */
    void Say(const QString &sentence);
    /** Why something is not as it should be; on the error stream in any case. */
    void Complain(const QString &sentence);
    /** How far a long operation is, in one line that the next one replaces; shown on a terminal alone. */
    void ShowProgress(const QString &line);
    void EndProgress();

    /** Whether what was printed has arrived: a pipe that was closed takes nothing more. */
    bool IsBroken() const { return isBroken_; }

private:
    void Print(const QByteArray &line);
    void PrintHeading();

    std::FILE *out_;
    std::FILE *errors_;
    Format format_;
    QString type_;
    QList<OutputColumn> columns_;
    bool isHeadingDue_ = false;
    bool isQuiet_ = false;
    bool isBroken_ = false;
    bool isTerminal_;
    bool isProgressShown_ = false;
};

} // namespace quorvik
