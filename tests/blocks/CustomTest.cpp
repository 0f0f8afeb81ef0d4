#include "blocks/BlockFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

namespace quorvik::testing
{

namespace
{

class CustomTest : public BlockFixture
{
protected:
    void OpenCustom()
    {
        before = ReadFlags();
        Open("FormCustom");
        edit = Find<QCheckBox>(QStringLiteral("CheckEdit"));
        combo = Find<QComboBox>(QStringLiteral("ComboSelectParameter"));
    }

    void Press(const char *button) { Find<QPushButton>(QLatin1String(button))->click(); }

    void CloseByButton()
    {
        Press("CommandClose");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    int Number(int row) const { return Label1(row)->property("Tag").toInt(); }
    QString Saved(int row) const
    {
        return desk.settings.GetSetting(QStringLiteral("Custom"), QString::number(row));
    }
    void Save(int row, const char *number)
    {
        desk.settings.SaveSetting(QStringLiteral("Custom"), QString::number(row), QLatin1String(number));
    }

    /** What a user does who picks the entry from the open list. */
    void Choose(int number)
    {
        combo->setCurrentIndex(number);
        Q_EMIT combo->activated(number);
    }

    std::vector<int> before;
    QCheckBox *edit = nullptr;
    QComboBox *combo = nullptr;
};

TEST_F(CustomTest, RowsShowTheDefaultsAndAreSavedByTheCloseButton)
{
    OpenCustom();
    const int first[] = {411, 200, 417, 114, 335, 338, 205, 106, 217, 218};
    for (int row = 0; row < 10; ++row) {
        EXPECT_EQ(Number(row), first[row]);
        EXPECT_EQ(ReadFlag(first[row]), before.at(std::size_t(first[row])) + 1);
    }
    EXPECT_EQ(Number(19), 197);
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    EXPECT_EQ(Saved(0), QStringLiteral("411"));
    EXPECT_EQ(Saved(19), QStringLiteral("197"));
}

TEST_F(CustomTest, AnyOtherWayOfClosingSavesNothingAndLeavesTheCounts)
{
    OpenCustom();
    Close();
    EXPECT_EQ(ReadFlag(411), before.at(411) + 1);
    EXPECT_EQ(Saved(0), QString());
}

TEST_F(CustomTest, TheChosenNumberMovesTheReadInterestAndOutlivesTheWindow)
{
    OpenCustom();
    edit->click();
    QTest::mouseDClick(Label1(4), Qt::LeftButton);
    EXPECT_EQ(combo->currentIndex(), 335);
    EXPECT_EQ(combo->count(), desk.model.LastParam + 1);
    EXPECT_EQ(combo->itemText(335), QStringLiteral("335 ") + desk.model.ParamTable[335].Name);
    Choose(200);
    EXPECT_EQ(Number(4), 200);
    EXPECT_EQ(ReadFlag(335), before.at(335));
    EXPECT_EQ(ReadFlag(200), before.at(200) + 2) << "the same number on two rows counts twice";
    desk.model.ParamTable[200].Value = 123;
    Tick();
    EXPECT_EQ(Text1(4)->text(), QStringLiteral("123 RPM"));
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    OpenCustom();
    EXPECT_EQ(Number(4), 200);
}

TEST_F(CustomTest, TheListStandsInItsRowAndIsHiddenOutsideEditing)
{
    OpenCustom();
    QTest::mouseDClick(Label1(12), Qt::LeftButton);
    EXPECT_FALSE(combo->isVisible());
    edit->click();
    ASSERT_TRUE(combo->isVisible());
    EXPECT_EQ(combo->currentIndex(), 411) << "a double click without Edit chooses no row";
    for (const int row : {12, 3, 19}) {
        Label1(row)->setFocus();
        QTest::keyClick(Label1(row), Qt::Key_Return);
        EXPECT_NEAR(combo->geometry().center().y(), Text1(row)->geometry().center().y(), 1) << row;
        EXPECT_LT(combo->geometry().right(), Text1(row)->geometry().left()) << row;
        EXPECT_FALSE(Label1(row)->isVisible()) << row;
        EXPECT_EQ(combo->currentIndex(), Number(row));
    }
    EXPECT_TRUE(Label1(12)->isVisible());
    edit->click();
    EXPECT_FALSE(combo->isVisible());
    EXPECT_TRUE(Label1(19)->isVisible());
}

TEST_F(CustomTest, DefaultTakesAllRowsBackAndTheCountsStayEven)
{
    Save(0, "1");
    Save(1, "1");
    OpenCustom();
    EXPECT_EQ(ReadFlag(1), before.at(1) + 2);
    edit->click();
    Press("CommandDefault");
    EXPECT_EQ(Number(0), 411);
    EXPECT_EQ(ReadFlag(1), before.at(1));
    EXPECT_EQ(combo->currentIndex(), 411);
    Choose(2);
    EXPECT_EQ(ReadFlag(411), before.at(411));
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    EXPECT_EQ(Saved(0), QStringLiteral("2"));
}

TEST_F(CustomTest, ASavedNumberOutsideTheTableIsAnEmptyRow)
{
    Save(2, "9999");
    Save(3, "-1");
    Save(5, "many");
    OpenCustom();
    Tick();
    for (const int row : {2, 3}) {
        EXPECT_EQ(Text1(row)->text(), QString());
        EXPECT_EQ(Label1(row)->text(), QString());
        QTest::mouseClick(Text1(row), Qt::LeftButton);
    }
    EXPECT_EQ(Number(5), 338);
    edit->click();
    QTest::mouseDClick(Label1(2), Qt::LeftButton);
    EXPECT_EQ(combo->currentIndex(), 0);
    Choose(217);
    EXPECT_EQ(ReadFlag(217), before.at(217) + 2);
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    EXPECT_EQ(Saved(2), QStringLiteral("217"));
    EXPECT_EQ(Saved(3), QStringLiteral("-1"));
}

TEST_F(CustomTest, CaptionsOfMoreThanTwentyCharactersAreCut)
{
    const std::pair<const char *, const char *> names[] = {{"Fourteen chars", "(217) Fourteen chars"},
                                                           {"Fifteen charact", "(217) Fifteen charac..."}};
    for (const auto &[name, caption] : names) {
        desk.model.ParamTable[217].Name = QLatin1String(name);
        OpenCustom();
        EXPECT_EQ(Label1(8)->text(), QLatin1String(caption));
        EXPECT_TRUE(Label1(8)->toolTip().contains(QLatin1String(name)));
        CloseByButton();
    }
}

} // namespace

} // namespace quorvik::testing
