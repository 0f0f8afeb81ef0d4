#include "trend/forms/FormTrend.h"

#include "model/ParameterNumbers.h"
#include "support/WindowTest.h"
#include "trend/forms/ScriptedTrend.h"

#include <QDoubleSpinBox>
#include <QFile>
#include <QMenu>
#include <QTabWidget>
#include <QTableView>

namespace quorvik::testing
{

namespace
{

using ::testing::HasSubstr;

class FormTrendTest : public WindowTest
{
protected:
    FormTrendTest() { form = Show<FormTrend>(trend); }

    void AddByTyping(const Name &text)
    {
        Type("TextAddChannel", text);
        QTest::keyClick(Find<QLineEdit>("TextAddChannel"), Qt::Key_Return);
        // What was typed is taken over once the list of names has closed.
        QTest::qWait(0);
    }
    std::string Cell(int row, int column) const
    {
        const QAbstractItemModel *model = Find<QTableView>("TableChannels")->model();
        return model->index(row, column).data().toString().toStdString();
    }
    /** Chooses the entry of a menu by its caption. */
    void Choose(const Name &menu, const Name &caption) const
    {
        auto *shown = Find<QMenu>(menu);
        Q_EMIT shown->aboutToShow();
        for (QAction *action : shown->actions())
            if (action->text() == caption)
                return action->trigger();
        ADD_FAILURE() << caption.toStdString();
    }
    /** The settings of this window are used by a program that starts anew. */
    void StartAnew()
    {
        Close();
        trend.recorder.SetChannels({});
        trend.recorder.Arm({});
        form = Show<FormTrend>(trend);
    }

    static constexpr int Speed = Param::VelFeedback;
    static constexpr int Demand = Param::VelocityDemand;

