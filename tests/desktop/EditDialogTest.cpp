#include "desktop/FormModifyParameterValue.h"
#include "desktop/PlaceBeside.h"
#include "desktop/ValueBox.h"
#include "model/Conversions.h"
#include "model/TextTables.h"
#include "settings/SettingsFile.h"
#include "support/WindowTest.h"

namespace quorvik::testing
{

constexpr int Edited = 226;

class EditDialogTest : public WindowTest
{
protected:
    /** Makes the edited parameter one of a type with limits, and opens the dialog on a value. */
    void Open(int typeCode, std::int32_t rawMin, std::int32_t rawMax, std::int32_t rawValue,
              std::int32_t moreBits = 0)
    {
        ParamRecord &record = Record(Edited);
        record.Attributes = typeCode * 32 | moreBits;
        record.Min = rawMin;
        record.Max = rawMax;
        record.Value = rawValue;
        OpenOn(Edited);
    }

    void OpenOn(int p) { dialog = Show<FormModifyParameterValue>(nullptr, p, P(p)); }

    int VisibleOptions() const
    {
        int visible = 0;
        for (int i = 0; i < 4; ++i)
            visible += Visible(ControlName("Option1", i)) ? 1 : 0;
        return visible;
    }

    QLineEdit *Entry() const { return Find<QLineEdit>("TextValue(2)"); }

