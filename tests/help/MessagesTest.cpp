#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace quorvik::testing
{

namespace
{

/** Sentences that are no message, with the beginning of a file's path and of the sentence. */
struct NoMessage {
    const char *file;
    const char *beginning;
    const char *why;
};

constexpr NoMessage NoMessages[] = {
    {"batch/", "", "the manual of the command line has them"},
    {"report/CommissioningReport", "", "what a report prints"},
    {"model/Faults.cpp", "", "meaning and remedy of a fault, which the topic Faults shows"},
    {"circuit/", "", "what the window Why Does It Not Run lists, each with what to do"},
    {"blocks/FormWhyNot", "", "the same"},
    {"map/MapMarks.cpp", "", "explains a mark of the map in itself"},
    {"link/LinkReport.cpp", "", "headings of the figures in Link Details"},
    {"wizards/io/IOSetupTexts.cpp", "", "instructions on a Mentor's page"},
    {"wizards/io/FormWizardIO.cpp", "", "the same"},
    {"wizards/io/SelectPages.cpp", "", "the same"},
    {"wizards/basic/FormWizardBasic.cpp", "", "the same"},
    {"wizards/basic/DrivePages.cpp", "", "the same"},
    {"wizards/basic/RunPages.cpp", "", "the same"},
    {"wizards/frame/FinishPage.cpp", "", "the same"},
    {"shell/FormGettingStarted.cpp", "", "a tip"},
    {"shell/MenuTable.cpp", "Wh&y", "a menu entry"},
    {"platform/CommandLine.cpp", "", "help on the command line"},
    {"link/forms/FormSelectCommMode.cpp", "Offline is", "a label beside the choice"},
    {"link/forms/FormCommunications.cpp", "The device that", "a tool tip"},
    {"link/forms/PortList.cpp", "Asks each", "a tool tip"},
    {"trend/forms/CaptureBar.cpp", ": shows it", "a tool tip"},
    {"trend/forms/ChannelLegend.cpp", "Enter adds", "a tool tip"},
};

QString FileText(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << "there is no " << qPrintable(path);
    return QString::fromUtf8(file.readAll());
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
            const auto *excepted = std::ranges::find_if(NoMessages, [&](const NoMessage &none) {
                return source.key().startsWith(QLatin1String(none.file)) &&
                       text.startsWith(QLatin1String(none.beginning));
            });
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
