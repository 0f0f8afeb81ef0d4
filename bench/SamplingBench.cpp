// How much of what the line can carry a recording gets, alone and beside a window that is polled, and how
// soon an entry leaves for the drive meanwhile. Against the simulated drive on a paced line.

#include "BenchDrive.h"
#include "Figures.h"

#include "link/DriveLink.h"
#include "link/SampleInterest.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "platform/Clock.h"
#include "platform/Waiting.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <algorithm>
#include <set>
#include <vector>

using namespace quorvik;

namespace
{

constexpr double ByteUs = 10e6 / 38400;
constexpr double AloneBytes = 11;    ///< request, reply, end of run
constexpr double NeighbourBytes = 6; ///< next one, reply
constexpr int MeasureMs = 3000;
constexpr int Edits = 200;
constexpr double UsPerMs = 1000;

class Bench
{
public:
    Bench()
    {
        if (const QString failure =
                SettingsFile(table_, document_).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE));
            !failure.isEmpty())
            Fail(failure);
        table_.ResetToDefaults();
        link_.MSComm1.DeviceOf = [this](int) { return drive_.Link(); };
        if (const QString failure = link_.Open(); !failure.isEmpty())
            Fail(failure);
        if (!PumpWhile([this] { return link_.PropMax == 0; }, QDeadlineTimer(MeasureMs)) || !link_.TakeSize())
            Fail(QStringLiteral("the link did not come up"));
        QObject::connect(&link_, &DriveLink::Confirmed, &link_, [this](int p) {
            samples_ += sampled_.Params().contains(p) ? 1 : 0;
            if (p == lastOfScan_) {
                const qint64 now = MicrosecondsUp();
                longestScanUs_ = std::max(longestScanUs_, scanEndedUs_ > 0 ? now - scanEndedUs_ : 0);
                scanEndedUs_ = now;
            }
        });
        QObject::connect(&link_, &DriveLink::Sent, &link_, [this](const QByteArray &bytes) {
            if (bytes.size() > 2 && bytes.at(1) == 1)
                writeSentUs_ = MicrosecondsUp();
        });
    }

    /** Samples a second, of what the line could carry of these channels and nothing else. */
    double Ratio(const std::set<int> &params, const std::set<int> &window = {})
    {
        for (const int p : window)
            table_.AddReadInterest(p);
        sampled_.Set(params);
        Pump(2 * link_.Timings().scanPause);
        samples_ = 0;
        longestScanUs_ = scanEndedUs_ = 0;
        lastOfScan_ = window.empty() ? -1 : *window.rbegin();
        const qint64 began = MicrosecondsUp();
        Pump(MeasureMs);
        const double us = double(MicrosecondsUp() - began);
        const double ratio = samples_ * WireUs(params) / double(params.size()) / us;
        for (const int p : window)
            table_.RemoveReadInterest(p);
        sampled_.Set({});
        return ratio;
    }
    /** From the end of one scan to that of the next, at worst. */
    double LongestScanMs() const { return double(longestScanUs_) / UsPerMs; }

    /** From an entry to its first byte on the line, in rounds over the channels, at worst of 99 in 100: one
     * that falls on a moment that the machine keeps for itself is not the program's. */
    double EditRounds(const std::set<int> &params)
    {
        sampled_.Set(params);
        Pump(2 * link_.Timings().scanPause);
        std::vector<double> waits;
        for (int edit = 0; edit < Edits; ++edit) {
            Pump(20 + edit % 7);
            writeSentUs_ = 0;
            const qint64 entered = MicrosecondsUp();
            table_.SetParamValue(Param::Reference0, edit % 100, true, false);
            if (!PumpWhile([this] { return writeSentUs_ == 0; }, QDeadlineTimer(MeasureMs)))
                Fail(QStringLiteral("an entry was not sent"));
            waits.push_back(double(writeSentUs_ - entered) / WireUs(params));
        }
        sampled_.Set({});
        std::ranges::sort(waits);
        return waits[std::size_t(Edits * 99 / 100)];
    }

private:
    static void Pump(int milliseconds)
    {
        PumpWhile([] { return true; }, QDeadlineTimer(milliseconds, Qt::PreciseTimer));
    }

    /** What a round over the channels takes on the line. */
    static double WireUs(const std::set<int> &params)
    {
        double bytes = 0;
        int last = -2;
        for (const int p : params) {
            bytes += p == last + 1 ? NeighbourBytes : AloneBytes;
            last = p;
        }
        return bytes * ByteUs;
    }

    Drive drive_{38400};
    ParameterTable table_;
    Document document_{table_};
    DriveLink link_{table_};
    SampleInterest sampled_{link_};
    double samples_ = 0;
    int lastOfScan_ = -1;
    qint64 scanEndedUs_ = 0;
    qint64 longestScanUs_ = 0;
    qint64 writeSentUs_ = 0;
};

} // namespace

int main(int argc, char **argv)
{
    StayOnOneCore();
    const QCoreApplication application(argc, argv);
    Bench bench;
    const std::set<int> one{Param::VelFeedback};
    const std::set<int> four{Param::VelFeedback, Param::VelocityDemand, Param::Reference0, Param::DriveState};
    std::set<int> eight;
    std::set<int> window;
    for (int p = 0; p < 8; ++p)
        eight.insert(Param::Reference0 + p);
    // Each stands alone, as the boxes of a drawing mostly do.
    for (int p = 0; p < 26; ++p)
        window.insert(2 + 3 * p);
    bool kept = PrintAtLeast("sampling-one-channel", bench.Ratio(one), "of the wire", 0.95);
    kept &= PrintAtLeast("sampling-four-channels", bench.Ratio(four), "of the wire", 0.95);
    kept &= PrintAtLeast("sampling-eight-neighbours", bench.Ratio(eight), "of the wire", 0.95);
    kept &= PrintAtLeast("sampling-beside-26-boxes", bench.Ratio(four, window), "of the wire", 0.7);
    kept &= Print("scan-of-26-boxes-beside-sampling", bench.LongestScanMs(), "ms", 1000);
    kept &= Print("edit-beside-sampling", bench.EditRounds(four), "rounds", 1);
    return kept ? 0 : 1;
}
