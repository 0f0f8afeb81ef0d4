#include "batch/NamedSet.h"

#include "batch/BatchRun.h"
#include "batch/DriveReading.h"

namespace quorvik
{

ExitCode SetNamed(BatchRun &run, const QString &word, ParameterSet &set)
{
    Engines &engines = run.Eng();
    ExitCode code = ExitCode::Done;
    if (word == QLatin1String("drive")) {
        code = engines.link.PortOpen() ? ExitCode::Done : run.GoOnLine();
        if (code == ExitCode::Done)
            code = ReadWholeDrive(run, set);
    } else if (word == QLatin1String("factory")) {
        set = ParameterSet::FactoryOf(engines.table, word);
    } else {
        QString failure;
        set = ParameterSet::FromFile(word, engines.table, failure);
        if (!failure.isEmpty()) {
            run.Output().Complain(failure);
            return ExitCode::File;
        }
    }
    set.name = word;
    return code;
}

} // namespace quorvik
