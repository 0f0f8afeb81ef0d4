#pragma once

#include "desktop/Form.h"
#include "model/ReadInterest.h"
#include "platform/Guard.h"

#include <QList>
#include <QStringList>
#include <array>
#include <cstdint>

class QGroupBox;
class QLabel;
class QMenu;
class QTimer;

namespace quorvik
{

class JogButton;
class LatchButton;
class OperatorButton;
class VirtualSlider;

/** What the main window keeps for the virtual operator. */
struct VirtualOperatorFields {
    std::uint8_t VirtualSelection = 0; ///< the record that the setup opens on, 0 to 11
};

/**
 * "Virtual Operator": Run, Stop and Jog, six sliders and six push buttons in place of the drive's terminal
 * strip. Each writes a parameter of the user's choice. On line the lamps show what the drive does, not what
 * was clicked.
 */
class FormVirtualOperator : public Form
{
    Q_OBJECT

public:
    static constexpr int Signals = 6;
    static constexpr int Records = 12;

    FormVirtualOperator(Desk &desk, QWidget *owner, VirtualOperatorFields &fields);

    static const QString &Caption();

    /**
     * Takes all inputs off their destinations, chooses two-wire logic and writes what the sliders stand at.
     * What has its value already is left alone.
     */
    void Form_Load();

    /** Refreshes the caption of a record, 0 to 11. */
    void AssignCaption(int index);
    /** Draws all records anew and writes each slider's parameter from its position where it differs. */
    void RefreshControls();
    /** Gives slider 0 to 5 the two ends of its record. */
    void ApplyLimits(int index);
    /** Writes the parameter of slider 0 to 5 from its position. */
    void VScrollSignal_Change(int index);

    VirtualSlider &VScrollSignal(int index) { return *vScrollSignal_.at(std::size_t(index)); }

protected:
    void Unload() override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static constexpr std::int32_t TwoWire = 1; ///< a value of Logic Select

    QWidget *MakeStartStop();
    QWidget *MakeSignals();
    QWidget *MakeDigitals();
    QWidget *MakeCommands();
    QLabel *MakeLabel(const char *name, int index);

    void CommandRun_Click();
    void CommandStop_Click();
    void CommandJog_MouseDown();
    void CommandJog_MouseUp();
    void CommandDigital_Click(int index);
    void CommandSetup_Click();
    void mnuProperties_Click();
    void ShowSetup();
    void PopUp(int index, const QPoint &globalPosition);
    int SignalAt(int x) const;
    int RecordOf(const QObject *control) const;

    /** @param isKnown whether the table's value is the drive's, so that an equal one needs no write. */
    void FillRecord(int index, bool isKnown);
    void ShowSignal(int index);

    void EndJog();
    /** What the drive does as far as it tells; off line the commands of the table. */
    bool DriveRuns() const;
    bool DriveJogs() const;
    /** Brings lamps, buttons and notice in line with the table. */
    void ShowCommands();
    /** What else may start or hold the drive, in words. */
    QStringList WhyStopMayFail() const;
    /** Keeps the panel on the screen when its owner is minimised. */
    void FollowOwner();
    void FollowOwnerSoon();

    VirtualOperatorFields &fields_;
    ReadInterest watched_;
    bool isStopAsked_ = false; ///< of a drive that has not yet told that it obeys
    OperatorButton *commandRun_;
    OperatorButton *commandStop_;
    JogButton *commandJog_;
    QGroupBox *frameSignal_ = nullptr;
    QMenu *mnuPop1_;
    QLabel *labelNotice_;
    QTimer *timerUpdateScreen_;
    TickGuard tickGuard_;
    std::array<VirtualSlider *, Signals> vScrollSignal_{};
    std::array<QLabel *, Signals> labelInputName_{};
    std::array<QLabel *, Signals> labelSignalValue_{};
    std::array<QWidget *, Signals> line1_{};
    std::array<LatchButton *, Records - Signals> commandDigital_{};
};

/**
 * Asks whether the inputs may be unassigned and on Yes shows the panel, owned by the main window. A panel
 * that is open already unassigns them again.
 */
void OpenVirtualOperator(Desk &desk, QWidget *owner, VirtualOperatorFields &fields);

} // namespace quorvik
