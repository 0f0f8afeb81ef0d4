#include "operator/FormVirtualOperator.h"

#include "desktop/PlainText.h"
#include "model/Conversions.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "operations/Guards.h"
#include "operator/FormVirtualOperatorSetup.h"
#include "operator/LatchButton.h"
#include "operator/VirtualSlider.h"
#include "platform/Arithmetic.h"
#include "platform/Asker.h"
#include "platform/Guard.h"

#include <QContextMenuEvent>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <algorithm>
#include <cstdlib>

namespace quorvik
{

namespace
{

/** Status of a push button that is on. */
constexpr std::int32_t PushedIn = -1;
/** What a desktop puts around a window. */
constexpr QSize FrameAllowance = {16, 48};

QChar LetterOf(int index)
{
    return QChar(u'A' + index % FormVirtualOperator::Signals);
}

} // namespace

const QString &FormVirtualOperator::Caption()
{
    static const QString caption = QStringLiteral("Virtual Operator");
    return caption;
}

void FormVirtualOperator::Form_Load()
{
    ParameterTable &table = desk().table;
    for (const int p :
         {Param::Run, Param::Stop, Param::Jog, Param::RunStatus, Param::LogicSelect, Param::DriveState})
        watched_.Add(p);
    const Intent intent(table, {Origin::VirtualOperator, QStringLiteral("Unassign all inputs")});
    // What an input drove until now may stand elsewhere in the drive than in the table, and so may what
    // nobody polls, and what is held until the user has decided between set and drive.
    const auto isHeld = [&table](int p) {
        return table.PortOpen() && table[p].WriteFlag == WriteState::Held;
    };
    std::array<bool, Records> isKnown{};
    for (int index = 0; index < Records; ++index)
        Guarded([&] {
            const int p = desk().document.VirtualSettings.at(std::size_t(index)).Destination;
            isKnown.at(std::size_t(index)) =
                p == 0 || (table.FindLinkSource(p) == 0 &&
                           (!table.PortOpen() || (table[p].ReadFlag > 0 && !isHeld(p))));
        });
    for (int p = 0; p <= table.LastParam; ++p) {
        if (!table.AttrBit(Attr::Destination, p) || (table.Value(p) == 0 && !isHeld(p)))
            continue;
        table.SetParamValue(p, 0, true, false);
        // A drive that runs refuses it, and then the table must tell so.
        watched_.Add(p);
    }
    // Run and Stop act as a maintained command.
    if (table.Value(Param::LogicSelect) != TwoWire || isHeld(Param::LogicSelect))
        table.SetParamValue(Param::LogicSelect, TwoWire, true, false);
    for (int index = 0; index < Records; ++index)
        FillRecord(index, isKnown.at(std::size_t(index)));
    ShowCommands();
    timerUpdateScreen_->start();
}

void FormVirtualOperator::FillRecord(int index, bool isKnown)
{
    // A record that cannot be shown must keep neither the others nor Stop from the user.
    Guarded([this, index, isKnown] {
        if (index >= Signals) {
            AssignCaption(index);
            return;
        }
        ParameterTable &table = desk().table;
        const VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
        const bool isEmpty = setting.Destination == 0 && setting.BiasOpen == 0 && setting.GainClosed == 0;
        if (isEmpty)
            VScrollSignal(index).SetDesignLimits();
        else
            ApplyLimits(index);
        AssignCaption(index);
        ShowSignal(index);
        const Intent intent(table, Origin::VirtualOperator);
        if (!isKnown || table.Value(setting.Destination) != setting.Status)
            table.SetParamValue(setting.Destination, setting.Status, true, false);
    });
}

void FormVirtualOperator::AssignCaption(int index)
{
    const ParameterTable &table = desk().table;
    const VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
    const bool isSignal = index < Signals;
    const bool isAssigned = setting.Destination != 0;
    const ParamRecord &record = table[setting.Destination];
    const QString name = isAssigned ? record.Name
                         : isSignal ? QStringLiteral("Signal ") + LetterOf(index)
                                    : QStringLiteral("Digital ") + LetterOf(index);
    const QString toolTip = isAssigned ? record.Name : QStringLiteral("Unassigned");
    if (isSignal) {
        const auto signal = std::size_t(index);
        labelInputName_[signal]->setText(name);
        SetPlainToolTip(labelInputName_[signal], toolTip);
        VirtualSlider &slider = *vScrollSignal_[signal];
        slider.setAccessibleName(name);
        slider.SetScaleTexts(NumberText(slider.Min(), record.Attributes),
                             NumberText(slider.Max(), record.Attributes));
    } else {
        LatchButton *button = commandDigital_[std::size_t(index - Signals)];
        button->setText(
            isAssigned ? name + QStringLiteral("\r\n=") + ValueText(record.Value, record.Attributes) : name);
        button->setAccessibleName(name);
        SetPlainToolTip(button, toolTip);
        button->setChecked(setting.Status == PushedIn);
    }
}

void FormVirtualOperator::RefreshControls()
{
    for (int index = 0; index < Records; ++index)
        FillRecord(index, true);
}

void FormVirtualOperator::ApplyLimits(int index)
{
    const VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
    const std::int16_t max = ToInt16(setting.BiasOpen);
    const std::int16_t min = ToInt16(setting.GainClosed);
    const int greater = std::max(std::abs(int(min)), std::abs(int(max)));
    VScrollSignal(index).SetLimits(min, max, std::max(int(CInt(greater / 10.0)), 1));
}

void FormVirtualOperator::ShowSignal(int index)
{
    const ParameterTable &table = desk().table;
    VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
    setting.Status = VScrollSignal(index).value();
    labelSignalValue_.at(std::size_t(index))
        ->setText(ValueText(setting.Status, table[setting.Destination].Attributes));
}

void FormVirtualOperator::VScrollSignal_Change(int index)
{
    ShowSignal(index);
    const VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
    const Intent intent(
        desk().table,
        {.origin = Origin::VirtualOperator, .title = {}, .canBeTakenBack = false, .isMovement = true});
    // An unassigned slider writes parameter 0, as an unassigned button does.
    desk().table.SetParamValue(setting.Destination, setting.Status, true, false);
}

void FormVirtualOperator::CommandDigital_Click(int index)
{
    ParameterTable &table = desk().table;
    VirtualSetting &setting = desk().document.VirtualSettings.at(std::size_t(index));
    setting.Status = ~setting.Status;
    const Intent intent(table, Origin::VirtualOperator);
    // Unlike a slider's, this write clears the modified marks and refreshes what hangs on the parameter.
    table.SetParamValue(setting.Destination,
                        setting.Status == PushedIn ? setting.GainClosed : setting.BiasOpen, false, true);
    AssignCaption(index);
}

void FormVirtualOperator::CommandSetup_Click()
{
    fields_.VirtualSelection = 0;
    ShowSetup();
}

void FormVirtualOperator::mnuProperties_Click()
{
    ShowSetup();
}

void FormVirtualOperator::ShowSetup()
{
    FormVirtualOperatorSetup setup(desk(), *this, fields_.VirtualSelection);
    setup.exec();
}

void FormVirtualOperator::PopUp(int index, const QPoint &globalPosition)
{
    fields_.VirtualSelection = std::uint8_t(index);
    mnuPop1_->popup(globalPosition);
}

int FormVirtualOperator::SignalAt(int x) const
{
    int index = 0;
    while (index < Signals - 1 && x >= line1_[std::size_t(index)]->x())
        ++index;
    return index;
}

int FormVirtualOperator::RecordOf(const QObject *control) const
{
    for (int index = 0; index < Signals; ++index) {
        if (vScrollSignal_[std::size_t(index)] == control)
            return index;
        if (commandDigital_[std::size_t(index)] == control)
            return index + Signals;
    }
    return -1;
}

bool FormVirtualOperator::eventFilter(QObject *watched, QEvent *event)
{
    bool isDone = false;
    Guarded([&] {
        if (watched == parentWidget()) {
            // The link goes down before the owner's own windows close.
            if (event->type() == QEvent::Close)
                EndJog();
            else if (event->type() == QEvent::WindowStateChange)
                FollowOwnerSoon();
            return;
        }
        const int record = RecordOf(watched);
        if (event->type() == QEvent::MouseButtonRelease) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            if (mouse->button() != Qt::RightButton)
                return;
            if (watched == frameSignal_)
                PopUp(SignalAt(mouse->position().toPoint().x()), mouse->globalPosition().toPoint());
            else if (record >= Signals)
                PopUp(record, mouse->globalPosition().toPoint());
            else
                return;
            isDone = true;
        } else if (event->type() == QEvent::ContextMenu && record >= 0) {
            const auto *menu = static_cast<QContextMenuEvent *>(event);
            if (menu->reason() != QContextMenuEvent::Keyboard)
                return;
            PopUp(record, menu->globalPos());
            isDone = true;
        }
    });
    return isDone || Form::eventFilter(watched, event);
}

