// Run, Stop and Jog of the panel, and what it shows of the drive behind them.

#include "model/ParameterTable.h"
#include "operator/FormVirtualOperator.h"
#include "operator/JogButton.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QStringList>
#include <QTimer>
#include <QWindow>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Values of the drive's state that the lamps tell apart. */
enum DriveState { Stopped, Running, Jogging = 3, JogStopping, JogDelaying, EmergencyStopped = 8 };

} // namespace

void FormVirtualOperator::CommandRun_Click()
{
    isStopAsked_ = false;
    const Intent intent(desk().table, Origin::VirtualOperator);
    desk().table.SetParamValue(Param::Run, 1, true, false);
}

void FormVirtualOperator::CommandStop_Click()
{
    ParameterTable &table = desk().table;
    const Intent intent(table, Origin::VirtualOperator);
    isStopAsked_ = true;
    table.SetParamValue(Param::Run, 0, true, false);
    EndJog();
    // What three wires have latched only the stop input lets go.
    const ParamRecord &logic = table[Param::LogicSelect];
    const bool isUnsettled = table.PortOpen() && logic.WriteFlag != WriteState::None;
    if (logic.Value != TwoWire || isUnsettled)
        table.SetParamValue(Param::Stop, 1, true, false);
}

void FormVirtualOperator::CommandJog_MouseDown()
{
    isStopAsked_ = false;
    const Intent intent(desk().table, Origin::VirtualOperator);
    desk().table.SetParamValue(Param::Jog, 1, true, false);
}

void FormVirtualOperator::CommandJog_MouseUp()
{
    isStopAsked_ = true;
    const Intent intent(desk().table, Origin::VirtualOperator);
    desk().table.SetParamValue(Param::Jog, 0, true, false);
}

void FormVirtualOperator::EndJog()
{
    if (commandJog_->IsHeld())
        commandJog_->Release();
    else if (desk().table.Value(Param::Jog) != 0 || DriveJogs())
        CommandJog_MouseUp();
}

bool FormVirtualOperator::DriveRuns() const
{
    const ParameterTable &table = desk().table;
    if (!table.PortOpen())
        return table.Value(Param::Run) != 0;
    switch (table.Value(Param::DriveState)) {
    case Running:
        return true;
    case Stopped:
    case Jogging:
    case JogStopping:
    case JogDelaying:
    case EmergencyStopped:
        return false;
    default:
        return table.Value(Param::RunStatus) != 0;
    }
}

bool FormVirtualOperator::DriveJogs() const
{
    const ParameterTable &table = desk().table;
    return table.PortOpen() ? table.Value(Param::DriveState) == Jogging : table.Value(Param::Jog) != 0;
}

void FormVirtualOperator::ShowCommands()
{
    const ParameterTable &table = desk().table;
    const bool runs = DriveRuns();
    const bool jogs = DriveJogs();
    commandRun_->SetLit(runs);
    commandJog_->SetLit(jogs);
    // A drive that has been told to stop is asked for its state again only at the next poll.
    isStopAsked_ = isStopAsked_ && (runs || jogs);
    const bool isRunInForce = table.Value(Param::Run) != 0 || (runs && !isStopAsked_);
    const bool isJogInForce = table.Value(Param::Jog) != 0 || (jogs && !isStopAsked_);
    commandRun_->setEnabled(!isRunInForce && !isJogInForce);
    commandJog_->setEnabled(!isRunInForce);

    const QStringList reasons = WhyStopMayFail();
    labelNotice_->setVisible(!reasons.isEmpty());
    if (!reasons.isEmpty())
        labelNotice_->setText(
            QStringLiteral("Stop here may not stop the drive: %1. Stop it at its own inputs, "
                           "then open this panel again.")
                .arg(reasons.join(QStringLiteral(", "))));
}

QStringList FormVirtualOperator::WhyStopMayFail() const
{
    const ParameterTable &table = desk().table;
    QStringList reasons;
    const auto isWaiting = [&table](int p) {
        return table.AttrBit(Attr::Icr, p) && table[p].WriteFlag != WriteState::None;
    };
    if (!table.PortOpen() && !table.DriveIsStopped())
        reasons << QStringLiteral("there is no link to it");
    if (table.PortOpen() && !table.DriveIsStopped() && std::ranges::any_of(watched_.Params(), isWaiting))
        reasons << QStringLiteral("it does not let go of its inputs while it runs");
    // A set that was neither read nor written says nothing of the drive.
    if (table.PortOpen() && table[Param::LogicSelect].WriteFlag == WriteState::Held)
        reasons << QStringLiteral("what its inputs drive has not been read");
    if (table.Value(Param::LogicSelect) != TwoWire)
        reasons << QStringLiteral("Logic Select is not 2 Wire");
    for (const int command : {Param::Run, Param::Jog})
        if (const int source = table.FindLinkSource(command); source != 0)
            reasons << QStringLiteral("(%1) %2 drives %3")
                           .arg(source)
                           .arg(table[source].Name, table[command].Name);
    return reasons;
}

void FormVirtualOperator::FollowOwner()
{
    // Behind a dialog that holds the program the panel would stand there and be dead.
    if (!isVisible() || parentWidget() == nullptr || QApplication::activeModalWidget() != nullptr)
        return;
    // A desktop takes the windows of a minimised window off the screen with it, and Stop would be among them.
    const bool isAway = parentWidget()->isMinimized();
    QWindow *owner = isAway ? nullptr : parentWidget()->windowHandle();
    if (windowHandle()->transientParent() == owner && !(isAway && isMinimized()))
        return;
    windowHandle()->setTransientParent(owner);
    // The desktop learns of it when the window is shown anew.
    hide();
    setAttribute(Qt::WA_ShowWithoutActivating, !isAway);
    showNormal();
    setAttribute(Qt::WA_ShowWithoutActivating, false);
}

bool FormVirtualOperator::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Leave:
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
    case QEvent::Hide:
        commandJog_->Release();
        break;
    case QEvent::WindowStateChange:
    case QEvent::WindowUnblocked:
        FollowOwnerSoon();
        break;
    default:
        break;
    }
    return Form::event(event);
}

void FormVirtualOperator::FollowOwnerSoon()
{
    // The desktop tells of the two windows in an order of its own.
    QMetaObject::invokeMethod(this, &FormVirtualOperator::FollowOwner, Qt::QueuedConnection);
}

void FormVirtualOperator::Unload()
{
    timerUpdateScreen_->stop();
    EndJog();
    watched_.Clear();
}

} // namespace quorvik
