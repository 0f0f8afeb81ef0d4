#include "help/HelpSource.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace quorvik::testing
{

namespace
{

/** Sentences that are no message: where they stand, how they begin, and what they are. */
struct NoMessage {
    const char *file; ///< a pattern for the beginning of the path
    const char *beginning;
    const char *why;
};

constexpr NoMessage NoMessages[] = {
    {"batch/", "", "the manual of the command line has them"},
    {"report/(CommissioningReport|program/)", "", "told to quorvik-batch, which alone starts that program"},
    {"model/Faults", "", "meaning and remedy of a fault, which the topic Faults shows"},
    {"circuit/|blocks/FormWhyNot", "", "what the window Why Does It Not Run lists, each with what to do"},
    {"map/MapMarks", "", "explains a mark of the map in itself"},
    {"link/LinkReport", "", "headings of the figures in Link Details"},
    {"wizards/io/(IOSetupTexts|FormWizardIO|SelectPages)", "", "instructions on a Mentor's page"},
    {"wizards/(basic/(FormWizardBasic|DrivePages|RunPages)|frame/FinishPage)", "", "the same"},
    {"shell/FormGettingStarted", "", "a tip"},
    {"shell/(Lessons|LessonCard)", "", "a step of a lesson"},
    {"shell/StartPage", "", "a label of the start page"},
    {"shell/MenuTable", "Wh&y", "a menu entry"},
    {"platform/CommandLine", "", "help on the command line"},
    {"link/forms/FormSelectCommMode", "Offline is", "a label beside the choice"},
    {"link/forms/FormSelectCommMode", "Online reads", "the same"},
    {"link/forms/FormCommunications", "Choose the port", "a label beside the choice"},
    {"settings/forms/FormSelectDriveModel", "The model stands", "the same"},
    {"link/forms/FormCommunications", "The device that", "a tool tip"},
    {"link/forms/PortList", "Asks each", "a tool tip"},
    {"trend/forms/CaptureBar", ": shows it", "a tool tip"},
    {"trend/forms/ChannelLegend", "Enter adds", "a tool tip"},
};

bool IsNone(const NoMessage &none, const QString &path, const QString &text)
{
    const QRegularExpression file(QStringLiteral("^(?:%1)").arg(QLatin1String(none.file)));
    return path.contains(file) && text.startsWith(QLatin1String(none.beginning));
}

/** The sources without comments, by their path below src. A literal may run over several lines of the code.
 */
QMap<QString, QString> Sources()
{
    const QDir root(QStringLiteral(QUORVIK_HELP_SOURCE "/../src"));
    static const QRegularExpression comments(QStringLiteral(R"(^\s*//.*$|\s//[/ ].*$|/\*(?:.|\n)*?\*/)"),
                                             QRegularExpression::MultilineOption);
    static const QRegularExpression joints(QStringLiteral(R"("\s*\n\s*")"));
    QMap<QString, QString> sources;
    QDirIterator files(root.path(), {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        sources[root.relativeFilePath(path)] = FileText(path).remove(comments).remove(joints);
    }
    return sources;
}

/** A text of the code as it is shown: a line of the box may be several of the text. */
QString Shown(QString text)
{
    static const QRegularExpression breaks(QStringLiteral(R"(\\[rn]|\\u00a0)"));
    return text.replace(breaks, QStringLiteral(" ")).remove(u'\\').simplified();
}

/** What stands between the places that differ from case to case. */
QStringList PiecesOf(const QString &text)
{
    static const QRegularExpression gap(QStringLiteral(R"(\.\.\.|<br>|%\d|(?<=[.!?]) )"));
    QStringList pieces;
    for (const QString &piece : text.split(gap))
        if (piece.trimmed().size() > 2)
            pieces += piece.trimmed();
    return pieces;
}

/** What the rows of the topics quote. */
QStringList Quotes()
{
    static const QRegularExpression row(QStringLiteral(R"(^\| (?!Message)((?:[^|\\]|\\.)+) \|)"),
                                        QRegularExpression::MultilineOption);
    QStringList quotes;
    QDirIterator files(QStringLiteral(QUORVIK_HELP_SOURCE "/topics"), {QStringLiteral("Troubleshooting*.md")},
                       QDir::Files);
    while (files.hasNext()) {
        QRegularExpressionMatchIterator rows = row.globalMatch(FileText(files.next()));
        while (rows.hasNext())
            quotes += rows.next().captured(1).remove(u'\\');
    }
    return quotes;
}

bool IsSentence(const QString &text)
{
    static const QRegularExpression end(QStringLiteral(R"((?<!\.\.)[.!?]"?$)"));
    static const QRegularExpression word(QStringLiteral("\\b[A-Za-z]{2,}"));
    return text.contains(end) && text.count(word) >= 3;
}

} // namespace

TEST(MessageTopics, QuoteWhatTheProgramSays)
{
    QString said;
    for (const QString &source : Sources())
        said += source;
    said = Shown(said);
    const QStringList quotes = Quotes();
    EXPECT_FALSE(quotes.isEmpty());
    for (const QString &quote : quotes)
        for (const QString &piece : PiecesOf(quote))
            EXPECT_TRUE(said.contains(piece)) << qPrintable(piece);
}

TEST(MessageTopics, HaveARowForEachSentenceThatTheProgramSays)
{
    static const QRegularExpression literal(QStringLiteral(R"re("((?:[^"\\\n]|\\.)*)")re"));
    const QStringList quotes = Quotes();
    const QMap<QString, QString> sources = Sources();
    QStringList missing;
    std::set<const NoMessage *> used;
    for (auto source = sources.begin(); source != sources.end(); ++source) {
        QRegularExpressionMatchIterator literals = literal.globalMatch(source.value());
        while (literals.hasNext()) {
            const QString text = Shown(literals.next().captured(1));
            if (!IsSentence(text))
                continue;
            const auto *excepted = std::ranges::find_if(
                NoMessages, [&](const NoMessage &none) { return IsNone(none, source.key(), text); });
            if (excepted != std::end(NoMessages)) {
                used.insert(excepted);
                continue;
            }
            const QStringList pieces = PiecesOf(text);
            if (std::ranges::none_of(quotes, [&](const QString &quote) {
                    return std::ranges::all_of(pieces,
                                               [&](const QString &piece) { return quote.contains(piece); });
                }))
                missing += source.key() + QStringLiteral(": ") + text;
        }
    }
    EXPECT_EQ(missing.join(u'\n').toStdString(), "") << "give each a row in a topic Troubleshooting";
    for (const NoMessage &none : NoMessages)
        EXPECT_TRUE(used.contains(&none))
            << none.file << " has no \"" << none.beginning << "\", " << none.why;
}

} // namespace quorvik::testing
