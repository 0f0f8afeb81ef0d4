#include "model/Model.h"
#include "settings/forms/ExportList.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/FormViewParameters.h"
#include "support/TestDesk.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QPageSize>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

QString RunPdfToText(const QStringList &arguments)
{
    QProcess tool;
    tool.start(QStringLiteral("pdftotext"), arguments);
    EXPECT_TRUE(tool.waitForFinished()) << "pdftotext is needed";
    EXPECT_EQ(tool.exitCode(), 0);
    return QString::fromUtf8(tool.readAllStandardOutput());
}

/** The pages of a PDF file as text, columns kept apart. */
QStringList PagesOf(const QString &path)
{
    QStringList pages = RunPdfToText({QStringLiteral("-layout"), path, QStringLiteral("-")}).split(u'\f');
    pages.removeLast();
    return pages;
}

/** The parameter numbers of the report's rows, in the order in which they are read. */
QStringList NumbersOf(const QStringList &pages)
{
    QStringList numbers;
    for (const QString &page : pages) {
        bool isBody = false;
        for (const QString &line : page.split(u'\n')) {
            if (isBody && !line.trimmed().isEmpty())
                numbers.append(line.simplified().section(u' ', 0, 0));
            isBody = isBody || line.contains(QStringLiteral("Parameter Name"));
        }
    }
    return numbers;
}

QStringList NumbersUpTo(int last)
{
    QStringList numbers;
    for (int i = 0; i <= last; ++i)
        numbers.append(QString::number(i));
    return numbers;
}

class Report : public ::testing::Test
{
protected:
    Report()
    {
        print.ShowPrinter = [this](QPrinter &printer, QWidget *) -> std::optional<PrinterChoice> {
            printer.setPageSize(QPageSize(paper));
            if (choice)
                printer.setCopyCount(choice->copies);
            return choice;
        };
        print.BeforeCopy = [this](QPrinter &printer, int copy) {
            EXPECT_EQ(printer.copyCount(), 1);
            files.append(desk.folder.filePath(QStringLiteral("copy%1.pdf").arg(copy)));
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(files.last());
        };
    }

    /** Prints one copy. @return its pages. */
    QStringList Print()
    {
        files.clear();
        print.mnuFilePrint_Click(&desk.mainWindow);
        EXPECT_EQ(files.size(), 1);
        return PagesOf(files.first());
    }

    /** Opens the list of the changed parameters, which is empty at first. */
    FormViewParameters *OpenChangedList()
    {
        for (int p = 0; p <= desk.model.LastParam; ++p)
            desk.model.ParamTable[p].Preset = desk.model.Value(p);
        OpenViewParameters(desk.desk, print, ReportFilter::ChangedFromDefault);
        return qobject_cast<FormViewParameters *>(desk.forms.At(1));
    }

    TestDesk desk;
    FilePrint print{desk.desk};
    QPageSize::PageSizeId paper = QPageSize::Letter;
    std::optional<PrinterChoice> choice = PrinterChoice{};
    QStringList files;
};

TEST_F(Report, HoldsEveryParameterOnceInsideThePaper)
{
    desk.model.Notes = QString(255, u'W');
    for (const QPageSize::PageSizeId each : {QPageSize::Letter, QPageSize::A4}) {
        paper = each;
        const QStringList pages = Print();
        EXPECT_GE(pages.size(), 7);
        for (int page = 0; page < pages.size(); ++page) {
            EXPECT_TRUE(pages.at(page).contains(QStringLiteral("Page %1\n").arg(page + 1)));
            EXPECT_TRUE(pages.at(page).contains(QStringLiteral("Parameter Name")));
        }
        EXPECT_EQ(NumbersOf(pages), NumbersUpTo(desk.model.LastParam));

        const QSizeF points = QPageSize(each).size(QPageSize::Point);
        static const QRegularExpression word(QStringLiteral(
            "<word xMin=\"([-0-9.]+)\" yMin=\"([-0-9.]+)\" xMax=\"([-0-9.]+)\" yMax=\"([-0-9.]+)\""));
        const QString boxes = RunPdfToText({QStringLiteral("-bbox"), files.first(), QStringLiteral("-")});
        int words = 0;
        for (auto match = word.globalMatch(boxes); match.hasNext(); ++words) {
            const QRegularExpressionMatch box = match.next();
            EXPECT_GE(box.captured(1).toDouble(), 9);
            EXPECT_GE(box.captured(2).toDouble(), 9);
            EXPECT_LE(box.captured(3).toDouble(), points.width() - 9);
            EXPECT_LE(box.captured(4).toDouble(), points.height() - 9);
        }
        EXPECT_GT(words, 434 * 4);
    }
}

TEST_F(Report, TellsTitlesNotesAndHeadsInTheirOrder)
{
    desk.model.Notes = QStringLiteral("first line\r\nsecond line");
    const QString page = Print().first();
    qsizetype position = 0;
    for (const QString &text :
         {QStringLiteral("Page 1"), QStringLiteral("Sarvex Parameters"),
          QStringLiteral("Quorvik Version: " QUORVIK_VERSION),
          QLocale().toString(QDate::currentDate(), QLocale::ShortFormat), QStringLiteral("Notes:"),
          QStringLiteral("first line\n"), QStringLiteral("second line\n"), QStringLiteral("Tag"),
          QStringLiteral("Parameter Name"), QStringLiteral("Preset"), QStringLiteral("Value"),
          QStringLiteral("None")}) {
        position = page.indexOf(text, position);
        ASSERT_GE(position, 0) << text.toStdString();
    }
}

