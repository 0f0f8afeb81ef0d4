#include "ModelFixture.h"

#include "platform/RuntimeFailure.h"

#include <QStringList>
#include <vector>

namespace quorvik::testing
{

TEST_F(ModelTest, AccessClasses)
{
    // Attributes, whether a selector drives it, drive state; access class, and whether it can be written.
    const std::vector<std::tuple<std::int32_t, bool, std::int32_t, int, bool>> rows = {
        {32, false, 1, Access::ReadWrite, true},
        {32 | Attr::ReadOnly, true, 0, Access::ReadOnly, false},
        {32 | Attr::ReadOnly | Attr::Icr, false, 0, Access::ReadOnly, false},
        {64 | Attr::Icr, false, 0, Access::IcrReadWrite, true},
        {64 | Attr::Icr, false, 8, Access::IcrReadWrite, true},
        {64 | Attr::Icr, false, 1, Access::IcrReadOnly, false},
        {64 | Attr::Icr, false, 7, Access::IcrReadOnly, false},
        {64 | Attr::Icr, true, 0, Access::IcrReadWrite, false},
        {32, true, 0, Access::LinkedDestination, false},
    };
    for (const auto &[attributes, isLinked, state, accessClass, isWritable] : rows) {
        At(100).Attributes = attributes;
        At(24).Attributes = Attr::Destination;
        At(24).Value = isLinked ? 100 : 0;
        At(Param::DriveState).Value = state;
        EXPECT_EQ(table.AccessClass(100), accessClass) << attributes << ' ' << state;
        EXPECT_EQ(table.CanWriteParam(100), isWritable) << attributes << ' ' << state;
    }
    EXPECT_EQ(table.AccessDescription(100, Access::LinkedDestination),
              QStringLiteral("Destination-Read Only from (24) P24"));
}

TEST_F(ModelTest, LinksToParameterZeroAreNoLinksButForbidWriting)
{
    At(24).Attributes = Attr::Destination;
    At(24).Value = 0;
    EXPECT_EQ(table.FindLinkSource(0), 0);
    EXPECT_EQ(table.AccessClass(0), Access::ReadWrite);
    EXPECT_FALSE(table.CanWriteParam(0));

    // Only the one walk looks at selector 0.
    At(0).Attributes = Attr::Destination;
    At(0).Value = 100;
    EXPECT_EQ(table.FindLinkSource(100), 0);
    EXPECT_FALSE(table.CanWriteParam(100));
    table.LastParam = -1;
    EXPECT_TRUE(table.CanWriteParam(100));
}

TEST_F(ModelTest, FirstSelectorCountsAndNoneBeyondLastParam)
{
    for (const int selector : {23, 24, 433}) {
        At(selector).Attributes = Attr::Destination;
        At(selector).Value = selector == 433 ? 101 : 100;
    }
    EXPECT_EQ(table.FindLinkSource(100), 23);
    EXPECT_EQ(table.FindLinkSource(101), 433);
    table.LastParam = 432;
    EXPECT_EQ(table.FindLinkSource(101), 0);
}

TEST_F(ModelTest, SetParamValueQueuesAndMarks)
{
    Document document{table};
    QStringList titles;
    QObject::connect(&document, &Document::TitleChanged,
                     [&titles](const QString &title) { titles.append(title); });
    // Number, argument; both marks before and after.
    const std::tuple<int, bool, bool, bool> rows[] = {
        {226, true, false, true}, {226, false, true, false}, {406, true, false, false},
        {406, false, true, true}, {407, true, false, false},
    };
    for (const auto &[number, isModified, before, after] : rows) {
        SCOPED_TRACE(number);
        document.FileModified = document.DriveModified = before;
        table.WritePending = false;
        At(number).WriteFlag = WriteState::None;
        table.SetParamValue(number, 1, isModified, true);
        EXPECT_EQ(At(number).Value, 1);
        EXPECT_EQ(At(number).WriteFlag, WriteState::Queued);
        EXPECT_TRUE(table.WritePending);
        EXPECT_EQ(document.FileModified, after);
        EXPECT_EQ(document.DriveModified, after);
    }
    EXPECT_EQ(titles.size(), 5);
    EXPECT_EQ(titles.first(), QStringLiteral("Quorvik - [unnamed*]"));
    EXPECT_EQ(titles.last(), QStringLiteral("Quorvik - [unnamed]"));

    Shape(100, -5, 5, 64);
    table.SetParamValue(1, 100, true, false);
    EXPECT_EQ(At(8).Max, 1000);
    table.SetParamValue(1, 100, true, true);
    EXPECT_EQ(At(8).Max, 5);
}

TEST_F(ModelTest, WholeTableFlagsLeaveTheClockAndReadOnlyParametersAlone)
{
    At(200).Attributes |= Attr::ReadOnly;
    table.LastParam = 400;
    for (const std::uint8_t state : {WriteState::Held, WriteState::Queued}) {
        table.SetAllWriteFlags(state);
        EXPECT_EQ(table.WritePending, state == WriteState::Queued);
        for (int i = 0; i <= 433; ++i) {
            const bool exempt = (i >= 256 && i <= 262) || i == 200 || i > 400;
            ASSERT_EQ(At(i).WriteFlag, exempt ? WriteState::None : state) << i;
        }
    }
}

TEST_F(ModelTest, ReadInterestIsCountedAndChecked)
{
    table.SetAllReadFlags(1);
    EXPECT_THROW(table.SetAllReadFlags(2), RuntimeFailure);
    EXPECT_EQ(At(433).ReadFlag, 1);
    table.SetAllReadFlags(-1);
    EXPECT_EQ(At(433).ReadFlag, 0);
    EXPECT_THROW(table.RemoveReadInterest(5), RuntimeFailure);
    At(5).ReadFlag = 255;
    EXPECT_THROW(table.AddReadInterest(5), RuntimeFailure);
    EXPECT_EQ(At(5).ReadFlag, 255);
}

TEST_F(ModelTest, ResetGivesTheFactoryStateAndKeepsReadInterest)
{
    table.Resize(440);
    table.LastParam = 100;
    At(226) = {1, 2, 3, 4, 5, QStringLiteral("x"), 6, WriteState::Queued};
    table.PresetTable[1].Value = 226;
    table.PresetTable[226].Max = 77;
    table.ResetToDefaults();
    EXPECT_EQ(table.LastParam, 433);
    EXPECT_EQ(table.UpperBound(), 433);
    EXPECT_EQ(At(226).Name, QStringLiteral("P226"));
    EXPECT_EQ(At(226).ReadFlag, 6);
    EXPECT_EQ(At(8).Max, 77) << "the rules follow the factory selectors";
    EXPECT_EQ(At(123).Max, 174) << "and the factory model";
}

} // namespace quorvik::testing
