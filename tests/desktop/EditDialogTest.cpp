#include "desktop/FormModifyParameterValue.h"
#include "model/TextTables.h"
#include "platform/Guard.h"
#include "support/TestDesk.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

constexpr int Edited = 226;

class EditDialogTest : public ::testing::Test
{
protected:
    /** Makes the edited parameter one of a type with limits, and opens the dialog on a value. */
    FormModifyParameterValue &Open(int typeCode, std::int32_t rawMin, std::int32_t rawMax,
                                   std::int32_t rawValue, std::int32_t moreBits = 0)
    {
        ParamRecord &record = desk.model.ParamTable[Edited];
        record.Attributes = typeCode * 32 | moreBits;
        record.Min = rawMin;
        record.Max = rawMax;
        record.Value = rawValue;
        return OpenOn(Edited);
    }

    FormModifyParameterValue &OpenOn(int p)
    {
        desk.model.EditParamNumber = std::int16_t(p);
        desk.model.EditValue = desk.model.Value(p);
        dialog = std::make_unique<FormModifyParameterValue>(desk.desk, nullptr);
        dialog->show();
        return *dialog;
    }

    template<typename Control> Control *Find(const QString &name) const
    {
        auto *control = dialog->findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }

    QStringList VisibleOptions() const
    {
        QStringList texts;
        for (int i = 0; i < 4; ++i)
            if (auto *option = Find<QRadioButton>(ControlName("Option1", i)); option->isVisible())
                texts.append(option->text());
        return texts;
    }

    QLineEdit *Entry() const { return Find<QLineEdit>(QStringLiteral("TextValue(2)")); }
    void PressOk() { QTest::mouseClick(Find<QPushButton>(QStringLiteral("CommandOK")), Qt::LeftButton); }

    TestDesk desk;
    std::unique_ptr<FormModifyParameterValue> dialog;
};

struct KindCase {
    int typeCode;
    const char *caption;
    int options; // 0 combo, -1 number rows
};

