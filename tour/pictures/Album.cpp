#include "Album.h"
#include "SampleCommissioning.h"
#include "SampleComparison.h"
#include "SampleFind.h"
#include "SampleHistory.h"
#include "SampleLink.h"
#include "SampleTrend.h"
#include "ValueLegend.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "blocks/DriveCircuit.h"
#include "blocks/FormTripRecord.h"
#include "blocks/FormWhyNot.h"
#include "blocks/SignalFollower.h"
#include "blocks/diagram/DiagramFrame.h"
#include "compare/forms/FormCompare.h"
#include "compare/forms/FormVerifiedWrite.h"
#include "desktop/Desk.h"
#include "desktop/FormModifyParameterValue.h"
#include "emulator/forms/FormIOSimulator.h"
#include "find/forms/FormFind.h"
#include "history/forms/FormHistory.h"
#include "history/forms/FormStateAt.h"
#include "history/forms/HistoryView.h"
#include "link/DriveLink.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormLinkDetails.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "map/FormMap.h"
#include "model/ParameterTable.h"
#include "operator/FormVirtualOperator.h"
#include "operator/FormVirtualOperatorSetup.h"
#include "platform/Progress.h"
#include "platform/Strip.h"
#include "report/forms/FormCommissioningReport.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/FormNotes.h"
#include "settings/forms/FormSelectDriveModel.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/FormAbout.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "shell/RecentFiles.h"
#include "shell/StartPage.h"
#include "trend/forms/FormRecordings.h"
#include "trend/forms/FormTrend.h"
#include "wizards/basic/FormWizardBasic.h"
#include "wizards/io/FormWizardIO.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPixmap>
#include <algorithm>
#include <cstdio>

namespace quorvik
{

namespace
{

template<typename Control> Control *Find(QWidget &window, const char *name, int index)
{
    return window.findChild<Control *>(ControlName(name, index));
}

void Enter(QWidget &window, const char *name, int index, const QString &text)
{
    if (auto *box = Find<QLineEdit>(window, name, index))
        box->setText(text);
}

void Press(QWidget &window, int nav)
{
    Find<QAbstractButton>(window, "CmdNav", nav)->click();
    QApplication::processEvents();
}

constexpr int NextButton = 3;
constexpr QSize StartPageSize{72, 40}; ///< in heights of a line
constexpr int ZoomOfPicture = 200;
constexpr int Reference0 = 217; ///< a number that everybody meets

/** One row of each kind. */
WriteReport SampleReport()
{
    WriteReport report;
    report.rows = {{{Param::LogicSelect, 1}, Arrival::Refused, 0},
                   {{Param::Reference0, 2500}, Arrival::Differs, 1820, Param::AnalogIn1Destination},
                   {{Param::FwdAccelA, 75}, Arrival::Sent}};
    for (int p = Param::FwdDecelA; p <= Param::RevDecelA; ++p)
        report.rows.push_back({{p, 75}, Arrival::Verified, 75});
    report.end = WriteReport::End::LinkLost;
    report.backupPath = QStringLiteral("backups/SVR100-000 2026-11-22 14-03-12.Svx");
    return report;
}

} // namespace

Album::Album(Desk &desk, const QDir &folder, PictureStyle style)
    : desk_(desk)
    , folder_(folder)
    , style_(std::move(style))
{
}

QStringList Album::Topics() const
{
    QStringList names = topics_.values();
    names.sort();
    return names;
}

void Album::Take(QWidget &window, const QString &name, const QString &topic)
{
    if (!topic.isEmpty())
        topics_.insert(topic);
    if (!window.windowTitle().contains(style_.only))
        return;
    window.show();
    QApplication::processEvents();
    QPixmap picture(window.size() * style_.scale);
    picture.setDevicePixelRatio(style_.scale);
    window.render(&picture);
    const QString file = folder_.filePath(name + QStringLiteral(".png"));
    picture.save(file);
    std::printf("%s %dx%d\n", qPrintable(file), window.width(), window.height());
}

void Album::TakeBlocks()
{
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet)
            continue;
        // One member stands for its family.
        BlockForm *form = MakeBlockForm(desk_, entry, entry.IsFamily() ? entry.firstMember : 0);
        Take(*form, form->objectName(), form->HelpTopic());
        form->close();
        QApplication::processEvents();
    }
    TakeZoomed();
}

void Album::TakeZoomed()
{
    const auto entry = std::ranges::find_if(BlockCatalogue(), [](const BlockMenuEntry &each) {
        return QLatin1String(each.form) == QLatin1String("FormVelocityLoop");
    });
    BlockForm *form = MakeBlockForm(desk_, *entry, 0);
    form->resize(form->sizeHint() * 2 / 3);
    form->show();
    form->findChild<DiagramFrame *>()->SetZoom(ZoomOfPicture);
    Take(*form, QStringLiteral("ZoomedDrawing"), QString());
    form->close();
    QApplication::processEvents();
}

