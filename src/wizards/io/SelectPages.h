#pragma once

#include "wizards/frame/OptionGroup.h"
#include "wizards/frame/WizardPage.h"
#include "wizards/io/IOSetup.h"

class QComboBox;

namespace quorvik
{

struct ParamChoices;

/** Step 1: an input or an output. */
class BranchPage : public WizardPage
{
    Q_OBJECT

public:
    BranchPage(QWidget *parent, const IOSetup &setup);

    OptionGroup *OptionInputsOutputs = nullptr;
};

/** Step 2: which input. */
class InputPage : public WizardPage
{
    Q_OBJECT

public:
    InputPage(QWidget *parent, const IOSetup &setup);

    OptionGroup *OptionInputType = nullptr;
    OptionGroup *OptionInput = nullptr;

    /** Enables the inputs that the kind has, and takes the first one where another was chosen. */
    void FollowType(int inputType);
};

/** Steps 3 and 8: the parameter at the other end of the link, picked from a list. */
class ParameterPage : public WizardPage
{
    Q_OBJECT

public:
    ParameterPage(QWidget *parent, WizardPicture *picture, const QString &heading, const QString &text,
                  const QString &comboName);

    void Fill(const ParamChoices &choices);

Q_SIGNALS:
    /** A parameter became chosen; 0 where the list shows none. */
    void Chosen(int p);

private:
    void Combo_Click();

    QComboBox *combo_;
};

/** Step 4: what signal an analog input gets. */
class AnalogTypePage : public WizardPage
{
    Q_OBJECT

public:
    AnalogTypePage(QWidget *parent, const IOSetup &setup);

    OptionGroup *OptionAnalogType = nullptr;
    OptionGroup *OptionPolarity = nullptr;

    void EnableType(bool enable);
    void ShowRange();

private:
    const IOSetup &setup_;
    QWidget *frameInputType_ = nullptr;
    QLabel *range_ = nullptr;
};

/** Step 7: which output. */
class OutputPage : public WizardPage
{
    Q_OBJECT

public:
    OutputPage(QWidget *parent, const IOSetup &setup);

    OptionGroup *OptionOutputType = nullptr;
    OptionGroup *OptionOutput = nullptr;
    OptionGroup *OptionFreqDigMode = nullptr;

    /** Enables the outputs that the kind has, and takes the first one where another was chosen. */
    void FollowType(int outputType);

private:
    QWidget *frameFreqDigMode_ = nullptr;
};

} // namespace quorvik
