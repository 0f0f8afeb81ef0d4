#include "blocks/BlockFixture.h"

namespace quorvik::testing
{

class CustomTest : public BlockFixture
{
protected:
    QString Saved(int row) const { return desk.settings.GetSetting(Name("Custom"), QString::number(row)); }
    void Save(int row, const char *number)
    {
        desk.settings.SaveSetting(Name("Custom"), QString::number(row), QLatin1String(number));
    }

    /** What a user does who picks the entry from the open list. */
    void Choose(int number)
    {
        Pick("ComboSelectParameter", number);
        Q_EMIT Find<QComboBox>("ComboSelectParameter")->activated(number);
    }
    int Chosen() const { return Find<QComboBox>("ComboSelectParameter")->currentIndex(); }
};

TEST_F(CustomTest, OnlyTheCloseButtonSavesAndReleases)
{
    Open("FormCustom");
    EXPECT_EQ(ReadFlag(411), before.at(411) + 1);
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    EXPECT_EQ(Saved(0), Name("411"));
    EXPECT_EQ(Saved(19), Name("197"));
    Save(0, "412");
    Open("FormCustom");
    Click("CheckEdit");
    Choose(413);
    Close();
    EXPECT_EQ(ReadFlag(413), before.at(413) + 1);
    EXPECT_EQ(Saved(0), Name("412"));
}

TEST_F(CustomTest, TheChosenNumberMovesTheReadInterestAndOutlivesTheWindow)
{
    Record(335).Name = Name("Fourteen chars");
    Record(200).Name = Name("Fifteen charact");
    Open("FormCustom");
    Click("CheckEdit");
    QTest::mouseDClick(Label1(4), Qt::LeftButton);
    EXPECT_EQ(Text("ComboSelectParameter"), "335 Fourteen chars");
    EXPECT_EQ(CaptionText(4), "(335) Fourteen chars");
    Choose(200);
    EXPECT_EQ(CaptionText(4), "(200) Fifteen charac...") << "cut after twenty";
    EXPECT_EQ(Label1(4)->toolTip(), Name("(200) Fifteen charact"));
    EXPECT_EQ(ReadFlag(335), before.at(335));
    EXPECT_EQ(ReadFlag(200), before.at(200) + 2) << "the same number on two rows counts twice";
    Set({{200, 123}});
    Tick();
    EXPECT_EQ(ValueText(4), "123 RPM");
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    Open("FormCustom");
    EXPECT_EQ(Number(4), 200);
}

TEST_F(CustomTest, TheListStandsInItsRowAndIsHiddenOutsideEditing)
{
    Open("FormCustom");
    QTest::mouseDClick(Label1(12), Qt::LeftButton);
    EXPECT_FALSE(Visible("ComboSelectParameter"));
    Click("CheckEdit");
    ASSERT_TRUE(Visible("ComboSelectParameter"));
    EXPECT_EQ(Chosen(), 411) << "a double click without Edit chooses no row";
    for (const int row : {12, 3, 19}) {
        Label1(row)->setFocus();
        QTest::keyClick(Label1(row), Qt::Key_Return);
        const QRect place = Find("ComboSelectParameter")->geometry();
        EXPECT_NEAR(place.center().y(), Text1(row)->geometry().center().y(), 1) << row;
        EXPECT_LT(place.right(), Text1(row)->geometry().left()) << row;
        EXPECT_FALSE(Label1(row)->isVisible()) << row;
        EXPECT_EQ(Chosen(), Number(row));
    }
    EXPECT_TRUE(Label1(12)->isVisible());
    Click("CheckEdit");
    EXPECT_FALSE(Visible("ComboSelectParameter"));
    EXPECT_TRUE(Label1(19)->isVisible());
}

TEST_F(CustomTest, DefaultTakesAllRowsBackAndTheCountsStayEven)
{
    Save(0, "1");
    Save(1, "1");
    Open("FormCustom");
    EXPECT_EQ(ReadFlag(1), before.at(1) + 2);
    Click("CheckEdit");
    Click("CommandDefault");
    EXPECT_EQ(Number(0), 411);
    EXPECT_EQ(ReadFlag(1), before.at(1));
    EXPECT_EQ(Chosen(), 411);
    Choose(2);
    EXPECT_EQ(ReadFlag(411), before.at(411));
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
}

TEST_F(CustomTest, ASavedNumberOutsideTheTableIsAnEmptyRow)
{
    Save(2, "9999");
    Save(3, "-1");
    Save(5, "many");
    Open("FormCustom");
    Tick();
    for (const int row : {2, 3}) {
        EXPECT_EQ(ValueText(row), "");
        EXPECT_EQ(CaptionText(row), "");
        QTest::mouseClick(Text1(row), Qt::LeftButton);
    }
    EXPECT_EQ(Number(5), 338);
    Click("CheckEdit");
    QTest::mouseDClick(Label1(2), Qt::LeftButton);
    EXPECT_EQ(Chosen(), 0);
    Choose(217);
    EXPECT_EQ(ReadFlag(217), before.at(217) + 2);
    CloseByButton();
    EXPECT_EQ(ReadFlags(), before);
    EXPECT_EQ(Saved(2), Name("217"));
    EXPECT_EQ(Saved(3), Name("-1"));
}

} // namespace quorvik::testing
