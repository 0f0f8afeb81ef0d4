#include "shell/Lessons.h"

#include "model/ParameterNumbers.h"
#include "shell/MDIFormMain.h"

namespace quorvik
{

namespace
{

using Main = MDIFormMain;
using Before = LessonMoment;

bool IsOpen(Main &main, const char *name)
{
    const FormsCollection &forms = main.TheDesk().forms;
    for (int position = 1; position < forms.Count(); ++position)
        if (forms.At(position)->objectName() == QLatin1String(name))
            return true;
    return false;
}

std::int32_t Accel(Main &main)
{
    return main.AllEngines().table.Value(Param::FwdAccelA);
}

bool IsOnLine(Main &main)
{
    return main.AllEngines().link.PortOpen();
}

constexpr LessonStep ConnectAndLook[] = {
    {"Go on line: choose the port on the start page and press \"Connect\", or start a simulated drive there.",
     [](Main &main, const Before &) { return IsOnLine(main); }},
    {"Open the window of the speed loop: Blocks, Velocity Loop. Its values are the drive's own, read "
     "several times a second. Rest the pointer on one to see its number, its range and its age.",
     [](Main &main, const Before &) { return IsOpen(main, "FormVelocityLoop"); }},
    {"See the whole drive: Tools, Map of the Drive (Ctrl+M). A click on a card opens its window.",
     [](Main &main, const Before &) { return IsOpen(main, "FormMap"); }},
    {"Find something: press Ctrl+F and type a word, \"jog\" for instance. Enter leads there.",
     [](Main &main, const Before &) { return IsOpen(main, "FormFind"); }},
};

constexpr LessonStep ChangeAndKeep[] = {
    {"Open the ramp: Blocks, Accel/Decel.",
     [](Main &main, const Before &) { return IsOpen(main, "FormAccelDecel"); }},
    {"Click the value of Fwd Accel A, type another time and press Enter. On line it is written to the drive "
     "and read back.",
     [](Main &main, const Before &before) { return Accel(main) != before.rawAccel; }},
    {"Take it back: Ctrl+Z.",
     [](Main &main, const Before &before) { return Accel(main) != before.rawAccel; }},
    {"Do it again: Ctrl+Y.", [](Main &main, const Before &before) { return Accel(main) != before.rawAccel; }},
    {"Keep it in the drive: Tools, Save Drive Parameters to EE. Without that it is gone when the drive is "
     "switched off. (Off line there is nothing to keep there.)",
     [](Main &main, const Before &) { return !IsOnLine(main) || !main.AllEngines().document.DriveModified; }},
    {"Keep it in a file: File, Save (Ctrl+S). A drive that is replaced one day gets its settings from there.",
     [](Main &main, const Before &) {
         const Document &document = main.AllEngines().document;
         return !document.FileModified && document.FileName != Document::Unnamed();
     }},
};

constexpr LessonStep WhyItDoesNotRun[] = {
    {"Ask: Tools, Why Does It Not Run? Its first line names what stands in the way first, and what to do.",
     [](Main &main, const Before &) { return IsOpen(main, "FormWhyNot"); }},
    {"Press the button below that line. It opens the window where the value stands, and its box lights up.",
     [](Main &main, const Before &before) { return main.TheDesk().forms.Count() > before.windowCount; }},
    {"Look where the signal comes from: in Why Does It Not Run?, press \"Show on Map\".",
     [](Main &main, const Before &) { return IsOpen(main, "FormMap"); }},
    {"See what stopped it before: Blocks, Fault Log. The text below the log says what to check.",
     [](Main &main, const Before &) { return IsOpen(main, "FormFaultLog"); }},
};

constexpr Lesson All[] = {
    {"Connect and look", ConnectAndLook},
    {"Change and keep", ChangeAndKeep},
    {"Find out why it does not run", WhyItDoesNotRun},
};

} // namespace

std::span<const Lesson> Lessons()
{
    return All;
}

LessonMoment MomentOf(MDIFormMain &main)
{
    return {Accel(main), main.TheDesk().forms.Count()};
}

} // namespace quorvik
