#pragma once

#include "wizards/basic/BasicRows.h"
#include "wizards/frame/OptionGroup.h"
#include "wizards/frame/WizardPage.h"

#include <array>

class QPushButton;

namespace quorvik
{

/** Step 1: which drive this is. */
class ModelPage : public WizardPage
{
    Q_OBJECT

public:
    ModelPage(QWidget *parent, const BasicSetup &setup);

    void SetDriveData();

Q_SIGNALS:
    void ChangeModel(); ///< CommandChangeModel

private:
    const BasicSetup &setup_;
    std::array<QLabel *, 3> labelDriveData_{};
};

/** Step 2: what the drive is to control. */
class OperatingModePage : public WizardPage
{
    Q_OBJECT

public:
    OperatingModePage(QWidget *parent, const BasicSetup &setup);

    OptionGroup *const OptionOperatingMode;
};

/** Step 3: the motor's nameplate. */
class MotorDataPage : public WizardPage
{
    Q_OBJECT

public:
    MotorDataPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows);

    OptionGroup *OptionFieldType = nullptr;
};

/** Step 4: where the speed is measured, and how the tachometer's jumpers are to sit. */
class FeedbackPage : public WizardPage
{
    Q_OBJECT

public:
    FeedbackPage(QWidget *parent, BasicSetup &setup, BasicRows &rows);

    OptionGroup *OptionFeedback = nullptr;

    void EnableEncoder(bool enable);
    void EnableTach(bool enable);
    void UpdateTachJumpers();
    /** The captions of LabelTachJumper(0) to (2). */
    QStringList JumperTexts() const;

private:
    /** A list of the texts of an enumerated type in the first row of a frame, kept in step with an answer. */
    void AddList(QGridLayout *grid, const char *name, const QString &caption, int typeCode, int &answer);

    const BasicSetup &setup_;
    TachJumpers jumpers_;
    QGroupBox *encoderFrame_ = nullptr;
    QGroupBox *tachFrame_ = nullptr;
    std::array<QLabel *, 4> labelTachJumper_{};
};

} // namespace quorvik
