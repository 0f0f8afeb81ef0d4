#include "shell/EveryWindow.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "blocks/FormTripRecord.h"
#include "blocks/FormWhyNot.h"
#include "compare/forms/FormCompare.h"
#include "compare/forms/ScriptedHost.h"
#include "desktop/FormModifyParameterValue.h"
#include "emulator/forms/FormIOSimulator.h"
#include "find/forms/FormFind.h"
#include "find/forms/ScriptedFind.h"
#include "history/forms/FormHistory.h"
#include "history/forms/FormStateAt.h"
#include "history/forms/ScriptedHistory.h"
#include "link/DriveLink.h"
#include "link/LinkStatistics.h"
#include "link/PacketLog.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormLinkDetails.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "map/FormMap.h"
#include "operator/FormVirtualOperator.h"
#include "operator/FormVirtualOperatorSetup.h"
#include "platform/Progress.h"
#include "platform/Strip.h"
#include "report/forms/FormCommissioningReport.h"
#include "report/forms/ScriptedReport.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/FormNotes.h"
#include "settings/forms/FormSelectDriveModel.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "shell/RecentFiles.h"
#include "shell/StartPage.h"
#include "support/Controls.h"
#include "trend/forms/FormRecordings.h"
#include "trend/forms/FormTrend.h"
#include "trend/forms/ScriptedTrend.h"
#include "wizards/basic/FormWizardBasic.h"
#include "wizards/io/FormWizardIO.h"

#include <QAbstractButton>
#include <QMenu>
#include <QSet>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

