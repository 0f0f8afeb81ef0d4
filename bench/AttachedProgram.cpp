#include "AttachedProgram.h"

#include <QFile>
#include <cstdio>
#include <cstdlib>

namespace quorvik
{

MsgAnswer FailingAsker::MsgBox(const QString &text, MsgButtons, MsgIcon, const QString &)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    std::exit(1);
}

AttachedProgram::AttachedProgram()
    : settings_(folder_.filePath(QStringLiteral("Quorvik.ini")))
{
}

bool AttachedProgram::GoOnLine(const LinkTimings &timings)
{
    const QString presets = folder_.filePath(QStringLiteral("Presets.fil"));
    const QString link = folder_.filePath(QStringLiteral("drive"));
    QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), presets);
    if (!drive_.Start(QStringLiteral(QUORVIK_DRIVE_PROGRAM), link, presets))
        return false;
    settings_.SaveSetting(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("16"));
    settings_.SaveSetting(QStringLiteral("Ports"), QStringLiteral("Com16"), link);
    settings_.SaveSetting(QStringLiteral("Options"), QStringLiteral("Show Tips at Startup"),
                          QStringLiteral("False"));
    main_.emplace(Surroundings{
        asker_, settings_, help_, folder_.path(), folder_.filePath(QStringLiteral("quorvik")),
        folder_.filePath(QStringLiteral("Quorvik.lock")), folder_.filePath(QStringLiteral("data")), timings});
    // A file on the command line brings the program up without a dialog.
    if (!main_->Load(presets))
        return false;
    return main_->AllEngines().drive.GoOnLine().IsDone();
}

} // namespace quorvik
