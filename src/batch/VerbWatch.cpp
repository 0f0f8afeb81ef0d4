#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/ParameterNames.h"
#include "batch/Verbs.h"
#include "link/SampleInterest.h"
#include "model/Conversions.h"
#include "platform/Clock.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "platform/Waiting.h"
#include "trend/TrendTimings.h"

#include <QDateTime>
#include <algorithm>
#include <limits>

namespace quorvik
{

namespace
{

/** When a watch ends, and how close its samples may be. */
struct Bounds {
    int rows = std::numeric_limits<int>::max();
    std::optional<int> seconds = {};
    int everyMs = 0;
};

/** @return why a number is none; empty where all are. */
QString ReadBounds(const QCommandLineParser &options, Bounds &bounds)
{
    const auto read = [&options](const char *name, int least, int most, auto &value) {
        const QString key = QString::fromLatin1(name);
        if (!options.isSet(key))
            return QString();
        bool isNumber = false;
        const int number = options.value(key).toInt(&isNumber);
        if (!isNumber || number < least || number > most)
            return QStringLiteral("--%1 takes a number from %2 to %3.").arg(key).arg(least).arg(most);
        value = number;
        return QString();
    };
    constexpr int mostRows = 1'000'000'000;
    constexpr int mostSeconds = 2'000'000;
    for (const QString &failure :
         {read("count", 1, mostRows, bounds.rows), read("seconds", 1, mostSeconds, bounds.seconds),
          read("every", 0, mostSeconds, bounds.everyMs)})
        if (!failure.isEmpty())
            return failure;
    return {};
}

/**
 * Prints what the drive says of the parameters, at once. What was printed cannot be taken back, so it is told
 * where answers may have come to other questions than theirs, and since when.
 */
class Watch : public QObject
{
public:
    Watch(BatchRun &run, const ParameterSet &set, const std::vector<int> &params, const Bounds &bounds)
        : run_(run)
        , set_(set)
        , bounds_(bounds)
        , sampled_(run.Eng().link)
        , began_(QDateTime::currentDateTime())
        , beganUs_(MicrosecondsUp())
    {
        DriveLink &link = run.Eng().link;
        isText_ = run.Output().CurrentFormat() == BatchOutput::Format::Text;
        run.Output().Begin(QStringLiteral("sample"), Columns());
        On(&link, &DriveLink::Confirmed, this, [this](int p, std::int32_t rawValue) { Take(p, rawValue); });
        On(&link, &DriveLink::OutOfStep, this, [this] { Doubt(); });
        On(&link, &DriveLink::PassBegins, this, [this] { inStepUs_ = MicrosecondsUp(); });
        sampled_.Set({params.begin(), params.end()});
    }

    bool IsOver() const { return printed_ >= bounds_.rows || run_.Output().IsBroken(); }

private:
    QList<OutputColumn> Columns() const
    {
        QList<OutputColumn> columns{{QStringLiteral("time"), QStringLiteral("Time"), 29}};
        if (!isText_)
            columns << OutputColumn{QStringLiteral("us"), QStringLiteral("Microseconds")};
        return columns << ValueColumns(run_.Output().CurrentFormat());
    }

    QVariantList TimeFields(qint64 timeUs) const
    {
        const qint64 us = timeUs - beganUs_;
        const QDateTime time = began_.addMSecs(us / UsPerMs).toOffsetFromUtc(began_.offsetFromUtc());
        QVariantList fields{time.toString(Qt::ISODateWithMs)};
        if (!isText_)
            fields << us;
        return fields;
    }

    void Take(int p, std::int32_t rawValue)
    {
        const DriveLink &link = run_.Eng().link;
        const qint64 timeUs = link.AskedUs() + (link.AnsweredUs() - link.AskedUs()) / 2;
        if (!sampled_.Params().contains(p) || IsOver())
            return;
        if (const auto last = lastUs_.find(p);
            last != lastUs_.end() && timeUs - last->second < qint64(bounds_.everyMs) * UsPerMs)
            return;
        lastUs_[p] = timeUs;
        set_.records[p].Value = rawValue;
        run_.Output().Row(TimeFields(timeUs) + ValueFields(run_.Output().CurrentFormat(), set_, p));
        ++printed_;
    }

    void Doubt()
    {
        if (printed_ == 0)
            return;
        const QVariantList since = TimeFields(std::max(inStepUs_, beganUs_));
        run_.Output().Complain(
            QStringLiteral("The line was out of step: samples since %1 may be those of other parameters.")
                .arg(since.front().toString()));
        if (run_.Output().CurrentFormat() != BatchOutput::Format::Json)
            return;
        run_.Output().Begin(QStringLiteral("doubt"), {{QStringLiteral("since"), QStringLiteral("Since")},
                                                      {QStringLiteral("since_us"), QStringLiteral("Since")}});
        run_.Output().Row(since);
        run_.Output().Begin(QStringLiteral("sample"), Columns());
    }

    BatchRun &run_;
    ParameterSet set_;
    Bounds bounds_;
    SampleInterest sampled_;
    QDateTime began_;
    qint64 beganUs_;
    bool isText_ = false;
    qint64 inStepUs_ = 0;          ///< the last moment at which the line was known to be in step
    std::map<int, qint64> lastUs_; ///< when the sample printed last was taken, by parameter
    int printed_ = 0;
};

} // namespace

void AddWatchOptions(QCommandLineParser &parser)
{
    parser.addOptions(
        {{QStringLiteral("count"), QStringLiteral("Ends after so many lines."), QStringLiteral("number")},
         {QStringLiteral("seconds"), QStringLiteral("Ends after so many seconds."), QStringLiteral("number")},
         {QStringLiteral("every"),
          QStringLiteral("Prints each parameter at most once in so many milliseconds."),
          QStringLiteral("milliseconds")}});
}

ExitCode RunWatch(BatchRun &run)
{
    const NamedParams wanted = FindAllParams(run.Arguments(), run.Eng().table);
    if (!wanted.failure.isEmpty())
        return run.UsageFailure(wanted.failure);
    const int most = TrendTimings().mostFast;
    if (wanted.params.empty() || int(wanted.params.size()) > most)
        return run.UsageFailure(QStringLiteral("Name 1 to %1 parameters to be watched.").arg(most));
    Bounds bounds;
    if (const QString failure = ReadBounds(run.Options(), bounds); !failure.isEmpty())
        return run.UsageFailure(failure);
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    for (const int p : wanted.params)
        if (p > run.Eng().table.LastParam)
            return run.UsageFailure(QStringLiteral("The drive has no parameter %1.").arg(p));
    ParameterSet set;
    if (const ExitCode code = ReadParams(run, {wanted.params.begin(), wanted.params.end()}, set);
        code != ExitCode::Done)
        return code;
    const Watch watch(run, set, wanted.params, bounds);
    const DriveLink &link = run.Eng().link;
    PumpWhile([&] { return !watch.IsOver() && !run.IsInterrupted() && link.PortOpen(); },
              bounds.seconds ? QDeadlineTimer(qint64(*bounds.seconds) * MsPerSecond)
                             : QDeadlineTimer(QDeadlineTimer::Forever));
    // Whoever set no end ends it by an interruption.
    const bool hasEnd = run.Options().isSet(QStringLiteral("count")) || bounds.seconds;
    if (run.IsInterrupted())
        return hasEnd ? ExitCode::Interrupted : ExitCode::Done;
    return link.PortOpen() || watch.IsOver() ? ExitCode::Done : ExitCode::NoLink;
}

} // namespace quorvik
