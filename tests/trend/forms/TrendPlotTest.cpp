#include "trend/forms/TrendPlot.h"

#include "desktop/ParameterMime.h"
#include "emulator/DriveEmulator.h"
#include "platform/TimeUnits.h"
#include "support/WindowTest.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotCanvas.h"

#include <QDropEvent>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace quorvik::testing
{

namespace
{

/** A plot of a kept recording: speed, current, a switch, over two seconds, the link gone from 0.8 s to 1.2 s.
 */
class TrendPlotTest : public ::testing::Test
{
protected:
    TrendPlotTest()
    {
        auto data = std::make_shared<TrendData>();
        data->head.title = QStringLiteral("Ramp <b>up</b>");
        data->head.setName = QStringLiteral("/sets/pump.svx");
        data->head.beganUtcMs = 1'700'000'000'000;
        for (const int p : {int(Param::VelFeedback), int(Param::Reference0), int(Param::AtZeroSpeed),
                            int(Param::CurrentFeedback)}) {
            TrendTrack &track = data->tracks.emplace_back(
                TrendTrack{{p, TrendPace::Fast, desk.table[p].Attributes, desk.table[p].Name}, {}});
            for (int ms = 0; ms <= 2000; ms += 10) {
                if (ms > 800 && ms < 1200)
                    continue;
                if (ms == 1200)
                    track.samples.Interrupt();
                track.samples.Append(
                    {.timeUs = ms * UsPerMs, .rawValue = p == Param::AtZeroSpeed ? int(ms < 500) : ms * 4});
            }
        }
        data->marks.push_back(
            {500 * UsPerMs, TrendMarkKind::Edit, int(Param::Reference0), QStringLiteral("0 % to 20 %")});
        view.Show(data);
        plot.resize(1000, 500);
        plot.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&plot));
        canvas.setFocus();
        canvas.Redraw();
    }

    const PlotCurve *CurveOf(int p) const
    {
        for (const PlotArea &area : plot.Canvas().Board().Areas())
            for (const auto &curve : area.curves)
                if (curve->Param() == p)
                    return curve.get();
        return nullptr;
    }
    void Drop(int p, const QPoint &position)
    {
        const std::unique_ptr<QMimeData> data(MakeParameterMime(p, QStringLiteral("a name")));
        QDragEnterEvent enter(position, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&plot, &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent event(position, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&plot, &event);
    }

    TestDesk desk;
    DriveEmulator emulator{desk.table};
    TrendRecorder recorder{desk.table, desk.document, desk.link, emulator};
    TrendView view{recorder};
    mutable TrendPlot plot{view};
    PlotCanvas &canvas{plot.Canvas()};
};

TEST_F(TrendPlotTest, BringsDataToCurvesScalesAndLanes)
{
    const PlotArea &area = canvas.Board().Areas().front();
    ASSERT_EQ(area.curves.size(), 3U);
    // Two of them are percents.
    ASSERT_EQ(
        area.scales.size(),
        desk.table[Param::CurrentFeedback].Attributes == desk.table[Param::VelFeedback].Attributes ? 1U : 2U);
    view.SetOwnScale(Param::Reference0, true);
    canvas.Redraw();
    EXPECT_EQ(canvas.Board().Areas().front().scales.size(), area.scales.size());
    const PlotCurve &speed = *CurveOf(Param::VelFeedback);
    EXPECT_TRUE(speed.HeightAt(700 * UsPerMs));
    EXPECT_FALSE(speed.HeightAt(1000 * UsPerMs)) << "a line across the gap";
    EXPECT_LT(*speed.HeightAt(700 * UsPerMs), *speed.HeightAt(100 * UsPerMs)) << "more is higher up";

    const auto &lanes = canvas.Board().Areas().front().lanes;
    ASSERT_EQ(lanes.size(), 1U);
    std::vector<std::tuple<qint64, qint64, int>> bands;
    for (const PlotLane::Band &band : lanes.front()->Bands())
        bands.emplace_back(band.fromUs, band.toUs, band.rawValue);
    EXPECT_EQ(bands, (std::vector<std::tuple<qint64, qint64, int>>{{0, 500 * UsPerMs, 1},
                                                                   {500 * UsPerMs, 800 * UsPerMs, 0},
                                                                   {1200 * UsPerMs, 2000 * UsPerMs, 0}}));
    EXPECT_NE(lanes.front()->ShadeOf(0), lanes.front()->ShadeOf(1));
}

TEST_F(TrendPlotTest, MovesCursorsByKeysAndMouse)
{
    const double pixelUs = double(view.ToUs() - view.FromUs()) / canvas.Board().Frames().width();
    QTest::keyClick(&canvas, Qt::Key_A);
    ASSERT_TRUE(view.Cursor(0));
    const qint64 beganUs = *view.Cursor(0);
    QTest::keyClick(&canvas, Qt::Key_Right);
    EXPECT_NEAR(double(*view.Cursor(0) - beganUs), pixelUs, 2);
    QTest::keyClick(&canvas, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(*view.Cursor(0) % (10 * UsPerMs), 0) << "a sample's own time";
    QTest::keyClick(&canvas, Qt::Key_End);
    EXPECT_EQ(view.Cursor(0), view.ToUs());

    const QRect frames = canvas.Board().Frames();
    QTest::mouseClick(&canvas, Qt::LeftButton, Qt::ShiftModifier, frames.center());
    ASSERT_TRUE(view.Cursor(1));
    EXPECT_NEAR(double(*view.Cursor(1)), double(view.FromUs() + view.ToUs()) / 2, 2 * pixelUs);
    QTest::keyClick(&canvas, Qt::Key_Left);
    EXPECT_EQ(view.Cursor(0), view.ToUs()) << "the other one is moved now";
    EXPECT_TRUE(canvas.accessibleDescription().contains(QStringLiteral("Cursor B at")))
        << qPrintable(canvas.accessibleDescription());

    const qint64 spanUs = view.ToUs() - view.FromUs();
    QTest::mousePress(&canvas, Qt::LeftButton, {}, frames.center() + QPoint(-200, 0));
    for (const int x : {-150, -100}) {
        const QPointF at = frames.center() + QPoint(x, 0);
        QMouseEvent move(QEvent::MouseMove, at, canvas.mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&canvas, &move);
    }
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, frames.center() + QPoint(-100, 0));
    EXPECT_NEAR(double(view.ToUs() - view.FromUs()), 100 * pixelUs, 3 * pixelUs);
    QTest::keyClick(&canvas, Qt::Key_0);
    EXPECT_EQ(view.ToUs() - view.FromUs(), spanUs);
}

TEST_F(TrendPlotTest, TakesParametersByDropping)
{
    QSignalSpy dropped(&plot, &TrendPlot::ParameterDropped);
    Drop(Param::VelFeedback, {400, plot.height() - 3});
    EXPECT_EQ(view.CurveOf(Param::VelFeedback)->plot, 1) << "below the last plot is a new one";
    Drop(Param::TorqueReference, canvas.Board().RectOf(0).center());
    ASSERT_EQ(dropped.size(), 1);
    EXPECT_EQ(dropped.first().at(0).toInt(), Param::TorqueReference);
    EXPECT_EQ(dropped.first().at(1).toInt(), 0);
}

TEST_F(TrendPlotTest, WritesThePictureInEachKind)
{
    view.SetCursor(0, 100 * UsPerMs);
    view.SetCursor(1, 350 * UsPerMs);
    const auto path = [&](const char *name) { return desk.folder.filePath(QString::fromLatin1(name)); };
    EXPECT_TRUE(plot.Export(path("a.png")).isEmpty());
    EXPECT_EQ(QImage(path("a.png")).width() % 2, 0);
    EXPECT_TRUE(plot.Export(path("a.svg")).isEmpty());
    QFile svg(path("a.svg"));
    EXPECT_TRUE(svg.open(QIODevice::ReadOnly) && svg.readAll().contains("Ramp &lt;b&gt;up"));
    ASSERT_TRUE(plot.Export(path("a.pdf")).isEmpty());
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"),
                 {QStringLiteral("-layout"), path("a.pdf"), QStringLiteral("-")});
    ASSERT_TRUE(reader.waitForFinished());
    const QString text = QString::fromUtf8(reader.readAllStandardOutput());
    for (const char *const wanted : {"Ramp <b>up</b>", "pump.svx", "(193) Vel Feedback", "4.00 %",
                                     "A: 0.1000 s", "A to B: 0.2500 s", "Seconds from the beginning"})
        EXPECT_TRUE(text.contains(QString::fromLatin1(wanted))) << wanted << '\n' << qPrintable(text);
    EXPECT_FALSE(plot.Export(path("none/a.png")).isEmpty());
    EXPECT_FALSE(plot.Export(path("a.bmp")).isEmpty());
}

} // namespace

} // namespace quorvik::testing