void Album::TakeFollowedSignal()
{
    DriveCircuit circuit(desk_.table);
    desk_.TheCircuit = [&circuit] { return &circuit.Get(); };
    const auto entry = std::ranges::find(BlockCatalogue(), QLatin1String("FormVelocityLoop"),
                                         [](const BlockMenuEntry &each) { return QLatin1String(each.form); });
    BlockForm *form = MakeBlockForm(desk_, *entry, 0);
    form->show();
    const QList<SheetRow> &rows = form->Sheet().Rows();
    const auto demand = std::ranges::find(rows, int(Param::FinalVelDemand), &SheetRow::param);
    form->Follower().FollowBox(int(demand - rows.begin()));
    Take(*form, QStringLiteral("FollowedSignal"), QString());
    form->close();
    QApplication::processEvents();
    desk_.TheCircuit = []() -> Circuit * { return nullptr; };
}

template<typename Mentor> void Album::TakePages(Mentor &mentor, int lastStep, const QString &name)
{
    while (true) {
        const int step = mentor.CurrentStep();
        Take(mentor, ControlName(qPrintable(name), step), mentor.HelpTopic());
        if (step == lastStep)
            return;
        Press(mentor, NextButton);
        if (mentor.CurrentStep() == step)
            return;
    }
}

void Album::TakeMentors()
{
    const QString basicName = QStringLiteral("FormWizardBasic");
    FormWizardBasic basic(desk_, nullptr);
    const char *const nameplate[] = {"150", "500", "1750", "4.00"};
    for (int i = 0; i < 4; ++i)
        Enter(basic, "TextMotorData", i, QString::fromLatin1(nameplate[i]));
    TakePages(basic, FormWizardBasic::LastStep, basicName);

    const QString ioName = QStringLiteral("FormWizardIO");
    desk_.WizardIOStart = {};
    FormWizardIO inputs(desk_, nullptr);
    Enter(inputs, "TextCal", 0, QStringLiteral("0"));
    Enter(inputs, "TextCal", 1, QStringLiteral("4095"));
    Enter(inputs, "TextBiasGain", 0, QStringLiteral("0.00"));
    Enter(inputs, "TextBiasGain", 1, QStringLiteral("100.00"));
    TakePages(inputs, FormWizardIO::LastStep, ioName);

    desk_.WizardIOStart = {.outputs = 1};
    FormWizardIO outputs(desk_, nullptr);
    Enter(outputs, "TextOutputBiasGain", 0, QStringLiteral("0.00"));
    Enter(outputs, "TextOutputBiasGain", 1, QStringLiteral("10.00"));
    TakePages(outputs, FormWizardIO::LastStep, ioName);
    desk_.WizardIOStart = {};
}

