#include "wizards/basic/RunPages.h"

#include "desktop/Form.h"
#include "platform/Arithmetic.h"
#include "platform/Guard.h"
#include "platform/Numbers.h"
#include "wizards/basic/BasicPictures.h"
#include "wizards/basic/SpeedProfile.h"
#include "wizards/frame/EntryBox.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quorvik
{

MaxSpeedPage::MaxSpeedPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows)
    : WizardPage(parent, MakePicture(QStringLiteral("A speed dial"), setup, MaxSpeedPicture))
    , OptionMaxSpeed(new OptionGroup(
          this, "OptionMaxSpeed", {QStringLiteral("&Max Rated Motor Speed of "), QStringLiteral("&Other")}))
    , setup_(setup)
    , rows_(rows)
{
    AddHeading(QStringLiteral("What is the maximum desired motor speed?"));
    for (QAbstractButton *option : OptionMaxSpeed->buttons())
        Content()->addWidget(option);
    auto *grid = new QGridLayout;
    grid->setColumnStretch(3, 1);
    grid->setColumnMinimumWidth(0, fontMetrics().height() * 10);
    rows.Make(this, grid, 0, Entry::ForwardMaxSpeed);
    rows.Make(this, grid, 1, Entry::ReverseMaxSpeed);
    Content()->addLayout(grid);
    CloseContent();
}

void MaxSpeedPage::SetRatedMaxSpeeds()
{
    const QString rated = setup_.Text(Entry::RatedSpeed);
    rows_.SetText(Entry::ForwardMaxSpeed, rated);
    rows_.SetText(Entry::ReverseMaxSpeed, u'-' + rated);
}

void MaxSpeedPage::EnableMaxSpeeds(bool enable)
{
    rows_.Enable(Entry::ForwardMaxSpeed, 1, enable);
    rows_.Enable(Entry::ReverseMaxSpeed, 1, enable && setup_.Table().IsRegenerative());
}

void MaxSpeedPage::ShowRatedSpeed()
{
    QString shown = setup_.Text(Entry::RatedSpeed);
    shown.replace(u'&', QStringLiteral("&&"));
    OptionMaxSpeed->button(0)->setText(QStringLiteral("Max Rated Motor Speed of ") + shown +
                                       QStringLiteral(" RPM"));
}

ReferencesPage::ReferencesPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows)
    : WizardPage(parent,
                 MakePicture(QStringLiteral("The switch that selects a reference"), setup, ReferencesPicture))
{
    heading_ = AddHeading(QStringLiteral("Set internal references, if required."),
                          ControlName("LabelInternalReferences", 0));
    AddText(QStringLiteral(
                "The Sarvex has 4 internal reference parameters (References 0-3) and a Jog Reference. In the "
                "factory preset configuration, Ref 0 is controlled by Analog Input 1. Digital Inputs 5 and 6 "
                "determine which one of the four internal references is selected when in the Run mode. The "
                "Jog Reference is selected when in the Jog mode."),
            ControlName("LabelInternalReferences", 1));

    auto *grid = new QGridLayout;
    const int em = fontMetrics().height();
    grid->setHorizontalSpacing(em);
    grid->setColumnStretch(4, 1);
    QLabel *head = MakeLabel(this, QStringLiteral("Digital In 5 / Digital In 6"));
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    grid->addWidget(head, 0, 0);
    static constexpr std::array<const char *, 4> states = {"Open / Open", "Open / Closed", "Closed / Open",
                                                           "Closed / Closed"};
    for (int i = 0; i < 4; ++i)
        grid->addWidget(
            MakeLabel(this, QString::fromLatin1(states[std::size_t(i)]), ControlName("LabelDinStates", i)),
            i + 1, 0);
    // Reference 0 stays with analog input 1 and is never typed.
    auto *reference0 = new EntryBox(this, ControlName("TextRef", 0), 11);
    reference0->setText(QStringLiteral("Analog In 1"));
    reference0->setEnabled(false);
    reference0->setAccessibleName(QStringLiteral("Reference 0"));
    grid->addWidget(MakeLabel(this, QStringLiteral("Reference 0"), ControlName("LabelRef", 0)), 1, 1);
    grid->addWidget(reference0, 1, 2);
    grid->addWidget(MakeLabel(this, QStringLiteral("%"), ControlName("LabelRefUnits", 0)), 1, 3);
    for (int i = 0; i < 3; ++i)
        rows.Make(this, grid, i + 2, EntryAt(Entry::Ref1, i), 1);
    rows.Make(this, grid, 5, Entry::JogRef, 1);
    for (const Entry entry : {Entry::Ref1, Entry::Ref2, Entry::Ref3, Entry::JogRef})
        rows.At(entry).box->setFixedWidth(reference0->minimumWidth());
    Content()->addLayout(grid);
    CloseContent();
}

void ReferencesPage::SetHeading(const QString &text)
{
    heading_->setText(text);
}