    FormModifyParameterValue *dialog = nullptr;
};

TEST_F(EditDialogTest, TheTypeCodeShapesTheDialog)
{
    for (int typeCode = 0; typeCode < 32; ++typeCode) {
        SCOPED_TRACE(typeCode);
        const bool listed = IsEnumerated(typeCode);
        Open(typeCode, -10000, 10000, 1);
        EXPECT_EQ(VisibleOptions(), listed ? EnumCount(typeCode) : 0);
        EXPECT_EQ(Visible("ComboParameterSelect"), typeCode == 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(Visible(ControlName("TextValue", i)), !listed && typeCode != 0);
        if (listed) {
            EXPECT_TRUE(Checked("Option1(1)"));
            EXPECT_EQ(dialog->NewValue(), Name("1"));
        }
    }
}

TEST_F(EditDialogTest, QuickStopIsMissingFromModelSeventeenOn)
{
    for (const auto &[model, shown] : {std::pair(16, 3), std::pair(17, 2), std::pair(26, 2)}) {
        P(Param::DriveModel) = model;
        Open(21, 0, 2, 1);
        EXPECT_EQ(VisibleOptions(), shown) << model;
        // The value stays what it was unless another one is picked.
        EXPECT_EQ(dialog->NewValue(), Name("1"));
    }
}

TEST_F(EditDialogTest, ANumberPassesTheChecksInOrder)
{
    const char *number = "Must be a numeric value. Please Re-enter.";
    const char *range = "Please enter a value between -5.0 % and 12.5 %";
    const char *comma = "\"1,000\" may be 1.000 or 1000: use a point or no comma.";
    // What is typed, the sentence below the field or "" where it is accepted, and the raw value then.
    const std::tuple<const char *, const char *, int> cases[] = {
        {"", number, 0},        {"abc", number, 0},      {"1,2,3", number, 0}, {"1.0,5", number, 0},
        {"1.000,5", number, 0}, {"x,500", number, 0},    {",", number, 0},     {"12.6", range, 0},
        {"12,6", range, 0},     {"-5.1", range, 0},      {"12.5", "", 125},    {"-5", "", -50},
        {"1.25", "", 13},       {"1,5", "", 15},         {"-,5", "", -5},      {"1,2500", "", 13},
        {"1,000", comma, 0},    {" 1,000 ", comma, 0},   {"1.000", "", 10},    {"1,5e0", "", 15},
        {"-1,000", nullptr, 0}, {"1,000e0", nullptr, 0}, {",000", nullptr, 0}, {"1e12", nullptr, 0}};
    for (const auto &[typed, refusal, rawResult] : cases) {
        SCOPED_TRACE(typed);
        Open(1, -50, 125, 10, 1);
        EXPECT_EQ(Text("TextValue(2)"), "1.0");
        Entry()->setText(Name(typed));
        Click("CommandOK");
        const bool accepted = refusal && *refusal == 0;
        EXPECT_EQ(dialog->isVisible(), !accepted);
        EXPECT_EQ(dialog->EditedValue(), accepted ? std::optional(rawResult) : std::nullopt);
        if (!dialog->isVisible())
            continue;
        EXPECT_TRUE(Visible("LabelMessage"));
        EXPECT_EQ(refusal ? Text("LabelMessage") : "", refusal ? refusal : "");
        EXPECT_EQ(Entry()->selectedText(), Name(typed));
        EXPECT_TRUE(Entry()->hasFocus());
        Press(Qt::Key_9);
        EXPECT_FALSE(Visible("LabelMessage")) << "of another entry";
    }
    EXPECT_THAT(told, ::testing::IsEmpty()) << "in a box";
}

TEST_F(EditDialogTest, AnOptionOutsideTheLimitsIsRefusedInItsOwnWords)
{
    Open(6, 0, 1, 0);
    Click("Option1(2)");
    Click("CommandOK");
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Text("LabelMessage"), "Please enter a value between AFB and TFB");
}

TEST_F(EditDialogTest, KeysStepTheLastPlaceWithinTheLimits)
{
    const std::tuple<const char *, Qt::Key, const char *> cases[] = {
        {"1.0", Qt::Key_Up, "1.1"},         {"1.0", Qt::Key_Down, "0.9"},       {"0.0", Qt::Key_Down, "-0.1"},
        {"0,5", Qt::Key_PageUp, "1.5"},     {"1", Qt::Key_PageDown, "0.0"},     {"12.5", Qt::Key_Up, "12.5"},
        {"-4.9", Qt::Key_PageDown, "-5.0"}, {"99", Qt::Key_Down, "12.5"},       {"abc", Qt::Key_Up, "abc"},
        {"1,000", Qt::Key_Up, "1,000"},     {"214748364.7", Qt::Key_Up, "12.5"}};
    Open(1, -50, 125, 10, 1);
    for (const auto &[typed, key, stepped] : cases) {
        Entry()->setText(Name(typed));
        Press(key);
        EXPECT_EQ(Text("TextValue(2)"), stepped) << typed;
    }
}

TEST_F(EditDialogTest, TypingChoosesAnOptionThatIsShown)
{
    P(Param::DriveModel) = 17;
    Open(21, 0, 2, 0);
    const std::pair<const char *, const char *> keys[] = {{"c", "2"}, {"q", "2"}, {"r", "0"}, {"co", "2"}};
    for (const auto &[typed, chosen] : keys) {
        QTest::keyClicks(QApplication::focusWidget(), Name(typed));
        EXPECT_EQ(dialog->NewValue(), Name(chosen)) << typed;
    }
    // Two that begin alike.
    Open(9, 0, 1, 0);
    Find<QRadioButton>("Option1(0)")->setText(Name("Off"));
    Find<QRadioButton>("Option1(1)")->setText(Name("On"));
    for (const char *chosen : {"1", "0"}) {
        Press(Qt::Key_O);
        EXPECT_EQ(dialog->NewValue(), Name(chosen));
    }
}

TEST_F(EditDialogTest, SaysWhatTheValueIsElsewhereAndTakesItFromThere)
{
    desk.desk.BlockOf = [](int p) { return p == Edited ? Name("Accel Decel") : QString(); };
    SettingsFile file(desk.table, desk.document);
    Record(Edited).Preset = 50;
    P(Edited) = 75;
    P(2) = 240;
    ASSERT_EQ(file.Save(desk.folder.filePath(Name("a.Svx"))), QString());
    P(Edited) = 60;
    OpenOn(Edited);
    EXPECT_EQ(Text("LabelParameter"), "(226) Fwd Accel A");
    EXPECT_EQ(Text("LabelBlock"), "Accel Decel");
    EXPECT_EQ(Text("LabelValues"), "now 6.0 Sec, factory 5.0");
    EXPECT_FALSE(Visible("CommandFile"));

    desk.document.FileName = desk.folder.filePath(Name("a.Svx"));
    OpenOn(Edited);
    Entry()->setText(Name("9"));
    P(Edited) = 61;
    Tick();
    EXPECT_EQ(Text("LabelValues"), "now 6.1 Sec, factory 5.0, in the file 7.5");
    EXPECT_EQ(Text("TextValue(2)"), "9") << "what is being typed";
    Click("CommandFile");
    EXPECT_EQ(Text("TextValue(2)"), "7.5");
    Click("CommandFactory");
    EXPECT_EQ(Text("TextValue(2)"), "5.0");
    EXPECT_EQ(Entry()->selectedText(), Name("5.0"));

    OpenOn(2);
    EXPECT_TRUE(Text("LabelValues").ends_with("in the file (240) Stop")) << Text("LabelValues");
    Pick("ComboParameterSelect", 0);
    Click("CommandFile");
    EXPECT_EQ(dialog->NewValue(), Name("240"));

    // What the file says in another unit is no value for this field.
    Record(Edited).Attributes += 1;
    OpenOn(Edited);
    EXPECT_TRUE(Text("LabelValues").ends_with("in the file 7.5 Sec")) << Text("LabelValues");
    EXPECT_FALSE(Visible("CommandFile"));
}

TEST_F(EditDialogTest, OpensBesideTheBoxAndNeverOverIt)
{
    const QRect screen(0, 0, 1000, 700);
    const QSize size(300, 200);
    const std::pair<QRect, QPoint> cases[] = {
        {{100, 100, 80, 20}, {190, 100}},  // right
        {{100, 650, 80, 20}, {190, 500}},  // right, moved up into the screen
        {{800, 100, 80, 20}, {490, 100}},  // left
        {{100, 100, 800, 20}, {100, 130}}, // below
        {{100, 600, 800, 20}, {100, 390}}, // above
    };
    for (const auto &[box, place] : cases)
        EXPECT_EQ(PlaceBeside(box, size, screen, 10), place) << box.x() << ' ' << box.y();
    EXPECT_TRUE(QRect(50, 20, 400, 300)
                    .contains(QRect(PlaceBeside({200, 150, 80, 20}, size, {50, 20, 400, 300}, 10), size)))
        << "no side has room";

    desk.mainWindow.resize(700, 500);
    ValueBox box(Name("Text1(0)"), &desk.mainWindow);
    box.setGeometry(300, 200, 80, 20);
    desk.mainWindow.show();
    desk.mainWindow.activateWindow();
    box.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&desk.mainWindow));
    dialog = Show<FormModifyParameterValue>(&desk.mainWindow, Edited, 0);
    const QRect shown(box.mapToGlobal(QPoint()), box.size());
    EXPECT_FALSE(dialog->frameGeometry().intersects(shown));
    Entry()->setText(Name("1,000"));
    Click("CommandOK");
    EXPECT_FALSE(dialog->frameGeometry().intersects(shown)) << "with a sentence more";
}

