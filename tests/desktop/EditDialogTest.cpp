#include "desktop/FormModifyParameterValue.h"
#include "model/Conversions.h"
#include "model/TextTables.h"
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
    const Name number = "Must be a numeric value. Please Re-enter.";
    const Name range = "Please enter a value between -5.0 % and 12.5 %";
    // What is typed, the message or "" where it is accepted, and the raw value then.
    const std::tuple<const char *, Name, int> cases[] = {
        {"", number, 0},    {"abc", number, 0}, {"1,5", number, 0}, {"12.6", range, 0},
        {"-5.1", range, 0}, {"12.5", "", 125},  {"-5", "", -50},    {"1.25", "", 13}};
    for (const auto &[typed, message, rawResult] : cases) {
        SCOPED_TRACE(typed);
        Open(1, -50, 125, 10, 1);
        EXPECT_EQ(Text("TextValue(2)"), "1.0");
        Entry()->setText(Name(typed));
        const bool accepted = message.isEmpty();
        if (!accepted)
            desk.asker.Expect(message);
        Click("CommandOK");
        EXPECT_EQ(dialog->EditedValue().has_value(), accepted);
        EXPECT_EQ(dialog->isVisible(), !accepted);
        if (accepted) {
            EXPECT_EQ(dialog->EditedValue(), rawResult);
        } else {
            EXPECT_EQ(desk.asker.Shown.last().icon, message == number ? MsgIcon::Exclamation : MsgIcon::None);
            EXPECT_EQ(Entry()->selectedText(), Name(typed));
        }
    }
}

TEST_F(EditDialogTest, AnOptionOutsideTheLimitsIsRefusedInItsOwnWords)
{
    Open(6, 0, 1, 0);
    Click("Option1(2)");
    desk.asker.Expect("Please enter a value between AFB and TFB");
    Click("CommandOK");
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(EditDialogTest, AnOverflowIsToldAndTheDialogStays)
{
    Open(10, 0, 100, 5);
    Entry()->setText(Name("1e12"));
    Click("CommandOK");
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().startsWith(Name("(226) Fwd Accel A: "))) << qPrintable(told.first());
    EXPECT_TRUE(dialog->isVisible());
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
    Entry()->setText(Name("101"));
    desk.asker.Expect("Please enter a value between");
    Click("CommandOK");
    Click("CommandCancel");
    EXPECT_FALSE(dialog->EditedValue());
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace quorvik::testing