    ScriptedTrend trend{desk};
    FormTrend *form = nullptr;
};

TEST_F(FormTrendTest, RecordsWhatWasAddedByNumberAndByNameAndExportsIt)
{
    AddByTyping(Name(QString::number(Speed)));
    AddByTyping("vel err");
    AddByTyping("no such thing");
    EXPECT_THAT(Text("LabelTold"), HasSubstr("\"no such thing\""));
    Press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(trend.recorder.IsRunning());
    trend.Sample(Speed, {1000, 2050});
    Tick();
    EXPECT_THAT(Text("LabelState"), HasSubstr("2 channels off line"));
    EXPECT_EQ(Cell(0, 1), "20.50 %");
    form->View().SetCursor(0, trend.nowUs - 100000);
    form->View().SetCursor(1, trend.nowUs);
    EXPECT_EQ(Cell(0, 4), "10.50 %");

    const QString path = desk.folder.filePath(QStringLiteral("out.csv"));
    form->ChooseExport = [&](const QString &, const QString &) { return path; };
    Find<QAction>("mnuTrendExportCSV")->trigger();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_THAT(file.readAll().toStdString(), HasSubstr(",2050,20.50"));

    Close();
    EXPECT_FALSE(trend.recorder.IsRunning());
    ASSERT_TRUE(trend.store.Flush(5000));
    EXPECT_EQ(trend.store.List().size(), 1U);
}

TEST_F(FormTrendTest, ShowsAndKeepsWhatATriggerCaught)
{
    form->AddChannel(Speed);
    Click("CommandTrigger");
    Type("TextLevel", "50");
    Type("TextBand", "1");
    Find<QDoubleSpinBox>("SpinLength")->setValue(1);
    Click("CommandArm");
    EXPECT_THAT(Text("LabelState"), HasSubstr("rises through 50.00 %"));
    trend.Sample(Speed, {1000, 4000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000});
    ASSERT_TRUE(QTest::qWaitFor([&] { return form->View().IsOther(); }));
    EXPECT_TRUE(Checked("CommandCapture(0)"));
    EXPECT_EQ(form->View().Shown().triggerUs, std::optional<qint64>(1'250'000));
    ASSERT_TRUE(trend.store.Flush(5000));
    const auto kept = trend.store.List();
    ASSERT_EQ(std::ranges::count(kept, RecordingKind::Capture, &StoredRecording::kind), 1);
    Click("CommandLive");
    EXPECT_FALSE(Visible("CommandLive"));
    EXPECT_EQ(form->View().ToUs() - form->View().FromUs(), 10'000'000);
    const auto stored = std::ranges::find(kept, RecordingKind::Capture, &StoredRecording::kind);
    form->OpenRecording(stored->path);
    EXPECT_THAT(Text("LabelState"), HasSubstr("rises through 50.00 %"));
}

TEST_F(FormTrendTest, RefusesATriggerThatCannotBe)
{
    Click("CommandTrigger");
    Click("CommandArm");
    EXPECT_THAT(Text("LabelTold"), HasSubstr("Add a channel"));
    form->AddChannel(Speed);
    struct {
        const char *level;
        const char *band;
        const char *told;
    } const cases[] = {{"fast", "1", "level"}, {"200.01", "1", "-200.00 % to 200.00 %"}, {"5", "-1", "0 %"}};
    for (const auto &[level, band, refusal] : cases) {
        Type("TextLevel", level);
        Type("TextBand", band);
        Click("CommandArm");
        EXPECT_THAT(Text("LabelTold"), HasSubstr(refusal)) << level;
        EXPECT_FALSE(trend.recorder.IsWaiting());
    }
}

TEST_F(FormTrendTest, KeepsChannelsAndTriggerForTheNextTime)
{
    form->AddChannel(Demand);
    form->AddChannel(Speed);
    form->View().Move(Speed, 1);
    form->View().SetOwnScale(Speed, true);
    trend.recorder.AddChannel(Speed, TrendPace::Slow);
    Click("CommandTrigger");
    Pick("ComboTriggerSignal", 1);
    Type("TextLevel", "12.5");
    StartAnew();
    ASSERT_EQ(trend.recorder.Data().tracks.size(), 2U);
    EXPECT_EQ(trend.recorder.Data().TrackOf(Speed)->channel.pace, TrendPace::Slow);
    EXPECT_EQ(form->View().CurveOf(Speed)->plot, 1);
    EXPECT_TRUE(form->View().CurveOf(Speed)->hasOwnScale);
    Click("CommandTrigger");
    EXPECT_EQ(Text("TextLevel"), "12.50");
    EXPECT_EQ(Find<QComboBox>("ComboTriggerSignal")->currentData().toInt(), Speed);
}

TEST_F(FormTrendTest, ATemplateOfTheUsersComesBackAsItWasKept)
{
    form->AddChannel(Demand);
    InModal([&] { Choose("MenuTemplates", "&Save This Arrangement..."); },
            [](QWidget *dialog) {
                const Controls controls(dialog);
                controls.Type("TextTitle", "R&D | 1");
                controls.Click("CommandOK");
            });
    Choose("MenuTemplates", "Speed loop step");
    EXPECT_EQ(trend.recorder.Data().tracks.size(), 4U);
    Choose("MenuTemplates", "R&&D | 1");
    ASSERT_EQ(trend.recorder.Data().tracks.size(), 1U);
    EXPECT_EQ(trend.recorder.Data().tracks[0].channel.param, Demand);
}

TEST_F(FormTrendTest, TheLegendIsWorkedByKeys)
{
    form->AddChannel(Demand);
    form->AddChannel(Speed);
    Find("TableChannels")->setFocus();
    Press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(form->View().CurveOf(Speed)->plot, 1);
    Press(Qt::Key_Space);
    EXPECT_FALSE(form->View().CurveOf(Speed)->isVisible);
    Press(Qt::Key_Delete);
    EXPECT_EQ(trend.recorder.Data().TrackOf(Speed), nullptr);
    Press(Qt::Key_Delete);
    EXPECT_TRUE(trend.recorder.Data().tracks.empty());
}

} // namespace

} // namespace quorvik::testing
