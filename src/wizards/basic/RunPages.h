#pragma once

#include "wizards/basic/BasicRows.h"
#include "wizards/frame/OptionGroup.h"
#include "wizards/frame/WizardPage.h"

#include <array>

class QGroupBox;

namespace quorvik
{

class SpeedProfile;

/** Step 5: how fast the motor may turn. */
class MaxSpeedPage : public WizardPage
{
    Q_OBJECT

public:
    MaxSpeedPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows);

    OptionGroup *const OptionMaxSpeed;

    /** Both maximum speeds become the rated speed, whatever was typed. */
    void SetRatedMaxSpeeds();
    void EnableMaxSpeeds(bool enable);
    void ShowRatedSpeed();

private:
    const BasicSetup &setup_;
    BasicRows &rows_;
};

/** Step 6: the internal references. */
class ReferencesPage : public WizardPage
{
    Q_OBJECT

public:
    ReferencesPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows);

    void SetHeading(const QString &text);

private:
    QLabel *heading_;
};

/** Step 7: the ramps. */
class AccelDecelPage : public WizardPage
{
    Q_OBJECT

public:
    AccelDecelPage(QWidget *parent, BasicRows &rows);

    void EnableJog(bool enable);
    void ShowReverse(bool show);

private:
    BasicRows &rows_;
    SpeedProfile *profile_;
    QGroupBox *jogFrame_ = nullptr;
};

/** Step 8: how the drive is started and stopped. */
class StartStopPage : public WizardPage
{
    Q_OBJECT

public:
    StartStopPage(QWidget *parent, const BasicSetup &setup);

    OptionGroup *OptionStartStopLogic = nullptr;
    OptionGroup *OptionStopMode = nullptr;

    void ShowLogic(int logic);

private:
    std::array<QLabel *, 7> labelDigitalInputFunc_{};
};

/** Step 9: the current limits. */
class CurrentLimitsPage : public WizardPage
{
    Q_OBJECT

public:
    CurrentLimitsPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows);

    /** Shows what a limit means in amperes; a text that is no number leaves the figure as it was. */
    void TextCurrentLimit_Change(int index);
    void EnableNegative(bool enable);

private:
    const BasicSetup &setup_;
    BasicRows &rows_;
    std::array<QLabel *, 2> labelCurrent_{};
};

} // namespace quorvik