void Album::TakeOthers()
{
    auto *simulator = new FormIOSimulator(desk_);
    Take(*simulator, simulator->objectName(), simulator->HelpTopic());
    simulator->close();

    QWidget owner;
    DriveLink link(desk_.table);
    const auto ports = [] {
        const QString adapter = QStringLiteral("USB serial adapter");
        return QList<SerialDevice>{
            {QStringLiteral("/dev/ttyUSB0"), adapter + QStringLiteral(" (QV20417)"), adapter,
             QStringLiteral("QV20417")},
            {QStringLiteral("/dev/ttyUSB1"), adapter + QStringLiteral(" (QV20533)"), adapter,
             QStringLiteral("QV20533")},
        };
    };
    link.MSComm1.SetCommPort(5);
    FormCommunications communications(desk_, &owner, link, ports);
    Take(communications, communications.objectName(), communications.HelpTopic());
    FormSelectCommMode mode(desk_, &owner, link, ports);
    Take(mode, mode.objectName(), mode.HelpTopic());
    Strip strip;
    QMenu menu;
    RecentFiles recent(desk_.document, desk_.settings, strip, &menu, {}, &owner);
    StartPage start(desk_.table, Ports(desk_.settings, ports), link.Timings(), recent, {}, &owner);
    start.setParent(nullptr);
    start.SetPort(link.MSComm1.CommPort());
    start.resize(StartPageSize * owner.fontMetrics().height());
    Take(start, start.objectName(), QString());
    FormSelectDriveModel models(desk_, &owner);
    Take(models, models.objectName(), models.HelpTopic());
    FormModifyParameterValue edit(desk_, &owner, Reference0, desk_.table.Value(Reference0));
    Take(edit, edit.objectName(), edit.HelpTopic());
    Progress reading(QStringLiteral("Reading Parameters from Drive"), int(WholeScan::Reading),
                     desk_.table.LastParam + 1);
    FormProgressBar progress(desk_, &owner, reading);
    Take(progress, progress.objectName(), progress.HelpTopic());
    FormNotes notes(desk_, &owner);
    Take(notes, notes.objectName(), notes.HelpTopic());
    FormAbout about(desk_, &owner);
    Take(about, about.objectName(), about.HelpTopic());

    auto *colors = new FormColorSettings(desk_);
    Take(*colors, colors->objectName(), colors->HelpTopic());
    colors->close();
    auto *greeting = new FormGettingStarted(desk_, &owner, true);
    Take(*greeting, greeting->objectName(), greeting->HelpTopic());
    greeting->close();

    auto *report = new FormVerifiedWrite(desk_, {});
    report->ShowReport(SampleReport());
    // With all columns in sight, which the screen of a build has no room for.
    report->resize(report->sizeHint());
    Take(*report, report->objectName(), report->HelpTopic());
    report->close();

    auto *trips = new FormTripRecord(desk_);
    trips->resize(trips->sizeHint());
    Take(*trips, trips->objectName(), trips->HelpTopic());
    trips->close();

    auto *map = new FormMap(desk_);
    map->resize(map->sizeHint());
    Take(*map, map->objectName(), map->HelpTopic());
    map->close();
    // An enable by a contact that is open.
    const std::pair<int, std::int32_t> plant[] = {{Param::DigitalIn3Destination, Param::RunEnable},
                                                  {Param::RunEnable, 0},
                                                  {Param::DigitalIn3Status, 0}};
    std::vector<std::pair<int, std::int32_t>> before;
    for (const auto &[p, rawValue] : plant) {
        before.emplace_back(p, desk_.table.Value(p));
        desk_.table.SetValue(p, rawValue, ChangeCause::Emulated);
    }
    auto *why = new FormWhyNot(desk_);
    why->resize(why->sizeHint());
    Take(*why, why->objectName(), why->HelpTopic());
    why->close();
    for (const auto &[p, rawValue] : before)
        desk_.table.SetValue(p, rawValue, ChangeCause::Emulated);

    SampleComparison sample(desk_);
    auto *comparison = new FormCompare(desk_, sample);
    comparison->CompareWithDrive();
    // All columns in sight, whatever the screen.
    comparison->resize(comparison->sizeHint());
    Take(*comparison, comparison->objectName(), comparison->HelpTopic());
    comparison->close();

    SampleLink line(desk_.table);
    line.packets.SetRecording(true);
    line.Talk();
    auto *details = new FormLinkDetails(desk_, line.statistics, line.packets);
    details->resize(details->sizeHint());
    Take(*details, details->objectName(), details->HelpTopic());
    details->close();

    SampleFind menus(desk_.table);
    auto *find = new FormFind(desk_, menus, &owner);
    find->resize(find->sizeHint());
    find->findChild<QLineEdit *>(QStringLiteral("TextFind"))->setText(QStringLiteral("ramp"));
    Take(*find, find->objectName(), find->HelpTopic());
    find->close();

    SampleHistory past;
    auto *history = new FormHistory(desk_, past);
    history->resize(history->sizeHint());
    history->View().expandAll();
    Take(*history, history->objectName(), history->HelpTopic());
    {
        FormStateAt moment(desk_, history, past.Drives(), nullptr);
        Take(moment, moment.objectName(), moment.HelpTopic());
    }
    history->close();

    SampleTrend machine(desk_);
    auto *trend = new FormTrend(desk_, machine);
    trend->resize(trend->sizeHint());
    trend->OpenRecording(machine.StepPath());
    Take(*trend, trend->objectName(), trend->HelpTopic());
    trend->close();
    auto *recordings = new FormRecordings(desk_, machine, [](const QString &, bool) {});
    recordings->resize(recordings->sizeHint());
    recordings->Choose(machine.StepPath());
    Take(*recordings, recordings->objectName(), recordings->HelpTopic());
    recordings->close();

    SampleCommissioning morning(desk_, past.Reader(), machine.Store());
    auto *commissioning = new FormCommissioningReport(desk_, morning);
    commissioning->resize(commissioning->sizeHint());
    commissioning->findChild<QDateEdit *>(QStringLiteral("DateJournal"))->setDate({2026, 11, 22});
    commissioning->findChild<QListWidget *>(QStringLiteral("ListRecordings"))
        ->item(0)
        ->setCheckState(Qt::Checked);
    commissioning->findChild<QAbstractButton *>(QStringLiteral("CommandCompare"))->click();
    Take(*commissioning, commissioning->objectName(), commissioning->HelpTopic());
    commissioning->close();

    FilePrint print(desk_);
    desk_.BlockOf = [](int p) { return BlocksShowing(p).value(0); };
    auto *list = new FormViewParameters(desk_, print, ReportFilter::All);
    list->resize(list->sizeHint());
    Take(*list, list->objectName(), list->HelpTopic());
    list->close();

    ValueLegend legend(desk_.colors);
    Take(legend, QStringLiteral("ValueLegend"), QString());

    // The panel takes all inputs off their destinations, so it comes last.
    VirtualOperatorFields fields;
    auto *panel = new FormVirtualOperator(desk_, &owner, fields);
    panel->Form_Load();
    Take(*panel, panel->objectName(), panel->HelpTopic());
    {
        FormVirtualOperatorSetup setup(desk_, *panel, 0);
        Take(setup, setup.objectName(), setup.HelpTopic());
    }
    panel->close();
    QApplication::processEvents();
}

} // namespace quorvik