AccelDecelPage::AccelDecelPage(QWidget *parent, BasicRows &rows)
    : WizardPage(parent, new SpeedProfile(nullptr))
    , rows_(rows)
    , profile_(static_cast<SpeedProfile *>(Picture()))
{
    AddHeading(QStringLiteral("Set desired Accel/Decel times."));
    const struct {
        const char *title;
        const char *name;
        Entry first;
    } frames[] = {{"Run", "FrameRunAccelDecel", Entry::RunForwardAccel},
                  {"Jog", "FrameJogAccelDecel", Entry::JogForwardAccel}};
    for (const auto &row : frames) {
        QGroupBox *frame = AddFrame(QString::fromLatin1(row.title), QString::fromLatin1(row.name));
        auto *grid = new QGridLayout(frame);
        grid->setColumnStretch(0, 1);
        for (int i = 0; i < 4; ++i)
            rows.Make(frame, grid, i, EntryAt(row.first, i));
        jogFrame_ = frame;
    }
    CloseContent();

    On(&rows, &BasicRows::Entered, this, [this](Entry entry) {
        const int ramp = int(entry) - int(Entry::RunForwardAccel);
        constexpr int ramps = 4;
        if (ramp >= 0 && ramp < 2 * ramps)
            profile_->HighlightRamp(ramp % ramps);
    });
}

void AccelDecelPage::EnableJog(bool enable)
{
    EnableFrame(jogFrame_, enable);
}

void AccelDecelPage::ShowReverse(bool show)
{
    profile_->ShowReverse(show);
    rows_.Enable(Entry::RunReverseAccel, 2, show);
    rows_.Enable(Entry::JogReverseAccel, 2, show);
}

StartStopPage::StartStopPage(QWidget *parent, const BasicSetup &setup)
    : WizardPage(parent, MakePicture(QStringLiteral("How the start and stop contacts are wired"), setup,
                                     StartStopPicture))
{
    AddHeading(QStringLiteral("Select Start/Stop options."));
    QBoxLayout *columns = AddColumns();
    OptionStartStopLogic =
        AddOptions(columns, QStringLiteral("Start/Stop Logic"), "OptionStartStopLogic",
                   {QStringLiteral("&2 Wire (Maintained)"), QStringLiteral("&3 Wire (Momentary)")});
    OptionStopMode = AddOptions(columns, QStringLiteral("Stop Mode"), "OptionStopMode",
                                {QStringLiteral("Ramp"), QStringLiteral("Quick"), QStringLiteral("Coast")});

    QGroupBox *inputs = AddFrame(QStringLiteral("Digital Inputs"));
    auto *grid = new QGridLayout(inputs);
    grid->setColumnStretch(1, 1);
    grid->setHorizontalSpacing(fontMetrics().height() * 2);
    static constexpr std::array<const char *, 7> functions = {
        "", "", "Jog", "Reference Invert", "Reference Select (MSB)", "Reference Select (LSB)", "Fault Reset"};
    for (int i = 0; i < 7; ++i) {
        grid->addWidget(MakeLabel(inputs, QStringLiteral("Digital Input %1").arg(i + 1),
                                  ControlName("LabelDigitalInput", i)),
                        i, 0);
        QLabel *function = MakeLabel(inputs, QString::fromLatin1(functions[std::size_t(i)]),
                                     ControlName("LabelDigitalInputFunc", i));
        labelDigitalInputFunc_[std::size_t(i)] = function;
        grid->addWidget(function, i, 1);
    }
    CloseContent();
}

void StartStopPage::ShowLogic(int logic)
{
    const bool twoWire = logic == TwoWire;
    labelDigitalInputFunc_[0]->setText(twoWire ? QStringLiteral("Start/Stop") : QStringLiteral("Start"));
    labelDigitalInputFunc_[1]->setText(twoWire ? QString() : QStringLiteral("Stop"));
    Picture()->update();
}

CurrentLimitsPage::CurrentLimitsPage(QWidget *parent, const BasicSetup &setup, BasicRows &rows)
    : WizardPage(parent, MakePicture(QStringLiteral("The armature current between its limits"), setup,
                                     CurrentLimitsPicture))
    , setup_(setup)
    , rows_(rows)
{
    AddHeading(QStringLiteral("Set Current Limits."));
    auto *grid = new QGridLayout;
    grid->setColumnStretch(4, 1);
    grid->setHorizontalSpacing(fontMetrics().height());
    for (int i = 0; i < 2; ++i) {
        rows.Make(this, grid, i, EntryAt(Entry::PositiveLimit, i));
        labelCurrent_[std::size_t(i)] = MakeLabel(this, {}, ControlName("LabelCurrent", i));
        grid->addWidget(labelCurrent_[std::size_t(i)], i, 3);
    }
    Content()->addLayout(grid);
    CloseContent();
}

void CurrentLimitsPage::TextCurrentLimit_Change(int index)
{
    Picture()->update();
    const QString &text = setup_.Text(EntryAt(Entry::PositiveLimit, index));
    if (IsNumeric(text))
        labelCurrent_[std::size_t(index)]->setText(QStringLiteral("= ") + setup_.LimitAmpsText(CLng(text)) +
                                                   QStringLiteral(" Amps"));
}

void CurrentLimitsPage::EnableNegative(bool enable)
{
    rows_.Enable(Entry::NegativeLimit, 1, enable);
    labelCurrent_[1]->setEnabled(enable);
    Picture()->update();
}

} // namespace quorvik
