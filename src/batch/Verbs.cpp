#include "batch/Verbs.h"

#include "batch/Verb.h"

namespace quorvik
{

namespace
{

constexpr Verb AllVerbs[] = {
    {"ports", "", "Tells which ports there are, and at which of them a drive answers.", AddPortsOptions,
     RunPorts},
    {"info", "", "Tells which drive answers: model, firmware, hours, state.", nullptr, RunInfo},
    {"read", "[PARAMETER...]", "Reads parameters by number, range (10-20) or name; all where none is named.",
     nullptr, RunRead},
    {"watch", "PARAMETER...", "Prints values as fast as the line tells them.", AddWatchOptions, RunWatch},
    {"write", "PARAMETER=VALUE...",
     "Writes values as shown (226=5.0, 226=\"5.0 Sec\") or raw (226=raw:50), and "
     "reads them back.",
     AddWriteOptions, RunWrite},
    {"backup", "FILE", "Reads the whole drive into a settings file.", AddBackupOptions, RunBackup},
    {"restore", "FILE", "Writes a backup back to its drive; prints the plan, and does it with --yes.",
     AddWriteSetOptions, RunRestore},
    {"write-set", "FILE",
     "Writes the settings of any file to the drive; prints the plan, and does it with --yes.",
     AddWriteSetOptions, RunWriteSet},
    {"compare", "A B", "Tells in what two sets differ: a file, \"drive\" or \"factory\" each.",
     AddCompareOptions, RunCompare},
    {"list", "FILE", "Lists a settings file, the \"drive\" or the \"factory\" set.", AddListOptions, RunList},
    {"convert", "OLD NEW",
     "Makes files of the present format of older settings files, one or a folder of them.", AddConvertOptions,
     RunConvert},
    {"journal", "", "Lists what was changed, the newest first.", AddJournalOptions, RunJournal},
    {"report", "", "Writes the report of a commissioning as a PDF, of a drive or of a settings file.",
     AddReportOptions, RunReport},
    {"selftest", "", "Tries the installation against a simulated drive of its own.", AddSelftestOptions,
     RunSelftest},
};

} // namespace

std::span<const Verb> Verbs()
{
    return AllVerbs;
}

} // namespace quorvik
