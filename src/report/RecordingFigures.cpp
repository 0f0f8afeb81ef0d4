#include "report/RecordingFigures.h"

#include "model/ParameterNumbers.h"
#include "model/PathFunctions.h"
#include "operations/StepTest.h"
#include "platform/TimeUnits.h"
#include "trend/StepTexts.h"
#include "trend/TrendStore.h"

#include <QDateTime>
#include <algorithm>
#include <optional>

namespace quorvik
{

namespace
{

/** Whether a loop's demand is another one at the end of a recording than before a moment. */
bool HasMoved(const TrendData &cut, TunedLoop loop, qint64 stepUs)
{
    const TrendTrack *const demand = cut.TrackOf(StepTest::SetpointOf(loop));
    if (demand == nullptr || demand->samples.IsEmpty())
        return false;
    const TrendSample *const before = demand->samples.At(stepUs - 1);
    return before != nullptr && before->rawValue != demand->samples.Last().rawValue;
}

/** The loop that a change is a step of; none for a change that is no step. */
std::optional<TunedLoop> LoopOf(const TrendMark &mark, const TrendData &cut, std::optional<qint64> alignedUs)
{
    if ((mark.param >= Param::Reference0 && mark.param <= Param::Reference3) ||
        mark.param == Param::SetpointB || mark.param == Param::SetpointC)
        return TunedLoop::Velocity;
    if (mark.param == Param::TorqueReference)
        return TunedLoop::Current;
    if (alignedUs != mark.timeUs)
        return std::nullopt;
    for (const TunedLoop loop : {TunedLoop::Velocity, TunedLoop::Current})
        if (HasMoved(cut, loop, mark.timeUs))
            return loop;
    return std::nullopt;
}

/** When a change took effect: a recording that was aligned at it knows better than its mark, which stands
 * where the drive's answer came. */
qint64 StepUsOf(const TrendMark &mark, std::optional<qint64> alignedUs)
{
    constexpr qint64 nearUs = 250'000;
    return alignedUs && *alignedUs <= mark.timeUs && mark.timeUs - *alignedUs <= nearUs ? *alignedUs
                                                                                        : mark.timeUs;
}

QString LoopText(TunedLoop loop)
{
    return loop == TunedLoop::Velocity ? QStringLiteral("Velocity") : QStringLiteral("Current");
}

QString BeganText(const TrendHead &head)
{
    return QDateTime::fromMSecsSinceEpoch(head.beganUtcMs, Qt::OffsetFromUTC,
                                          head.offsetMinutes * SecondsPerMinute)
        .toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

/** What the user has called it, else what was stepped: the text of a step's mark begins with its parameter.
 */
QString TitleOf(const TrendData &data, const CommissioningTable &steps)
{
    if (!data.head.title.isEmpty())
        return data.head.title;
    return steps.rows.isEmpty()
               ? QStringLiteral("Recording")
               : QStringLiteral("Step of ") + steps.rows.first().first().section(QStringLiteral(": "), 0, 0);
}

} // namespace

CommissioningTable StepsIn(const TrendData &data)
{
    CommissioningTable table{{QStringLiteral("Step"), QStringLiteral("Loop")}, {}, {}};
    table.heads += StepFigureCaptions();
    std::vector<const TrendMark *> edits;
    for (const TrendMark &mark : data.marks)
        if (mark.kind == TrendMarkKind::Edit)
            edits.push_back(&mark);
    QStringList failures;
    for (std::size_t i = 0; i < edits.size(); ++i) {
        const TrendMark &mark = *edits[i];
        const qint64 fromUs = i > 0 ? edits[i - 1]->timeUs : data.FirstUs();
        const qint64 endUs = i + 1 < edits.size() ? edits[i + 1]->timeUs : data.LastUs();
        const TrendData cut = data.Cut(fromUs, endUs);
        const std::optional<TunedLoop> loop = LoopOf(mark, cut, data.triggerUs);
        if (!loop || cut.TrackOf(StepTest::FeedbackOf(*loop)) == nullptr)
            continue;
        const StepResult result = StepTest::AnswerIn(cut, *loop, StepUsOf(mark, data.triggerUs), endUs);
        table.rows.append(QStringList{mark.text, LoopText(*loop)} + StepFigureTexts(result));
        failures << SentenceOf(result.failure);
    }
    failures.removeAll(QString());
    failures.removeDuplicates();
    table.remark = table.rows.isEmpty()
                       ? QStringLiteral("It holds no step of a reference whose answer was recorded.")
                       : failures.join(u' ');
    return table;
}

CommissioningRecording RecordingOf(TrendStore &store, const QString &path)
{
    QString failure;
    const TrendDataPtr data = store.Load(path, &failure);
    if (!data)
        return {path, FileTitle(path), {{}, {}, failure}};
    CommissioningTable steps = StepsIn(*data);
    return {path, TitleOf(*data, steps) + QStringLiteral(", ") + BeganText(data->head), std::move(steps)};
}

} // namespace quorvik
