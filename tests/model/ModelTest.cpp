#include "ModelFixture.h"

#include "platform/RuntimeFailure.h"

#include <QStringList>
#include <vector>

namespace quorvik::testing
{

TEST_F(ModelTest, AccessClasses)
{
    // Attributes, whether a selector drives it, drive state; access class, and whether it can be written.
    const std::vector<std::tuple<std::int32_t, bool, std::int32_t, int, bool>> table = {
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
    for (const auto &[attributes, isLinked, state, accessClass, isWritable] : table) {
        At(100).Attributes = attributes;
        At(24).Attributes = Attr::Destination;
        At(24).Value = isLinked ? 100 : 0;
        At(Param::DriveState).Value = state;
        EXPECT_EQ(model.AccessClass(100), accessClass) << attributes << ' ' << state;
        EXPECT_EQ(model.CanWriteParam(100), isWritable) << attributes << ' ' << state;
    }
    EXPECT_EQ(model.AccessDescription(100, Access::LinkedDestination),
              QStringLiteral("Destination-Read Only from (24) P24"));
}

TEST_F(ModelTest, LinksToParameterZeroAreNoLinksButForbidWriting)
{
    At(24).Attributes = Attr::Destination;
    At(24).Value = 0;
    EXPECT_EQ(model.FindLinkSource(0), 0);
    EXPECT_EQ(model.AccessClass(0), Access::ReadWrite);
    EXPECT_FALSE(model.CanWriteParam(0));

    // Only the one walk looks at selector 0.
    At(0).Attributes = Attr::Destination;
    At(0).Value = 100;
    EXPECT_EQ(model.FindLinkSource(100), 0);
    EXPECT_FALSE(model.CanWriteParam(100));
    model.LastParam = -1;
    EXPECT_TRUE(model.CanWriteParam(100));
}

TEST_F(ModelTest, FirstSelectorCountsAndNoneBeyondLastParam)
{
    for (const int selector : {23, 24, 433}) {
        At(selector).Attributes = Attr::Destination;
        At(selector).Value = selector == 433 ? 101 : 100;
    }
    EXPECT_EQ(model.FindLinkSource(100), 23);
    EXPECT_EQ(model.FindLinkSource(101), 433);
    model.LastParam = 432;
    EXPECT_EQ(model.FindLinkSource(101), 0);
}

TEST_F(ModelTest, SetParamValueQueuesAndMarks)
{
    QStringList titles;
    QObject::connect(&model, &Model::TitleChanged, [&titles](const QString &title) { titles.append(title); });
    // Number, argument; both marks before and after.
    const std::tuple<int, bool, bool, bool> table[] = {
        {226, true, false, true}, {226, false, true, false}, {406, true, false, false},
        {406, false, true, true}, {407, true, false, false},
    };
    for (const auto &[number, isModified, before, after] : table) {
        SCOPED_TRACE(number);
        model.FileModified = model.DriveModified = before;
        model.WritePending = false;
        At(number).WriteFlag = WriteState::None;
        model.SetParamValue(number, 1, isModified, true);
        EXPECT_EQ(At(number).Value, 1);
        EXPECT_EQ(At(number).WriteFlag, WriteState::Queued);
        EXPECT_TRUE(model.WritePending);
        EXPECT_EQ(model.FileModified, after);
        EXPECT_EQ(model.DriveModified, after);
    }
    EXPECT_EQ(titles.size(), 5);
    EXPECT_EQ(titles.first(), QStringLiteral("Quorvik - [unnamed*]"));
    EXPECT_EQ(titles.last(), QStringLiteral("Quorvik - [unnamed]"));

    Shape(100, -5, 5, 64);
    model.SetParamValue(1, 100, true, false);
    EXPECT_EQ(At(8).Max, 1000);
    model.SetParamValue(1, 100, true, true);
    EXPECT_EQ(At(8).Max, 5);
}

TEST_F(ModelTest, WholeTableFlagsLeaveTheClockAndReadOnlyParametersAlone)
{
    At(200).Attributes |= Attr::ReadOnly;
    model.LastParam = 400;
    for (const std::uint8_t state : {WriteState::Held, WriteState::Queued}) {
        model.SetAllWriteFlags(state);
        EXPECT_EQ(model.WritePending, state == WriteState::Queued);
        for (int i = 0; i <= 433; ++i) {
            const bool exempt = (i >= 256 && i <= 262) || i == 200 || i > 400;
            ASSERT_EQ(At(i).WriteFlag, exempt ? WriteState::None : state) << i;
        }
    }
}

TEST_F(ModelTest, ReadInterestIsCountedAndChecked)
{
    model.SetAllReadFlags(1);
    EXPECT_THROW(model.SetAllReadFlags(2), RuntimeFailure);
    EXPECT_EQ(At(433).ReadFlag, 1);
    model.SetAllReadFlags(-1);
    EXPECT_EQ(At(433).ReadFlag, 0);
    EXPECT_THROW(model.RemoveReadInterest(5), RuntimeFailure);
    At(5).ReadFlag = 255;
    EXPECT_THROW(model.AddReadInterest(5), RuntimeFailure);
    EXPECT_EQ(At(5).ReadFlag, 255);
}

TEST_F(ModelTest, ModelKinds)
{
    const std::vector<std::tuple<std::int32_t, bool, bool>> table = {
        {0, false, true},   {1, true, true},   {10, true, true}, {11, false, true},
        {16, false, false}, {17, true, false}, {27, true, false}};
    for (const auto &[code, isDefined, isRegenerative] : table) {
        At(Param::DriveModel).Value = code;
        EXPECT_EQ(model.IsModelDefined(), isDefined) << code;
        EXPECT_EQ(model.IsRegenerative(), isRegenerative) << code;
    }
}

TEST_F(ModelTest, ResetGivesTheFactoryStateAndKeepsReadInterest)
{
    model.ParamTable.Resize(440);
    model.LastParam = 100;
    At(226) = {1, 2, 3, 4, 5, QStringLiteral("x"), 6, WriteState::Queued};
    model.PresetTable[1].Value = 226;
    model.PresetTable[226].Max = 77;
    model.ResetToDefaults();
    EXPECT_EQ(model.LastParam, 433);
    EXPECT_EQ(model.ParamTable.UpperBound(), 433);
    EXPECT_EQ(At(226).Name, QStringLiteral("P226"));
    EXPECT_EQ(At(226).ReadFlag, 6);
    EXPECT_EQ(At(8).Max, 77) << "the rules follow the factory selectors";
    EXPECT_EQ(At(123).Max, 174) << "and the factory model";
}

} // namespace quorvik::testing
