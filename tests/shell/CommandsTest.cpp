#include "shell/ShellFixture.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "settings/forms/FilePrint.h"

#include <QDesktopServices>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeView>

namespace quorvik::testing
{

class Commands : public ShellTest
{
protected:
    /** The name of the window that an entry opens; a modal one is closed again. */
    QString Opened(const char *entry)
    {
        QString modalName;
        QTimer::singleShot(0, main.get(), [&modalName] {
            if (QWidget *modal = QApplication::activeModalWidget()) {
                modalName = modal->objectName();
                modal->close();
            }
        });
        Trigger(entry);
        QCoreApplication::processEvents();
        const FormsCollection &forms = main->TheDesk().forms;
        return modalName.isEmpty() ? forms.At(forms.Count() - 1)->objectName() : modalName;
    }

    QList<QMdiSubWindow *> Children() const
    {
        return Find<QMdiArea>("MDIArea")->subWindowList(QMdiArea::CreationOrder);
    }
};

TEST_F(Commands, BlocksOpenTheirWindowsOneByOneAndTogether)
{
    LoadQuietly();
    const FormsCollection &forms = main->TheDesk().forms;
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet)
            continue;
        for (int member = entry.firstMember; member <= entry.lastMember; ++member) {
            for (int i = 0; i < 2; ++i)
                Trigger(ControlName(entry.control, member));
            const QWidget *form = forms.At(forms.Count() - 1);
            EXPECT_EQ(form->objectName(), QLatin1String(entry.form));
            EXPECT_EQ(form->windowTitle(), entry.WindowCaption(member));
        }
        const int members = entry.lastMember - entry.firstMember + 1;
        EXPECT_EQ(forms.Count() - 1, members) << "one window to a member of " << entry.form;
        Trigger("mnuWindowCloseAll");
        if (!entry.allControl)
            continue;
        Trigger(entry.allControl);
        EXPECT_EQ(forms.Count() - 1, members) << entry.allControl;
        Trigger("mnuWindowCloseAll");
    }
}

TEST_F(Commands, EntriesOpenTheirWindows)
{
    LoadQuietly();
    asker.Expect("all inputs must be unassigned!", MsgAnswer::Yes);
    const std::pair<const char *, const char *> windows[] = {
        {"mnuFileNew", "FormSelectDriveModel"},
        {"mnuFileNotes", "FormNotes"},
        {"mnuOptionsCommunications", "FormCommunications"},
        {"mnuOptionsColorSettings", "FormColorSettings"},
        {"mnuToolsSelectModel", "FormSelectDriveModel"},
        {"mnuToolsIOSimulator", "FormIOSimulator"},
        {"mnuToolsMap", "FormMap"},
        {"mnuToolsTrend", "FormTrend"},
        {"mnuMentorsBasic", "FormWizardBasic"},
        {"mnuMentorIO", "FormWizardIO"},
        {"mnuHelpAbout", "FormAbout"},
        {"mnuListParameters(1)", "FormViewParameters"},
        {"mnuToolsVirtualOperator", "FormVirtualOperator"},
    };
    for (const auto &[entry, name] : windows)
        EXPECT_EQ(Opened(entry), Name(name)) << entry;
    // The open window takes what else is to be recorded.
    for (const int p : {Param::VelFeedback, Param::VelFeedback, Param::FinalVelDemand})
        main->TheDesk().AddToTrend(p);
    EXPECT_NE(main->AllEngines().trend.Data().TrackOf(Param::VelFeedback), nullptr);
    EXPECT_NE(main->AllEngines().trend.Data().TrackOf(Param::FinalVelDemand), nullptr);
    EXPECT_EQ(main->findChildren<QWidget *>(Name("FormTrend")).size(), 1);
    Trigger("mnuBlockRelayOutput(2)");
    InModal([this] { Controls(Find("FormRelayOutputs")).Click("CommandIOMentor"); },
            [](const QWidget *mentor) { EXPECT_EQ(mentor->objectName(), Name("FormWizardIO")); });
    EXPECT_TRUE(Find<QRadioButton>("OptionView(1)")->isChecked());
    const auto *list = Find<QTreeView>("ListView");
    EXPECT_LE(list->header()->sectionPosition(4), list->viewport()->width()) << "no value is out of sight";
    Trigger("mnuListParameters(0)");
    EXPECT_TRUE(Find<QRadioButton>("OptionView(0)")->isChecked());

    Trigger("mnuHelpContents");
    Trigger("mnuHelpSearch");
    Trigger("mnuHelpSarvexManual");
    EXPECT_EQ(help.Topics, QStringList({Name("<contents>"), Name("<search>"), Name("Sarvex Manual.htm")}));
    QTextBrowser browser;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &browser, "setSource");
    Trigger("mnuHalvaneWeb");
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    EXPECT_EQ(browser.source().host(), Name("www.halvane.example"));

    int printed = 0;
    main->Print().ShowPrinter = [&](QPrinter &, QWidget *) { return ++printed, std::nullopt; };
    Trigger("mnuFilePrint");
    EXPECT_EQ(printed, 1);
    const QSignalSpy unloaded(main.get(), &MDIFormMain::Unloaded);
    asker.Expect("Save changes?", MsgAnswer::No);
    Trigger("mnuFileExit");
    EXPECT_EQ(unloaded.size(), 1);
}

TEST_F(Commands, WindowEntriesArrange)
{
    LoadQuietly();
    Trigger("mnuBlockMOP");
    Trigger("mnuBlockMinMax");
    const QRect room = Find<QMdiArea>("MDIArea")->viewport()->rect();
    Trigger("mnuWindowTileHorizontal");
    EXPECT_EQ(Children()[1]->geometry(), room.adjusted(0, room.height() / 2, 0, 0));
    Trigger("mnuWindowTileVertical");
    EXPECT_EQ(Children()[1]->geometry(), room.adjusted(room.width() / 2, 0, 0, 0));
    Trigger("mnuWindowCascade");
    EXPECT_EQ(Children()[0]->pos(), QPoint(0, 0));
    EXPECT_EQ(Children()[1]->x(), Children()[1]->y());
    EXPECT_GT(Children()[1]->x(), 0);
    Trigger("mnuWindowMinimizeAll");
    Children()[0]->move(50, 5);
    Trigger("mnuWindowArrangeIcons");
    EXPECT_EQ(Children()[0]->geometry().bottomLeft(), room.bottomLeft());
}

TEST_F(Commands, ABoxLeadsToItsRowInTheListAndInTheComparison)
{
    LoadQuietly();
    Table().SetValue(Param::Reference0, 7288, ChangeCause::Factory);
    main->TheDesk().ShowInList(Param::Reference0);
    const auto *list = main->findChild<QTreeView *>(Name("ListView"));
    EXPECT_EQ(list->currentIndex().siblingAtColumn(1).data().toString(), Name("Reference 0"));
    // Measured, and as it is from the factory: a comparison shows neither of itself.
    main->TheDesk().CompareWithFactory(Param::VelError);
    const auto *rows = main->findChild<QTableView *>(Name("TableDifferences"));
    EXPECT_EQ(rows->currentIndex().siblingAtColumn(0).data().toInt(), Param::VelError);
}

} // namespace quorvik::testing