TEST_F(Report, PrintsNotesOfEveryLength)
{
    const struct {
        const char *what;
        QString notes;
        int lines; ///< of the notes, as far as they hold print
    } cases[] = {
        {"none", QString(), 0},
        {"a full line", QString(77, u'n'), 1},
        {"a character more", QString(78, u'n'), 2},
        {"all of one word", QString(255, u'n'), 4},
        {"words", QStringLiteral("nn ").repeated(85), 4},
        {"a long word behind short ones", QStringLiteral("n n ") + QString(100, u'n'), 3},
        {"breaks within", QStringLiteral("n\r\nn\nn\n\nn"), 4},
        {"breaks over more than a page", QStringLiteral("n\n").repeated(127), 127},
    };
    for (const auto &each : cases) {
        desk.model.Notes = each.notes;
        QElapsedTimer took;
        took.start();
        const QStringList pages = Print();
        EXPECT_LT(took.elapsed(), 20000) << each.what;
        static const QRegularExpression notesLine(QStringLiteral("^ *n[n ]*$"));
        QString printed;
        int lines = 0;
        for (const QString &line : pages.join(QString()).split(u'\n'))
            if (notesLine.match(line).hasMatch()) {
                ++lines;
                printed += line;
            }
        EXPECT_EQ(lines, each.lines) << each.what;
        EXPECT_EQ(printed.count(u'n'), each.notes.count(u'n')) << each.what;
        EXPECT_EQ(NumbersOf(pages).size(), desk.model.LastParam + 1) << each.what;
    }
}

TEST_F(Report, NumbersThePagesOfEachCopyFromOne)
{
    choice = PrinterChoice{3, false};
    print.mnuFilePrint_Click(&desk.mainWindow);
    ASSERT_EQ(files.size(), 3);
    const QStringList first = PagesOf(files.first());
    for (const QString &file : files) {
        const QStringList pages = PagesOf(file);
        EXPECT_EQ(pages.size(), first.size());
        EXPECT_TRUE(pages.first().contains(QStringLiteral("Page 1\n")));
    }
}

TEST_F(Report, TakesTheRowsOfTheOpenListInItsOrder)
{
    FormViewParameters *list = OpenChangedList();
    EXPECT_TRUE(NumbersOf(Print()).isEmpty()) << "an empty list prints its heads alone";

    for (const int p : {217, 83, 226})
        desk.model.ParamTable[p].Value = desk.model.ParamTable[p].Preset + 1;
    desk.model.ParamTable[122].Value += 1;
    EXPECT_TRUE(NumbersOf(Print()).isEmpty()) << "the list is not refreshed yet";
    QTest::mouseClick(list->findChild<QWidget *>(QStringLiteral("CommandRefresh")), Qt::LeftButton);
    EXPECT_EQ(NumbersOf(Print()),
              (QStringList{QStringLiteral("83"), QStringLiteral("217"), QStringLiteral("226")}));

    auto *header = list->findChild<QTreeView *>(QStringLiteral("ListView"))->header();
    for (int click = 0; click < 2; ++click)
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(0) + 10, header->height() / 2));
    EXPECT_EQ(NumbersOf(Print()),
              (QStringList{QStringLiteral("226"), QStringLiteral("217"), QStringLiteral("83")}));
}

TEST_F(Report, NothingIsPrintedOnACancelOrToAFile)
{
    choice.reset();
    print.mnuFilePrint_Click(&desk.mainWindow);
    choice = PrinterChoice{1, true};
    desk.asker.Expect(QStringLiteral("Print to file not currently supported!"));
    print.mnuFilePrint_Click(&desk.mainWindow);
    EXPECT_TRUE(files.isEmpty());
}

TEST_F(Report, APrinterThatCannotBeWrittenToIsTold)
{
    print.BeforeCopy = [this](QPrinter &printer, int) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(desk.folder.filePath(QStringLiteral("no/such/folder.pdf")));
    };
    desk.asker.Expect(QStringLiteral("could not be printed"));
    print.mnuFilePrint_Click(&desk.mainWindow);
}

TEST_F(Report, ExportWritesTheShownRowsInTheShownOrder)
{
    FormViewParameters *list = OpenChangedList();
    desk.model.ParamTable[221].Value = 700;
    desk.model.ParamTable[305].Value = 1;
    QTest::mouseClick(list->findChild<QWidget *>(QStringLiteral("CommandRefresh")), Qt::LeftButton);
    auto *header = list->findChild<QTreeView *>(QStringLiteral("ListView"))->header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(1) + 10, header->height() / 2));
    const auto exportTo = [&](const QString &path) {
        list->ShowExport = [path](const QString &, QWidget *) { return std::optional(path); };
        QTest::mouseClick(list->findChild<QWidget *>(QStringLiteral("CommandExport")), Qt::LeftButton);
    };

    const QString csvPath = desk.folder.filePath(QStringLiteral("list.csv"));
    exportTo(csvPath);
    QFile csv(csvPath);
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readAll(),
              QByteArray("Tag,Name,Preset,Value\r\n221,\"Jog Reference\",\"5.00 %\",\"7.00 %\"\r\n"
                         "305,\"Ramp Bypass\",\"False\",\"True\"\r\n"));

    const QString pdfPath = desk.folder.filePath(QStringLiteral("list.PDF"));
    exportTo(pdfPath);
    EXPECT_EQ(NumbersOf(PagesOf(pdfPath)), (QStringList{QStringLiteral("221"), QStringLiteral("305")}));

    desk.asker.Expect(QStringLiteral("The file could not be written"));
    exportTo(desk.folder.filePath(QStringLiteral("no/such/folder.csv")));
}

} // namespace

} // namespace quorvik::testing
