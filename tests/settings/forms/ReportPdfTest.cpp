#include "settings/forms/ExportList.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/FormViewParameters.h"
#include "support/WindowTest.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QPageSize>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTreeView>
#include <csignal>
#include <sys/resource.h>

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
std::string NumbersOf(const QStringList &pages)
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
    return numbers.join(u' ').toStdString();
}

class Report : public WindowTest
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
    void OpenChangedList()
    {
        for (int p = 0; p <= desk.table.LastParam; ++p)
            Record(p).Preset = P(p);
        OpenViewParameters(desk.desk, print, ReportFilter::ChangedFromDefault);
        window = desk.forms.At(1);
    }
    void ClickHead(int column) const
    {
        auto *header = Find<QTreeView>("ListView")->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
    }

    /** Exports under a name without its suffix, as one kind. */
    void Export(const char *name, int kind)
    {
        desk.document.FileName = desk.folder.filePath(Name("set.Svx"));
        InModal([this] { Click("CommandExport"); },
                [=](const Controls &dialog) {
                    QTest::keyClick(dialog.Find("fileTypeCombo"), kind == 0 ? Qt::Key_Home : Qt::Key_End);
                    dialog.Find<QLineEdit>("fileNameEdit")->setText(Name(name));
                    dialog.Find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Save)->click();
                });
    }

    FilePrint print{desk.desk};
    QPageSize::PageSizeId paper = QPageSize::Letter;
    std::optional<PrinterChoice> choice = PrinterChoice{};
    QStringList files;
};

TEST_F(Report, HoldsEveryParameterOnceInsideThePaper)
{
    std::string everyNumber;
    for (int p = 0; p <= desk.table.LastParam; ++p)
        everyNumber += std::to_string(p) + (p == desk.table.LastParam ? "" : " ");
    for (const bool isLetter : {true, false}) {
        paper = isLetter ? QPageSize::Letter : QPageSize::A4;
        desk.document.Notes = isLetter ? QString(255, u'@') : QStringLiteral("@\n").repeated(127);
        const QStringList pages = Print();
        EXPECT_GE(pages.size(), 7);
        EXPECT_EQ(pages.join(QString()).count(u'@'), isLetter ? 255 : 127);
        const int notesPages = isLetter ? 0 : 2;
        for (int page = 0; page < pages.size(); ++page) {
            EXPECT_TRUE(pages.at(page).contains(QStringLiteral("Page %1\n").arg(page + 1)));
            EXPECT_NE(pages.at(page).contains(QStringLiteral("Parameter Name")), page < notesPages);
        }
        EXPECT_EQ(NumbersOf(pages), everyNumber);

        const QSizeF points = QPageSize(paper).size(QPageSize::Point);
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
    desk.document.Notes = QStringLiteral("first line\r\nsecond line");
    const QString page = Print().first();
    qsizetype position = 0;
    for (const QString &text : QStringLiteral("Page 1|Sarvex Parameters|Quorvik Version: " QUORVIK_VERSION
                                              "|%1|Notes:|first line\n|second line\n|Tag|Parameter Name|"
                                              "Preset|Value|None")
                                   .arg(QLocale().toString(QDate::currentDate(), QLocale::ShortFormat))
                                   .split(u'|')) {
        position = page.indexOf(text, position);
        ASSERT_GE(position, 0) << text.toStdString();
    }
}

TEST_F(Report, NumbersThePagesOfEachCopyFromOne)
{
    choice = PrinterChoice{3, false};
    print.mnuFilePrint_Click(&desk.mainWindow);
    ASSERT_EQ(files.size(), 3);
    for (const QString &file : files)
        EXPECT_TRUE(PagesOf(file).first().contains(QStringLiteral("Page 1\n")));
}

TEST_F(Report, TakesTheRowsOfTheOpenListInItsOrder)
{
    OpenChangedList();
    for (const int p : {122, 217, 83, 226})
        P(p) += 1;
    EXPECT_EQ(NumbersOf(Print()), "") << "the list is not refreshed yet, and prints its heads alone";
    Click("CommandRefresh");
    EXPECT_EQ(NumbersOf(Print()), "83 217 226");
    ClickHead(0);
    ClickHead(0);
    Click("CommandRefresh");
    EXPECT_EQ(NumbersOf(Print()), "226 217 83") << "a refresh keeps the order";
}

TEST_F(Report, ListShowsWhatItsOptionsSay)
{
    OpenChangedList();
    P(221) = 700;
    EXPECT_EQ(Text("LabelTotal"), "Total: 0");
    Click("CommandRefresh");
    EXPECT_EQ(Text("LabelTotal"), "Total: 1");
    const QAbstractItemModel *shown = Find<QTreeView>("ListView")->model();
    EXPECT_EQ(shown->index(0, 3).data().toString(), QStringLiteral("7.00 %"));
    Click("OptionView(0)");
    EXPECT_EQ(Text("LabelTotal"), "Total: 434");
    EXPECT_EQ(shown->index(9, 0).data().toString(), QStringLiteral("  9"));
    OpenViewParameters(desk.desk, print, ReportFilter::ChangedFromDefault);
    EXPECT_EQ(desk.forms.Count(), 2);
    EXPECT_EQ(Text("LabelTotal"), "Total: 1") << "the open list changes its filter";
}

TEST_F(Report, NothingIsPrintedOnACancelOrToAFile)
{
    desk.asker.Expect("Print to file not currently supported!");
    for (const auto &refused : {std::optional<PrinterChoice>(), std::optional(PrinterChoice{1, true})}) {
        choice = refused;
        print.mnuFilePrint_Click(&desk.mainWindow);
    }
    EXPECT_TRUE(files.isEmpty());
}

TEST_F(Report, APrinterThatCannotBeWrittenToIsTold)
{
    print.BeforeCopy = [this](QPrinter &printer, int) {
        printer.setOutputFileName(desk.folder.filePath(QStringLiteral("no/such/folder.pdf")));
    };
    desk.asker.Expect("could not be printed");
    print.mnuFilePrint_Click(&desk.mainWindow);
}

TEST_F(Report, ExportWritesTheShownRowsInTheShownOrder)
{
    OpenChangedList();
    P(221) = 700;
    P(305) = 1;
    Click("CommandRefresh");
    ClickHead(1);
    Export("list", 0);
    QFile csv(desk.folder.filePath(QStringLiteral("list.csv")));
    const QByteArray rows = "Tag,Name,Preset,Value\r\n221,\"Jog Reference\",\"5.00 %\",\"7.00 %\"\r\n"
                            "305,\"Ramp Bypass\",\"False\",\"True\"\r\n";
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readAll(), rows);
    Export("list", 1);
    EXPECT_EQ(NumbersOf(PagesOf(desk.folder.filePath(Name("list.pdf")))), "221 305");

    desk.asker.Expect("\"list.csv\" exists already", MsgAnswer::No);
    Export("list", 0);
    desk.asker.Expect("\"list.csv\" exists already", MsgAnswer::Yes);
    desk.asker.Expect("was not written");
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    auto *oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full = {16, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    Export("list", 0);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    QFile after(csv.fileName());
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), rows) << "a full disk takes nothing away";
}

} // namespace

} // namespace quorvik::testing
