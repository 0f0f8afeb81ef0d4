#include "shell/Engines.h"

namespace quorvik
{

Engines::Engines(const Surroundings &given)
    : rules(model, given.asker)
    , file(model)
    , fileCommands(model, rules, given.asker, file, given.programFolder)
    , recoveryCopy(model, file, given.dataHome + QStringLiteral("/quorvik/recovery"))
    , link(model, rules, given.asker, given.timings)
    , emulator(model)
{
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
