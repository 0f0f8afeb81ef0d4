#pragma once

#include "batch/BatchAsker.h"
#include "batch/BatchOutput.h"
#include "batch/ExitCode.h"
#include "operations/Engines.h"
#include "platform/Termination.h"

#include "platform/Progress.h"
#include <QCommandLineParser>
#include <QStringList>

namespace quorvik
{

/** What a command works with: the engines of the program, the answers of the command line, and the output. */
class BatchRun : public QObject
{
    Q_OBJECT

public:
    /** @param parser has read the command line; its first positional argument is the verb. */
    BatchRun(const EnginePlaces &places, const QCommandLineParser &parser, BatchOutput &output);
    ~BatchRun() override;

    const QCommandLineParser &Options() const { return parser_; }
    /** The positional arguments after the verb. */
    QStringList Arguments() const { return parser_.positionalArguments().mid(1); }
    BatchOutput &Output() { return output_; }
    BatchAsker &TheAsker() { return asker_; }
    Engines &Eng() { return *engines_; }
    const EnginePlaces &Places() const { return places_; }

    /** Reads the factory table and begins the history. @return File, and why was told, where it cannot. */
    ExitCode Begin();
    /**
     * Goes on line at the port that was asked for, with the open set left alone: nothing is sent, and nothing
     * read yet but the size of the drive's table. @return Done, Usage for no port, NoLink, Interrupted.
     */
    ExitCode GoOnLine();
    /** Goes off line; what the drive has not saved in its memory is told. */
    void GoOffLine();

    /** The device of the port that was chosen, as a path or an address; what names it to people. */
    QString PortDevice() const;

    /** SIGINT or SIGTERM has come: the operation under way was cancelled, and no other is to begin. */
    bool IsInterrupted() const { return isInterrupted_; }

    /** What an operation's end means for the run. */
    ExitCode CodeOf(const OperationResult &result) const;
    /** Tells it, and is ExitCode::Usage. */
    ExitCode UsageFailure(const QString &sentence);

private:
    bool ChoosePort();

    EnginePlaces places_;
    const QCommandLineParser &parser_;
    BatchOutput &output_;
    BatchAsker asker_;
    std::unique_ptr<Engines> engines_;
    Termination termination_;
    QString device_; ///< of a port that is given as a path or an address
    bool isInterrupted_ = false;
};

/** What every command takes beside its own options. */
void AddCommonOptions(QCommandLineParser &parser);

/** Runs one command line, the program's own name first. @return the exit code. */
int RunBatch(const QStringList &arguments, const EnginePlaces &places);

} // namespace quorvik
