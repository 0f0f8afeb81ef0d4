#include "report/forms/FormCommissioningReport.h"
#include "report/forms/ScriptedReport.h"
#include "support/WindowTest.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPrintPreviewWidget>
#include <QProcess>

namespace quorvik::testing
{

namespace
{

class CommissioningReportTest : public WindowTest
{
protected:
    void Open()
    {
        form = Show<FormCommissioningReport>(host);
        form->ChooseFile = [this](const QString &name) {
            proposed = name;
            return std::optional(Path());
        };
    }
    QString Path() const { return folder.filePath(QStringLiteral("report.pdf")); }
    QString Line() const { return Find<QLabel>("LabelVerification")->text(); }
    QString Pdf() const
    {
        QProcess tool;
        tool.start(QStringLiteral("pdftotext"), {Path(), QStringLiteral("-")});
        EXPECT_TRUE(tool.waitForFinished()) << "pdftotext is needed";
        return QString::fromUtf8(tool.readAllStandardOutput());
    }

    QTemporaryDir folder;
    ScriptedReport host{desk};
    QPointer<FormCommissioningReport> form;
    QString proposed;
};

TEST_F(CommissioningReportTest, IsNoLongerVerifiedOnceASettingIsAnotherOne)
{
    Open();
    EXPECT_TRUE(Line().contains(Name("not compared")));
    Click("CommandCompare");
    EXPECT_EQ(Line(), host.verification.text);
    desk.table.Signals().Changed({Param::VelFeedback, 0, 1, ChangeCause::Drive});
    EXPECT_FALSE(QTest::qWaitFor([this] { return Line() != host.verification.text; }, 700))
        << "a measured value has moved";
    desk.table.SetParamValue(Param::FwdAccelA, 77, true, true);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Line().contains(Name("not compared")); }));
}

TEST_F(CommissioningReportTest, APdfOnLineIsComparedAnewAndKeepsThePlace)
{
    host.place.site = QStringLiteral("Mill 3");
    Open();
    EXPECT_EQ(Find<QLineEdit>("TextSite")->text(), Name("Mill 3"));
    QTest::keyClicks(Find("TextPerson"), QStringLiteral("J. Frost"));
    Click("CommandPdf");
    EXPECT_EQ(host.comparisons, 0) << "off line there is nothing to read";
    EXPECT_TRUE(host.place.person.isEmpty()) << "nobody asked for that";
    EXPECT_TRUE(Pdf().contains(Name("NOT compared with the drive")));
    EXPECT_EQ(proposed, Name("Commissioning Report pump.pdf"));

    desk.table.SetPortOpen(true);
    Find<QCheckBox>("CheckKeep")->setChecked(true);
    Click("CommandPdf");
    EXPECT_EQ(host.comparisons, 1);
    EXPECT_EQ(host.place.person, Name("J. Frost"));
    const QString text = Pdf();
    for (const char *words : {"The drive holds these settings", "Mill 3", "J. Frost"})
        EXPECT_TRUE(text.contains(Name(words))) << words;
}

TEST_F(CommissioningReportTest, ChoicesReachThePagesAndTheirFailuresAreTold)
{
    StoredRecording good;
    good.path = QStringLiteral("a");
    StoredRecording bad;
    bad.path = QStringLiteral("b");
    bad.failure = QStringLiteral("It is damaged.");
    host.recordings = {good, bad};
    Open();
    auto *list = Find<QListWidget>("ListRecordings");
    ASSERT_EQ(list->count(), 1);
    list->item(0)->setCheckState(Qt::Checked);
    Click("CheckFaults");
    EXPECT_TRUE(QTest::qWaitFor([this] { return host.last.recordings == QStringList{Name("a")}; }));
    EXPECT_EQ(host.last.leftOut, std::set{ReportPart::Faults});
    EXPECT_EQ(Find<QPrintPreviewWidget>("Preview")->pageCount(), 3);

    form->ChooseFile = [this](const QString &) {
        return std::optional(folder.filePath(QStringLiteral("no folder/report.pdf")));
    };
    desk.asker.Expect("no folder");
    Click("CommandPdf");
    EXPECT_FALSE(Find("LabelOutcome")->isVisible());
}

TEST_F(CommissioningReportTest, MayBeClosedWhileTheDriveIsRead)
{
    Open();
    desk.table.SetPortOpen(true);
    host.whileReading = [this] {
        form->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    Click("CommandPdf");
    EXPECT_FALSE(form);
    EXPECT_FALSE(QFileInfo::exists(Path()));
}

} // namespace

} // namespace quorvik::testing
