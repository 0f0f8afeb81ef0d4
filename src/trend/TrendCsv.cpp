#include "trend/TrendCsv.h"

#include "model/Conversions.h"
#include "model/ShownText.h"
#include "platform/TimeUnits.h"
#include "settings/Report.h"

#include <QDateTime>
#include <QIODevice>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int SecondDecimals = 6;
constexpr int MsDecimals = 3;
constexpr qsizetype BlockBytes = 1 << 18;

QByteArray SecondsText(qint64 us)
{
    const qint64 size = std::abs(us);
    QByteArray text = us < 0 ? "-" : "";
    text += QByteArray::number(size / UsPerSecond) + '.';
    return text + QByteArray::number(size % UsPerSecond).rightJustified(SecondDecimals, '0');
}

/** Takes samples and marks out of a recording in the order of time. */
class Lines
{
public:
    explicit Lines(const TrendData &data)
        : data_(data)
        , next_(data.tracks.size())
        , zeroUs_(data.triggerUs.value_or(data.head.beganUs))
    {
        for (const TrendTrack &track : data.tracks)
            total_ += track.samples.Size();
    }

    double Part() const { return total_ == 0 ? 1 : double(taken_) / double(total_); }
    QByteArray Head() const
    {
        QByteArray line = "Seconds,Local Time,Asked,Answered,After Gap";
        for (const TrendTrack &track : data_.tracks) {
            const TrendChannel &channel = track.channel;
            const QString name = QStringLiteral("(%1) %2").arg(channel.param).arg(channel.name);
            const QString unit = UnitText(channel.attributes);
            line += ',' + CsvField(name + QStringLiteral(", raw")) + ',' +
                    CsvField(unit.isEmpty() ? name : QStringLiteral("%1, %2").arg(name, unit));
        }
        return line + ",Mark\r\n";
    }
    /** Empty after the last one. */
    QByteArray Next()
    {
        const TrendSample *first = nullptr;
        for (std::size_t i = 0; i < next_.size(); ++i)
            if (const TrendSample *const sample = At(i); sample && (!first || sample->timeUs < first->timeUs))
                first = sample;
        const bool isMark =
            nextMark_ < data_.marks.size() && (!first || data_.marks[nextMark_].timeUs < first->timeUs);
        if (isMark)
            return MarkLine(data_.marks[nextMark_++]);
        return first ? SampleLine(*first) : QByteArray();
    }

private:
    const TrendSample *At(std::size_t index) const
    {
        const SampleRing &samples = data_.tracks[index].samples;
        return next_[index] < samples.Size() ? &samples[next_[index]] : nullptr;
    }
    QByteArray Beginning(qint64 timeUs)
    {
        // As the clock on the wall said, whatever zone the file is read in.
        const qint64 localMs = data_.UtcMsAt(timeUs) + data_.head.offsetMinutes * MsPerMinute;
        // A calendar takes longer than all the rest of a line.
        if (std::exchange(second_, localMs / MsPerSecond) != localMs / MsPerSecond || secondText_.isEmpty())
            secondText_ = QDateTime::fromMSecsSinceEpoch(localMs, Qt::UTC)
                              .toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"))
                              .toLatin1();
        return SecondsText(timeUs - zeroUs_) + ',' + secondText_ + '.' +
               QByteArray::number(localMs % MsPerSecond).rightJustified(MsDecimals, '0') + ',';
    }
    QByteArray MarkLine(const TrendMark &mark)
    {
        return Beginning(mark.timeUs) + ",," + QByteArray(2 * qsizetype(next_.size()), ',') + ',' +
               CsvField(mark.text) + "\r\n";
    }
    QByteArray SampleLine(const TrendSample first)
    {
        const qint64 askedUs = first.timeUs - first.spanUs / 2;
        QByteArray line = Beginning(first.timeUs) + SecondsText(askedUs - zeroUs_) + ',' +
                          SecondsText(askedUs + first.spanUs - zeroUs_) + (first.isAfterGap ? ",1" : ",");
        for (std::size_t i = 0; i < next_.size(); ++i) {
            const TrendSample *const sample = At(i);
            const bool isOfLine = sample && sample->timeUs == first.timeUs &&
                                  sample->spanUs == first.spanUs && sample->isAfterGap == first.isAfterGap;
            line += isOfLine ? Cells(data_.tracks[i].channel, sample->rawValue) : QByteArray(",,");
            next_[i] += isOfLine ? 1 : 0;
            taken_ += isOfLine ? 1 : 0;
        }
        return line + ",\r\n";
    }
    static QByteArray Cells(const TrendChannel &channel, std::int32_t rawValue)
    {
        const bool isText = IsEnumerated(TypeCode(channel.attributes));
        return ',' + QByteArray::number(rawValue) + ',' +
               (isText ? CsvField(ShownText(rawValue, channel.attributes))
                       : NumberText(rawValue, channel.attributes).toLatin1());
    }

    const TrendData &data_;
    std::vector<std::size_t> next_; ///< sample of each track
    std::size_t nextMark_ = 0;
    std::size_t taken_ = 0;
    std::size_t total_ = 0;
    qint64 zeroUs_ = 0;
    qint64 second_ = -1; ///< of the text below
    QByteArray secondText_;
};

} // namespace

QString WriteTrendCsv(const TrendData &data, QIODevice &device, const std::function<bool(double part)> &goOn)
{
    Lines lines(data);
    QByteArray block = lines.Head();
    while (true) {
        const QByteArray line = lines.Next();
        block += line;
        if (!line.isEmpty() && block.size() < BlockBytes)
            continue;
        if (device.write(block) != block.size())
            return QStringLiteral("The recording cannot be written: %1.").arg(device.errorString());
        if (line.isEmpty())
            return {};
        block.clear();
        if (goOn && !goOn(lines.Part()))
            return QStringLiteral("The writing was ended before all was written.");
    }
}

} // namespace quorvik
