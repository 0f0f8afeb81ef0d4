#include "trend/TrendView.h"

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "settings/SetFixture.h"
#include "trend/TrendFixture.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendTemplates.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

using ::testing::ElementsAre;

class TrendViewTest : public SetTest
{
protected:
    void Go(qint64 us)
    {
        nowUs += us;
        Q_EMIT emulator.Emulated();
        view.Advance();
    }
    std::vector<int> Plots() const
    {
        std::vector<int> plots;
        for (const TrendCurve &curve : view.Curves())
            plots.push_back(curve.plot);
        return plots;
    }

    qint64 nowUs = 1'000'000;
    DriveLink link{table};
    DriveEmulator emulator{table};
    TrendRecorder recorder{table, document, link, emulator, {}, [this] { return nowUs; }};
    TrendView view{recorder};
};

TEST_F(TrendViewTest, FollowsUntilTheUserLooksElsewhere)
{
    recorder.AddChannel(Param::VelFeedback, TrendPace::Slow);
    recorder.Start();
    const qint64 span = view.ToUs() - view.FromUs();
    Go(500'000);
    Go(500'000);
    EXPECT_EQ(view.ToUs(), nowUs);
    view.Zoom(0.5, 0);
    EXPECT_EQ(view.ToUs() - view.FromUs(), span / 2) << "the right edge stays";
    Go(500'000);
    EXPECT_EQ(view.ToUs(), nowUs);
    view.Scroll(-0.1);
    const qint64 from = view.FromUs();
    Go(500'000);
    EXPECT_EQ(view.FromUs(), from);

    view.Freeze(true);
    const qint64 last = view.Shown().LastUs();
    Go(500'000);
    EXPECT_EQ(view.Shown().LastUs(), last);
    EXPECT_EQ(view.Live().LastUs(), nowUs) << "it goes on being recorded";
    view.SetFollow(true);
    EXPECT_EQ(view.ToUs(), nowUs);
}

TEST_F(TrendViewTest, PlotsHaveNoHolesAndOverlaysMeetAtTheTrigger)
{
    for (const int p : TrendTemplates().front().params)
        recorder.AddChannel(p, TrendPace::Slow);
    EXPECT_THAT(Plots(), ElementsAre(0, 0, 0, 0));
    view.Move(Param::VelFeedback, 9);
    view.Move(Param::VelError, 9);
    EXPECT_THAT(Plots(), ElementsAre(0, 1, 2, 0));
    view.Move(Param::VelFeedback, 0);
    EXPECT_THAT(Plots(), ElementsAre(0, 0, 1, 0));
    recorder.RemoveChannel(Param::VelError);
    EXPECT_EQ(view.PlotCount(), 1);

    const auto with = [](qint64 fromSeconds, qint64 triggerUs) {
        SampledSignal signal;
        signal.fromSeconds = double(fromSeconds);
        signal.toSeconds = double(fromSeconds) + 2;
        auto data = std::make_shared<TrendData>();
        data->tracks.push_back(signal.Track([](double) { return 1; }));
        data->triggerUs = triggerUs;
        return data;
    };
    view.AddOverlay(with(100, 101'000'000), QStringLiteral("before"));
    view.Show(with(500, 500'500'000));
    EXPECT_EQ(view.Overlays().front().shiftUs, 399'500'000);
    EXPECT_LE(view.FromUs(), 499'510'000) << "all of both is seen";
    EXPECT_GE(view.ToUs(), 501'990'000);
}

} // namespace quorvik::testing
