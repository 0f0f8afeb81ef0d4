// The start page of the main window, and what it begins: lessons and the simulated drive.

#include "desktop/HTMLHelp.h"
#include "platform/Guard.h"
#include "shell/LessonCard.h"
#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"
#include "shell/StartArea.h"
#include "shell/StartPage.h"
#include "shell/StatusBarMain.h"

#include <QGridLayout>
#include <QMdiArea>

namespace quorvik
{

namespace
{

const QString &SimulationKey()
{
    static const QString key = QStringLiteral("simulation");
    return key;
}

} // namespace

void MDIFormMain::MakeStartPage(RecentFiles &recent)
{
    const auto goOnLine = [this] {
        if (!simulation_.IsRunning())
            simulation_.End();
        // Only now: the keys pass over ports on their way, which keep the adapters that they stand for.
        const int number = engines_.link.MSComm1.CommPort();
        if (number >= Ports::First && number <= Ports::Last)
            Ports(surroundings_.settings, surroundings_.devices)
                .FollowAdapter(number, startPage_->HasChosen(number));
        engines_.drive.ReadOverOpenSet();
        // What was refused or given up leaves the switch as it was.
        OnComStatusChange();
    };
    StartCommands commands;
    commands.goOnLine = goOnLine;
    commands.simulate = [this](std::int32_t modelCode, bool moves) { Simulate(modelCode, moves); };
    commands.open = [this] { engines_.fileCommands.Open(); };
    commands.mentor = [this] { ShowBasicMentor(*this); };
    commands.learn = [this](const Lesson &lesson) {
        lessonCard_->Begin(lesson);
        lessonCard_->show();
    };
    commands.help = [this](const QString &topic) { surroundings_.help.DisplayTopic(topic, this); };

    QWidget *centre = centralWidget();
    const Ports ports(surroundings_.settings, surroundings_.devices);
    startPage_ =
        new StartPage(engines_.table, ports, engines_.link.Timings(), recent, std::move(commands), centre);
    lessonCard_ = new LessonCard(*this, centre);
    lessonCard_->hide();
    auto *ground = centre->layout()->itemAt(centre->layout()->count() - 1)->layout();
    auto *grid = qobject_cast<QGridLayout *>(ground);
    grid->addWidget(startPage_, 0, 0);
    grid->addWidget(lessonCard_, 0, 1);
    new StartArea(area_, startPage_, this);

    On(lessonCard_, &LessonCard::Closed, lessonCard_, [this] {
        lessonCard_->hide();
        setFocus();
    });
    On(startPage_, &StartPage::PortChosen, this, [this](int number) {
        if (engines_.link.PortOpen())
            return;
        simulation_.End();
        engines_.link.MSComm1.SetCommPort(number);
    });
    On(&simulation_, &DriveSimulation::Ready, this, goOnLine);
    On(&simulation_, &DriveSimulation::Failed, this, [this](const QString &sentence) {
        FollowPort();
        strip_.Show({SimulationKey(), Urgency::Warning, sentence});
    });
}

void MDIFormMain::Simulate(std::int32_t modelCode, bool moves)
{
    if (engines_.link.PortOpen() || simulation_.IsStarting())
        return;
    strip_.Withdraw(SimulationKey());
    simulation_.Start(modelCode, moves);
    FollowPort();
}

void MDIFormMain::FollowPort()
{
    const bool isOnLine = engines_.link.PortOpen();
    const bool isPlayed = isOnLine && simulation_.IsChosen();
    startPage_->SetPort(engines_.link.MSComm1.CommPort());
    startPage_->FollowLink(
        !isOnLine ? QString()
        : isPlayed
            ? QStringLiteral("On line with the simulated drive.")
            : QStringLiteral("On line with the drive on Com%1.").arg(engines_.link.MSComm1.CommPort()));
    startPage_->FollowSimulation(simulation_.IsStarting(),
                                 simulation_.IsStarting() ? QStringLiteral("It is starting...") : QString());
    if (isPlayed && simulation_.IsRunning())
        strip_.Show({SimulationKey(), Urgency::News,
                     QStringLiteral("On line with a simulated drive. No machine is attached: nothing that is "
                                    "entered here reaches one.")});
    else if (const StripLine *line = strip_.Find(SimulationKey()); line && line->urgency == Urgency::News)
        strip_.Withdraw(SimulationKey());
}

} // namespace quorvik
