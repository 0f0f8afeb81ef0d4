#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/ParameterNames.h"
#include "batch/Verbs.h"

namespace quorvik
{

ExitCode RunRead(BatchRun &run)
{
    NamedParams wanted = FindAllParams(run.Arguments(), run.Eng().table);
    if (!wanted.failure.isEmpty())
        return run.UsageFailure(wanted.failure);
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    ParameterSet set;
    const ExitCode code = wanted.params.empty()
                              ? ReadWholeDrive(run, set)
                              : ReadParams(run, {wanted.params.begin(), wanted.params.end()}, set);
    if (code == ExitCode::NoLink || code == ExitCode::Interrupted)
        return code;
    if (wanted.params.empty())
        for (int p = 0; p <= run.Eng().table.LastParam; ++p)
            wanted.params.push_back(p);
    const BatchOutput::Format format = run.Output().CurrentFormat();
    run.Output().Begin(QStringLiteral("parameter"), ValueColumns(format));
    for (const int p : wanted.params)
        run.Output().Row(ValueFields(format, set, p));
    return code;
}

} // namespace quorvik