namespace quorvik::testing
{

namespace
{

void Show(QWidget &window, const QString &picture, const Visit &visit)
{
    SCOPED_TRACE(qPrintable(picture));
    // However long it takes to come: what counts by the clock must not have moved.
    for (auto *timer : window.findChildren<QTimer *>())
        timer->stop();
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    visit(window, picture);
}

void Fill(QWidget &mentor, const char *name, std::initializer_list<const char *> texts)
{
    int index = 0;
    for (const char *text : texts)
        FindIn<QLineEdit>(&mentor, ControlName(name, index++))->setText(QString::fromLatin1(text));
}

/** Walks to the last page. @return the pages seen. */
QSet<int> Walk(WizardForm &mentor, const Visit &visit)
{
    QSet<int> seen;
    do {
        seen.insert(mentor.CurrentStep());
        Show(mentor, ControlName(qPrintable(mentor.objectName()), mentor.CurrentStep()), visit);
        int different = 0;
        for (auto *list : mentor.findChildren<QComboBox *>())
            if (list->isVisible() && list->currentIndex() < 0)
                list->setCurrentIndex(different++);
        if (mentor.CurrentStep() < WizardForm::LastStep)
            FindIn<QAbstractButton>(&mentor, "CmdNav(3)")->click();
    } while (!seen.contains(mentor.CurrentStep()));
    EXPECT_TRUE(seen.contains(WizardForm::LastStep)) << "stuck on page " << mentor.CurrentStep();
    return seen;
}

} // namespace

void VisitBlocks(TestDesk &desk, const Visit &visit)
{
    for (const BlockMenuEntry &entry : BlockCatalogue())
        for (int member = std::max(entry.firstMember, 0);
             entry.sheet && member <= std::max(entry.lastMember, 0); ++member) {
            const std::unique_ptr<BlockForm> form(MakeBlockForm(desk.desk, entry, member));
            Show(*form, form->objectName(), visit);
        }
}

void VisitOtherWindows(TestDesk &desk, const Visit &visit)
{
    DriveLink link(desk.table);
    const LinkStatistics statistics(link);
    PacketLog packets(link, statistics);
    Progress reading(QStringLiteral("Reading Parameters from Drive"), int(WholeScan::Reading), 434);
    FilePrint print(desk.desk);
    ScriptedHost comparing(desk);
    ScriptedFind finding(desk);
    ScriptedHistory past(desk);
    ScriptedTrend trend(desk);
    ScriptedReport commissioning(desk);
    desk.desk.Now = [] { return QDateTime({2026, 11, 22}, {9, 52, 37}); };
    ShownAction entry;
    entry.action.time.utcMs = QDateTime({2026, 11, 22}, {9, 52, 37}).toMSecsSinceEpoch();
    VirtualOperatorFields fields;
    FormVirtualOperator panel(desk.desk, &desk.mainWindow, fields);
    const auto edit = [&](int p) {
        return new FormModifyParameterValue(desk.desk, &desk.mainWindow, p, desk.table.Value(p));
    };
    // Not the ports of the machine that it runs on, and a number that none of them stands for.
    link.MSComm1.SetCommPort(13);
    const auto ports = [] {
        return QList<SerialDevice>{{Name("/dev/ttyNone0"), Name("USB serial adapter")}};
    };
    Strip strip;
    QMenu menu;
    RecentFiles recent(desk.document, desk.settings, strip, &menu, {}, &menu);
    const std::function<QWidget *()> windows[] = {
        [&] { return new FormCommunications(desk.desk, &desk.mainWindow, link, ports); },
        [&] { return new FormSelectCommMode(desk.desk, &desk.mainWindow, link, ports); },
        [&] { return new FormProgressBar(desk.desk, &desk.mainWindow, reading); },
        [&] { return new FormSelectDriveModel(desk.desk, &desk.mainWindow); },
        [&] { return edit(1); },   // a list of parameters
        [&] { return edit(28); },  // two options
        [&] { return edit(217); }, // a number
        [&] { return new FormNotes(desk.desk, &desk.mainWindow); },
        [&] { return new FormViewParameters(desk.desk, print, ReportFilter::All); },
        [&] { return new FormLinkDetails(desk.desk, statistics, packets); },
        [&] { return new FormCompare(desk.desk, comparing); },
        [&] { return new FormTripRecord(desk.desk); },
        [&] { return new FormMap(desk.desk); },
        [&] { return new FormFind(desk.desk, finding, &desk.mainWindow); },
        [&] { return new FormHistory(desk.desk, past); },
        [&] { return new FormStateAt(desk.desk, &desk.mainWindow, {JournalSighting()}, &entry); },
        [&] { return new FormTrend(desk.desk, trend); },
        [&] { return new FormCommissioningReport(desk.desk, commissioning); },
        [&] { return new FormRecordings(desk.desk, trend, {}); },
        [&] { return new FormWhyNot(desk.desk); },
        [&] { return new FormIOSimulator(desk.desk); },
        [&] { return new FormColorSettings(desk.desk); },
        [&] { return new FormGettingStarted(desk.desk, &desk.mainWindow, true); },
        [&] {
            auto *frame = new QWidget;
            frame->setObjectName(QStringLiteral("StartPage"));
            auto *layout = new QVBoxLayout(frame);
            StartCommands commands;
            commands.help = [&desk](const QString &topic) { desk.help.DisplayTopic(topic, nullptr); };
            layout->addWidget(new StartPage(desk.table, Ports(desk.settings, ports), link.Timings(), recent,
                                            commands, frame));
            return frame;
        },
        [&] { return new FormVirtualOperatorSetup(desk.desk, panel, 0); },
    };
    for (const auto &make : windows) {
        const std::unique_ptr<QWidget> window(make());
        Show(*window, window->objectName(), visit);
    }
    Show(panel, panel.objectName(), visit);
}

void VisitMentors(TestDesk &desk, const Visit &visit)
{
    FormWizardBasic basic(desk.desk, nullptr);
    Fill(basic, "TextMotorData", {"150", "500", "1750", "4.00"});
    EXPECT_EQ(Walk(basic, visit).size(), WizardForm::LastStep + 1);

    QSet<int> seen;
    for (const WizardIOStartRecord &start : std::initializer_list<WizardIOStartRecord>{
             {0, 0}, {0, 1}, {0, 2}, {1, 0}, {1, 1, 0, 0}, {1, 1, 0, 1}, {1, 2}}) {
        SCOPED_TRACE(::testing::Message()
                     << "outputs " << int(start.outputs) << ", kind " << int(start.kind));
        desk.desk.WizardIOStart = start;
        FormWizardIO mentor(desk.desk, nullptr);
        Fill(mentor, "TextCal", {"0", "4095"});
        Fill(mentor, "TextBiasGain", {"0.00", "0.00"});
        Fill(mentor, "TextOutputBiasGain", {"0.00", "10.00"});
        seen += Walk(mentor, visit);
    }
    EXPECT_EQ(seen.size(), WizardForm::LastStep + 1);
}

} // namespace quorvik::testing
