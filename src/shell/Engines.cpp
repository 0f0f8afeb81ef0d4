#include "shell/Engines.h"

#include "platform/Ports.h"

namespace quorvik
{

Engines::Engines(const Surroundings &given, Asker &asker)
    : file(model)
    , recoveryCopy(model, file, given.dataHome + QStringLiteral("/quorvik/recovery"))
    , link(model, given.timings)
    , emulator(model)
    , rules(model, asker)
    , saving(model, asker, file, given.programFolder)
    , drive(model, link, rules, saving, asker)
    , fileCommands(model, rules, asker, file, saving, drive)
{
    link.MSComm1.DeviceOf = [ports = Ports(given.settings)](int number) { return ports.DeviceOf(number); };
}

QString Engines::InitGlobals(const QString &programFolder)
{
    model.InitColors();
    QString sentence = file.LoadPresets(programFolder + QStringLiteral("/Presets.fil"));
    if (!sentence.isEmpty())
        return sentence;
    model.ResetToDefaults();
    model.ParamTable[Param::DriveState].ReadFlag = 1;
    return {};
}

} // namespace quorvik
