#include "report/pages/ReportPages.h"
#include "map/MapPicture.h"
#include "report/PdfProgram.h"
#include "support/WindowTest.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

namespace quorvik::testing
{

namespace
{

constexpr int manyRows = 300;

class ReportPagesTest : public WindowTest
{
protected:
    ReportPagesTest()
    {
        report.setName = QStringLiteral("pump <7> & more.Svx");
        report.made = QStringLiteral("2026-11-23 09:12 +01:00");
        report.place.site = QStringLiteral("<b>Mill</b> & Sons <img src=\"file:///etc/passwd\">");
        for (int p = 0; p <= desk.table.LastParam; ++p)
            report.rawValues[p] = desk.table.Value(p);
        report.settings.heads = {QStringLiteral("Number"), QStringLiteral("Name"), QStringLiteral("Now")};
        for (int row = 0; row < manyRows; ++row)
            report.settings.rows.append({QString::number(row), QStringLiteral("Name%1").arg(row),
                                         QStringLiteral("first%1 %2last%1")
                                             .arg(row)
                                             .arg(QStringLiteral("word ").repeated(row % 7 * 6))});
    }

    QString Path() const { return folder.filePath(QStringLiteral("report.pdf")); }
    /** The text of each page, in one line. */
    QStringList Pages() const
    {
        QProcess tool;
        tool.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), Path(), QStringLiteral("-")});
        EXPECT_TRUE(tool.waitForFinished()) << "pdftotext is needed";
        QStringList pages = QString::fromUtf8(tool.readAllStandardOutput()).split(u'\f');
        pages.removeLast();
        for (QString &page : pages)
            page = page.simplified();
        return pages;
    }
    QStringList Write(QPageSize::PageSizeId paper = QPageSize::A4)
    {
        ReportPages pages(report, desk.table, paper);
        EXPECT_EQ(pages.WritePdf(Path()), QString());
        const QStringList texts = Pages();
        EXPECT_EQ(pages.PageCount(), texts.size());
        return texts;
    }

    QTemporaryDir folder;
    CommissioningReport report;
};

TEST_F(ReportPagesTest, EveryRowIsWholeUnderItsHeadsAndEveryPageHasItsNumber)
{
    for (const QPageSize::PageSizeId paper : {QPageSize::A4, QPageSize::Letter}) {
        const QStringList pages = Write(paper);
        ASSERT_GT(pages.size(), 6);
        int rows = 0;
        for (int page = 0; page < pages.size(); ++page) {
            const QString &text = pages[page];
            EXPECT_TRUE(text.endsWith(QStringLiteral("Page %1 of %2").arg(page + 1).arg(pages.size())));
            const auto numbersOf = [&text](const char *pattern) {
                QStringList numbers;
                for (const auto &match : QRegularExpression(QLatin1String(pattern)).globalMatch(text))
                    numbers.append(match.captured(1));
                return numbers;
            };
            const QStringList here = numbersOf("\\bfirst(\\d+)");
            EXPECT_EQ(numbersOf("\\blast(\\d+)"), here) << "a row is torn apart";
            EXPECT_EQ(numbersOf("\\bName(\\d+)"), here);
            EXPECT_TRUE(here.isEmpty() || text.contains(QStringLiteral("Number Name Now"))) << page;
            rows += int(here.size());
        }
        EXPECT_EQ(rows, manyRows);
    }
}

TEST_F(ReportPagesTest, WhatIsWrittenStaysText)
{
    report.notes = QStringLiteral("<h1>Notes</h1> &amp;\nsecond line");
    report.settings.rows = {{QStringLiteral("</table><p>"), QStringLiteral("<script>"), QString()}};
    const QString all = Write().join(u' ');
    for (const QString &text :
         {report.place.site, QStringLiteral("pump <7> & more.Svx, 2026-11-23"),
          QStringLiteral("<h1>Notes</h1> &amp; second line"), QStringLiteral("</table><p> <script>")})
        EXPECT_TRUE(all.contains(text)) << qPrintable(text);
}

TEST_F(ReportPagesTest, SaysHowTheSetWasHeldAgainstTheDriveAndWhatIsMissing)
{
    report.verificationText = QStringLiteral("There was no drive.");
    report.recordings = {{folder.filePath(QStringLiteral("gone")), QStringLiteral("Step at noon"), {}}};
    report.rawValues.clear();
    QString all = Write().join(u' ');
    for (const char *words : {"NOT compared with the drive There was no drive.",
                              "Step at noon There is no picture of this recording.",
                              "Nothing is known of the links of this set."})
        EXPECT_TRUE(all.contains(QLatin1String(words))) << words;

    report.verification = Verification::Differs;
    report.differences = {{QStringLiteral("Number")}, {{QStringLiteral("row of a difference")}}, {}};
    all = Write().join(u' ');
    EXPECT_FALSE(all.contains(QStringLiteral("NOT compared")));
    EXPECT_TRUE(all.contains(QStringLiteral("The drive holds other settings")));
    EXPECT_TRUE(all.contains(QStringLiteral("row of a difference")));
}

TEST_F(ReportPagesTest, TheMapShowsTheBlocksOfTheLinksInForce)
{
    const QString thresholds = QStringLiteral("Thresholds");
    EXPECT_FALSE(MapPicture(desk.table).Blocks().contains(thresholds));
    report.rawValues[Param::InternalLink1Source] = Param::VelFeedback;
    report.rawValues[Param::InternalLink1Destination] = Param::ThresholdAInput;
    EXPECT_TRUE(Write().join(u' ').contains(thresholds));

    // A selector that was not read ties nothing in.
    report.rawValues.erase(Param::InternalLink1Destination);
    EXPECT_FALSE(Write().join(u' ').contains(thresholds));
}

TEST_F(ReportPagesTest, TheProgramPrintsTheSameAndTellsWhyItCannot)
{
    const QStringList here = Write();
    PdfWish wish{.path = Path(),
                 .paper = QStringLiteral("letter"),
                 .presets = QStringLiteral(QUORVIK_PRESETS_FILE),
                 .program = QStringLiteral(QUORVIK_REPORT_PROGRAM)};
    QFile::remove(Path());
    wish.paper = QStringLiteral("a4");
    EXPECT_EQ(WritePdf(report, wish), QString());
    EXPECT_EQ(Pages(), here);

    wish.path = folder.filePath(QStringLiteral("no folder/report.pdf"));
    EXPECT_TRUE(WritePdf(report, wish).contains(QStringLiteral("no folder")));
    wish.path = Path();
    wish.presets = folder.filePath(QStringLiteral("missing"));
    const qint64 size = QFileInfo(Path()).size();
    EXPECT_FALSE(WritePdf(report, wish).isEmpty());
    EXPECT_EQ(QFileInfo(Path()).size(), size) << "the report of before is left alone";
}

} // namespace

} // namespace quorvik::testing