TEST_F(EditDialogTest, TheTypeCodeShapesTheDialog)
{
    const KindCase cases[] = {
        {0, "Select Parameter", 0},   {1, "Enter New Value", -1},  {2, "Select Polarity", 2},
        {3, "Select Analog Type", 2}, {4, "Select Value", 2},      {5, "Select Mode", 2},
        {6, "Select Feedback", 3},    {7, "Select Value", 2},      {8, "Select Mode", 2},
        {9, "Select Sign", 2},        {10, "Enter New Value", -1}, {17, "Enter New Value", -1},
        {19, "Select Mode", 2},       {20, "Enter New Value", -1}, {21, "Select Mode", 3},
        {22, "Select Type", 2},       {23, "Enter New Value", -1}, {24, "Select Value", 4},
        {31, "Enter New Value", -1},
    };
    for (const KindCase &expected : cases) {
        SCOPED_TRACE(expected.typeCode);
        Open(expected.typeCode, 0, 3, 1);
        EXPECT_EQ(dialog->windowTitle(), QLatin1String(expected.caption));
        EXPECT_EQ(VisibleOptions().size(), std::max(expected.options, 0));
        EXPECT_EQ(Find<QComboBox>(QStringLiteral("ComboParameterSelect"))->isVisible(),
                  expected.options == 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(Find<QLineEdit>(ControlName("TextValue", i))->isVisible(), expected.options < 0);
        if (expected.options > 0) {
            EXPECT_TRUE(Find<QRadioButton>(QStringLiteral("Option1(1)"))->isChecked());
            EXPECT_EQ(dialog->NewValue(), QStringLiteral("1"));
        }
    }
}

TEST_F(EditDialogTest, NoControlIsCutInAnyKind)
{
    for (const int typeCode : {0, 1, 4, 6, 24}) {
        Open(typeCode, -10000, 10000, 0);
        for (QWidget *control : dialog->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (!control->isVisible() ||
                !control->objectName().contains(QRegularExpression(QStringLiteral("^[A-Z]"))))
                continue;
            EXPECT_TRUE(dialog->rect().contains(control->geometry())) << control->objectName().toStdString();
            EXPECT_GE(control->height(), control->minimumSizeHint().height());
        }
    }
}

TEST_F(EditDialogTest, QuickStopIsMissingFromModelSeventeenOn)
{
    for (const auto &[model, shown] : {std::pair(16, 3), std::pair(17, 2), std::pair(26, 2)}) {
        desk.model.ParamTable[Param::DriveModel].Value = model;
        Open(21, 0, 2, 1);
        EXPECT_EQ(VisibleOptions().size(), shown) << model;
        // The value stays what it was unless another one is picked.
        EXPECT_EQ(dialog->NewValue(), QStringLiteral("1"));
    }
}

struct EntryCase {
    const char *typed;
    const char *message; // empty: accepted
    MsgIcon icon;
    std::int32_t rawResult;
};

TEST_F(EditDialogTest, ANumberPassesTheChecksInOrder)
{
    const char *number = "Must be a numeric value. Please Re-enter.";
    const char *range = "Please enter a value between -5.0 % and 12.5 %";
    const EntryCase cases[] = {
        {"", number, MsgIcon::Exclamation, 0},    {"abc", number, MsgIcon::Exclamation, 0},
        {"1,5", number, MsgIcon::Exclamation, 0}, {"12.6", range, MsgIcon::None, 0},
        {"-5.1", range, MsgIcon::None, 0},        {"12.5", "", MsgIcon::None, 125},
        {"-5", "", MsgIcon::None, -50},           {"1.25", "", MsgIcon::None, 13},
    };
    for (const EntryCase &entry : cases) {
        SCOPED_TRACE(entry.typed);
        desk.asker.Shown.clear();
        desk.model.EditConfirmed = false;
        Open(1, -50, 125, 10, 1);
        EXPECT_EQ(Entry()->text(), QStringLiteral("1.0"));
        Entry()->setText(QString::fromLatin1(entry.typed));
        const QString message = QString::fromLatin1(entry.message);
        if (!message.isEmpty())
            desk.asker.Expect(message);
        PressOk();
        EXPECT_EQ(desk.model.EditConfirmed, message.isEmpty());
        EXPECT_EQ(dialog->isVisible(), !message.isEmpty());
        if (message.isEmpty()) {
            EXPECT_EQ(desk.model.EditValue, entry.rawResult);
            continue;
        }
        ASSERT_EQ(desk.asker.Shown.size(), 1);
        EXPECT_EQ(desk.asker.Shown.first().text, message);
        EXPECT_EQ(desk.asker.Shown.first().icon, entry.icon);
        EXPECT_EQ(Entry()->selectedText(), QString::fromLatin1(entry.typed));
    }
}

TEST_F(EditDialogTest, AnOptionOutsideTheLimitsIsRefusedInItsOwnWords)
{
    Open(6, 0, 1, 0);
    Find<QRadioButton>(QStringLiteral("Option1(2)"))->click();
    desk.asker.Expect(QStringLiteral("Please enter a value between AFB and TFB"));
    PressOk();
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(EditDialogTest, AnOverflowIsToldAndTheDialogStays)
{
    QStringList told;
    SetFailureReporter([&told](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    Open(10, 0, 100, 5);
    Entry()->setText(QStringLiteral("1e12"));
    PressOk();
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(dialog->isVisible());
    SetFailureReporter({});
}

TEST_F(EditDialogTest, ADestinationInUseAsksAndSkipsTheRange)
{
    Model &model = desk.model;
    model.ParamTable[1].Value = 239;
    model.ParamTable[2].Value = 240;
    model.ParamTable[2].Max = 10;
    for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        model.EditConfirmed = false;
        OpenOn(2);
        auto *combo = Find<QComboBox>(QStringLiteral("ComboParameterSelect"));
        EXPECT_EQ(dialog->NewValue(), QStringLiteral("240"));
        EXPECT_EQ(combo->findText(QStringLiteral("139 "), Qt::MatchStartsWith), -1) << "read only";
        combo->setCurrentIndex(combo->findText(QStringLiteral("239 "), Qt::MatchStartsWith));
        desk.asker.Expect(QStringLiteral("is already set to (239)"), answer);
        PressOk();
        EXPECT_EQ(model.EditConfirmed, answer == MsgAnswer::Yes);
        EXPECT_EQ(dialog->isVisible(), answer == MsgAnswer::No);
        EXPECT_EQ(model.Value(1), answer == MsgAnswer::Yes ? 0 : 239);
    }
    EXPECT_EQ(model.EditValue, 239);
}

TEST_F(EditDialogTest, EnterAcceptsEscapeCancelsAndTheFrameSaysNothing)
{
    desk.model.EditConfirmed = false;
    Open(10, 0, 100, 5);
    Entry()->setFocus();
    QTest::keyClicks(Entry(), QStringLiteral("42"));
    QTest::keyClick(Entry(), Qt::Key_Return);
    EXPECT_TRUE(desk.model.EditConfirmed);
    EXPECT_EQ(desk.model.EditValue, 42) << "typing replaces the selected value";

    Open(10, 0, 100, 5);
    dialog->close();
    EXPECT_TRUE(desk.model.EditConfirmed) << "keeps the answer of the last use";

    Open(10, 0, 100, 5);
    QTest::keyClick(Entry(), Qt::Key_Escape);
    EXPECT_FALSE(desk.model.EditConfirmed);
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace

} // namespace quorvik::testing