void OpenVirtualOperator(Desk &desk, QWidget *owner, VirtualOperatorFields &fields)
{
    const Question question{
        .text = QStringLiteral(
            "In order to use the virtual operator, all inputs must be unassigned!\r\nSelecting Yes "
            "will automatically unassign all inputs. Select No if you do not wish to continue."),
        .title = QStringLiteral("Unassign inputs?"),
        .icon = MsgIcon::Exclamation,
        .choices = {{MsgAnswer::Yes}, {MsgAnswer::No}},
        .safe = desk.guards.DefaultOf(MsgAnswer::Yes, MsgAnswer::No)};
    if (desk.asker.Ask(question) != MsgAnswer::Yes)
        return;
    const int position = desk.forms.FindOpenBlock(FormVirtualOperator::Caption());
    auto *panel = position > 0 ? qobject_cast<FormVirtualOperator *>(desk.forms.At(position)) : nullptr;
    if (panel == nullptr) {
        panel = new FormVirtualOperator(desk, owner, fields);
        panel->resize(panel->size().boundedTo(panel->screen()->availableSize() - FrameAllowance));
    }
    // A record that cannot be shown must not keep the panel, and so Stop, from the user.
    Guarded([panel] { panel->Form_Load(); });
    panel->show();
    panel->raise();
    panel->activateWindow();
}

} // namespace quorvik
