#include "shell/OpenWindows.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/FormWhyNot.h"
#include "compare/forms/FormCompare.h"
#include "compare/forms/FormVerifiedWrite.h"
#include "emulator/forms/FormIOSimulator.h"
#include "find/forms/FormFind.h"
#include "history/PastStates.h"
#include "history/forms/FormHistory.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormDebug.h"
#include "link/forms/FormLinkDetails.h"
#include "operator/FormVirtualOperator.h"
#include "platform/Guard.h"
#include "report/forms/FormCommissioningReport.h"
#include "settings/forms/FormNotes.h"
#include "settings/forms/FormSelectDriveModel.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/FormAbout.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "shell/MDIFormMain.h"
#include "trend/forms/FormTrend.h"
#include "wizards/OpenMentors.h"

#include <QAction>

namespace quorvik
{

namespace
{

/** Shows the one window of that name as a child of the frame, made first where there is none. */
template<typename Make> void ShowOnly(MDIFormMain &main, const QString &name, Make make)
{
    Desk &desk = main.TheDesk();
    for (int position = 1; position < desk.forms.Count(); ++position)
        if (desk.forms.At(position)->objectName() == name) {
            desk.ShowChild(desk.forms.At(position), true);
            return;
        }
    desk.ShowChild(make(desk), true);
}

/** The open window of a kind; null for none. */
template<typename Window> Window *OpenOne(MDIFormMain &main)
{
    const FormsCollection &forms = main.TheDesk().forms;
    for (int position = 1; position < forms.Count(); ++position)
        if (auto *window = qobject_cast<Window *>(forms.At(position)))
            return window;
    return nullptr;
}

FormCompare *ShowCompareWindow(MDIFormMain &main)
{
    ShowOnly(main, FormCompare::Name(),
             [&main](Desk &onDesk) { return new FormCompare(onDesk, main.Comparing()); });
    return OpenOne<FormCompare>(main);
}

} // namespace

void ShowCommunications(MDIFormMain &main)
{
    FormCommunications(main.TheDesk(), &main, main.AllEngines().link).exec();
    main.FollowPort();
}

void ShowDebug(MDIFormMain &main)
{
    ShowOnly(main, QStringLiteral("FormDebug"),
             [&main](Desk &desk) { return new FormDebug(desk, main.AllEngines().link); });
}

void ShowLinkDetails(MDIFormMain &main)
{
    ShowOnly(main, FormLinkDetails::Name(), [&main](Desk &desk) {
        return new FormLinkDetails(desk, main.AllEngines().statistics, main.AllEngines().packets);
    });
}

void ShowWhyNot(MDIFormMain &main)
{
    OpenWhyNot(main.TheDesk());
}

void ShowNotes(MDIFormMain &main)
{
    FormNotes(main.TheDesk(), &main).exec();
}

void ShowSelectDriveModel(MDIFormMain &main)
{
    FormSelectDriveModel(main.TheDesk(), &main).exec();
}

void ShowColorSettings(MDIFormMain &main)
{
    ShowOnly(main, QStringLiteral("FormColorSettings"),
             [](Desk &desk) { return new FormColorSettings(desk); });
}

void ShowGettingStarted(MDIFormMain &main)
{
    QAction *showTips = main.Menus().Entry(QStringLiteral("mnuOptionsShowTipsonStartup"));
    auto *window = new FormGettingStarted(main.TheDesk(), &main, showTips->isChecked());
    On(window, &FormGettingStarted::ShowTipsChanged, &main,
       [showTips](bool isWanted) { showTips->setChecked(isWanted); });
    window->show();
}

void ShowAbout(MDIFormMain &main)
{
    FormAbout(main.TheDesk(), &main).exec();
}

void ShowIOSimulator(MDIFormMain &main)
{
    ShowOnly(main, QStringLiteral("FormIOSimulator"), [](Desk &desk) { return new FormIOSimulator(desk); });
}

void ShowFaultLog(MDIFormMain &main)
{
    for (const BlockMenuEntry &block : BlockCatalogue())
        if (block.form && QLatin1String(block.form) == QLatin1String("FormFaultLog"))
            OpenBlock(main.TheDesk(), block, 0);
}

void ShowVirtualOperator(MDIFormMain &main)
{
    OpenVirtualOperator(main.TheDesk(), &main, main.VirtualOperator());
}

void ShowCompare(MDIFormMain &main, bool readDrive)
{
    FormCompare *window = ShowCompareWindow(main);
    if (readDrive && window)
        window->CompareWithDrive();
}

void ShowCompareWithBackup(MDIFormMain &main, const QString &path)
{
    if (FormCompare *window = ShowCompareWindow(main))
        window->CompareWithDrive({CompareSource::Kind::Backup, path});
}

void ShowUnwrittenEntries(MDIFormMain &main)
{
    if (FormCompare *window = ShowCompareWindow(main))
        window->CompareWithDrive({CompareSource::Kind::Unwritten});
}

void ShowCompareWith(MDIFormMain &main, const PastState &past, bool takesBack)
{
    if (FormCompare *window = ShowCompareWindow(main))
        window->CompareWithPast(past.set, past.note, takesBack);
}

void ShowFactoryComparison(MDIFormMain &main, int p)
{
    if (FormCompare *window = ShowCompareWindow(main))
        window->CompareWithFactory(p);
}

void ShowInList(MDIFormMain &main, int p)
{
    OpenViewParameters(main.TheDesk(), main.Print(), ReportFilter::All);
    if (auto *list = OpenOne<FormViewParameters>(main))
        list->SelectParameter(p);
}

void ShowWriteReport(MDIFormMain &main)
{
    SafeWrites &writes = main.AllEngines().safeWrites;
    const QString name = QStringLiteral("FormVerifiedWrite");
    ShowOnly(main, name, [&main, &writes](Desk &onDesk) {
        return new FormVerifiedWrite(onDesk,
                                     {[&writes] { writes.Resume(); }, [&writes] { writes.RetryRefused(); },
                                      [&main](const QString &path) { ShowCompareWithBackup(main, path); }});
    });
    if (auto *report = OpenOne<FormVerifiedWrite>(main))
        report->ShowReport(writes.Report());
}

void ShowHistory(MDIFormMain &main)
{
    ShowOnly(main, FormHistory::Name(),
             [&main](Desk &desk) { return new FormHistory(desk, main.History()); });
}

void ShowCommissioningReport(MDIFormMain &main)
{
    ShowOnly(main, FormCommissioningReport::Name(),
             [&main](Desk &desk) { return new FormCommissioningReport(desk, main.Commissioning()); });
}

void ShowTrend(MDIFormMain &main)
{
    ShowOnly(main, FormTrend::Name(), [&main](Desk &desk) { return new FormTrend(desk, main.Trends()); });
}

void AddToTrend(MDIFormMain &main, int p)
{
    ShowTrend(main);
    if (auto *window = OpenOne<FormTrend>(main))
        window->AddChannel(p);
}

void ShowRecording(MDIFormMain &main, const QString &path)
{
    ShowTrend(main);
    if (auto *window = OpenOne<FormTrend>(main))
        window->OpenRecording(path);
}

void ShowFind(MDIFormMain &main)
{
    // It stands free before the frame, where no child window covers it.
    auto *window = OpenOne<FormFind>(main);
    if (!window)
        window = new FormFind(main.TheDesk(), main.Finding(), &main);
    window->TakeFocus();
}

void ShowBasicMentor(MDIFormMain &main)
{
    OpenBasicSetup(main.TheDesk(), main.AllEngines().link, &main, [&main] { ShowSelectDriveModel(main); });
}

void ShowIOMentor(MDIFormMain &main)
{
    OpenIOSetup(main.TheDesk(), main.AllEngines().link, &main);
}

} // namespace quorvik
