#include "trend/forms/TuningPage.h"
#include "emulator/DriveEmulator.h"
#include "operations/DriveOperations.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "settings/SettingsFile.h"
#include "support/OnLine.h"
#include "support/WindowTest.h"
#include "trend/TrendRecorder.h"
#include "trend/forms/TrendHost.h"
#include "trend/forms/TryTable.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QLineEdit>

namespace quorvik::testing
{

/** The page beside another field in a window, over engines of its own. */
class TuningPageTest : public WindowTest, private TrendHost
{
protected:
    class Window : public Form
    {
    public:
        Window(Desk &desk, TrendHost &host)
            : Form(desk, QStringLiteral("FormTuning"), QStringLiteral("Tuning"), {})
            , page(new TuningPage(desk, host, this))
            , beside(new QLineEdit(this))
        {
            auto *layout = new QHBoxLayout(this);
            layout->addWidget(beside);
            layout->addWidget(page);
        }
        TuningPage *page;
        QLineEdit *beside;
    };

    void GoOnLine() { line.emplace(desk.link); }
    /** An answer to a change that another window makes; without a line it has no figures. */
    void RecordChange(int p)
    {
        Click("CommandRecordNext");
        ASSERT_EQ(steps.State(), StepState::Listening);
        desk.table.SetParamValue(p, desk.table.Value(p) + 1, true, false);
        Q_EMIT desk.link.WriteTaken(p);
    }

    TrendRecorder &Recorder() override { return recorder; }
    TrendStore &Store() override { std::abort(); }
    TripTrend &Trips() override { std::abort(); }
    StepTest &Steps() override { return steps; }

    DriveEmulator emulator{desk.table};
    SettingsFile file{desk.table, desk.document};
    SaveCommands saving{desk.document, desk.asker, file, desk.folder.path()};
    Snapshots snapshots{desk.table, desk.link, desk.asker};
    DriveOperations drive{desk.table, desk.document, desk.link, desk.rules,
                          saving,     desk.asker,    snapshots, desk.guards};
    TrendRecorder recorder{desk.table, desk.document, desk.link, emulator};
    StepTest steps{desk.table, desk.link, desk.states, recorder, drive, desk.asker};
    std::optional<OnLine> line;
    Window *form = Show<Window>(static_cast<TrendHost &>(*this));
};

TEST_F(TuningPageTest, EditsTheGainsThatAreInForce)
{
    const auto edited = [this](int field) {
        int param = -1;
        desk.asker.OnEditValue = [&param](int p, std::int32_t) {
            param = p;
            return std::nullopt;
        };
        Click(ControlName("TextGain", field));
        return param;
    };
    EXPECT_EQ(edited(0), Param::PropGainA);
    EXPECT_EQ(edited(1), Param::IntegralTimeA);
    P(Param::GainSelect) = 1;
    form->page->hide();
    form->page->show();
    EXPECT_EQ(edited(0), Param::PropGainB);
    EXPECT_EQ(edited(2), Param::OvershootGainB);
    Pick("ComboLoop", 1);
    EXPECT_EQ(edited(1), Param::IIntegralTime);
    EXPECT_FALSE(Visible("TextGain(2)"));
}

TEST_F(TuningPageTest, EndsWhatIsUnderWayByEscapeAndWhenItIsLeft)
{
    GoOnLine();
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"Esc in another field", [this] { QTest::keyClick(form->beside, Qt::Key_Escape); }},
        {"Esc on the page", [this] { QTest::keyClick(Find("ComboLoop"), Qt::Key_Escape); }},
        {"left", [this] { form->page->hide(); }},
        {"closed", [this] { form->close(); }},
    };
    for (const auto &[title, ends] : ways) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, title);
        form->page->show();
        Click("CommandRecordNext");
        ASSERT_EQ(steps.State(), StepState::Listening);
        ends();
        EXPECT_EQ(steps.State(), StepState::Idle);
    }
}

TEST_F(TuningPageTest, RecordsTheNextChangeButNotThatOfAGain)
{
    GoOnLine();
    RecordChange(Param::PropGainA);
    EXPECT_EQ(steps.State(), StepState::Listening);
    steps.Restore();
    RecordChange(Param::Reference1);
    EXPECT_EQ(steps.State(), StepState::Holding);
    Click("CommandRestore");
    ASSERT_EQ(steps.Tries().size(), 1U);

    QString title;
    TrendDataPtr overlay;
    QObject::connect(form->page, &TuningPage::OverlayWanted,
                     [&](const TrendDataPtr &data, const QString &text) {
                         overlay = data;
                         title = text;
                     });
    Find<TryTable>("TableTries")->selectColumn(0);
    EXPECT_EQ(overlay, steps.Tries().front().data);
    EXPECT_TRUE(title.startsWith(QStringLiteral("Velocity loop, "))) << qPrintable(title);
    Click("CommandCopyTries");
    EXPECT_TRUE(QApplication::clipboard()->text().contains(
        QStringLiteral("Proportional\t10.01 %\nIntegral\t0.500 Sec\n")))
        << qPrintable(QApplication::clipboard()->text());
}

TEST_F(TuningPageTest, OffersASizeWithinTheReferenceAndNoStepOffLine)
{
    EXPECT_FALSE(Enabled("CommandStep") || Enabled("CommandRestore") || Enabled("CommandRecordNext"));
    for (int p = Param::Reference0; const int source = desk.table.FindLinkSource(p);)
        P(source) = 0;
    GoOnLine();
    form->page->hide();
    form->page->show();
    EXPECT_TRUE(Enabled("CommandStep"));
    EXPECT_EQ(Text("ComboStepReference"), "(217) Reference 0");
    EXPECT_EQ(Text("SpinStepSize"), "5.00 %");
    P(Param::AnalogIn1Destination) = Param::Reference0;
    form->page->hide();
    form->page->show();
    EXPECT_FALSE(Enabled("CommandStep"));
    EXPECT_NE(Text("LabelStepSource").find("Analog In 1 Destination overwrites it"), std::string::npos)
        << Text("LabelStepSource");
}

} // namespace quorvik::testing