TEST_F(EditDialogTest, ADestinationInUseAsksAndSkipsTheRange)
{
    P(1) = 239;
    P(2) = 240;
    Record(2).Max = 10;
    for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        const bool yes = answer == MsgAnswer::Yes;
        OpenOn(2);
        auto *combo = Find<QComboBox>("ComboParameterSelect");
        EXPECT_EQ(dialog->NewValue(), Name("240"));
        EXPECT_EQ(combo->findText(Name("139 "), Qt::MatchStartsWith), -1) << "read only";
        combo->setCurrentIndex(combo->findText(Name("239 "), Qt::MatchStartsWith));
        desk.asker.Expect("is already set to (239)", answer);
        Click("CommandOK");
        EXPECT_EQ(dialog->EditedValue(), yes ? std::optional(239) : std::nullopt);
        EXPECT_EQ(dialog->isVisible(), !yes);
        EXPECT_EQ(P(1), yes ? 0 : 239);
    }
}

TEST_F(EditDialogTest, EnterAcceptsAndCancelDropsWhatWasRefused)
{
    Open(10, 0, 100, 5);
    Entry()->setFocus();
    QTest::keyClicks(Entry(), Name("42"));
    QTest::keyClick(Entry(), Qt::Key_Return);
    EXPECT_EQ(dialog->EditedValue(), 42) << "typing replaces the selected value";

    Open(10, 0, 100, 5);
    QTest::keyClicks(Entry(), Name("101"));
    QTest::keyClick(Entry(), Qt::Key_Return);
    EXPECT_EQ(Entry()->selectedText(), Name("101")) << "typing replaces what was refused";
    Click("CommandCancel");
    EXPECT_FALSE(dialog->EditedValue());
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace quorvik::testing
