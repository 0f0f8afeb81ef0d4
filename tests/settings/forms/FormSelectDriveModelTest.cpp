#include "settings/forms/FormSelectDriveModel.h"

#include "support/WindowTest.h"

namespace quorvik::testing
{

using SelectDriveModel = WindowTest;

TEST_F(SelectDriveModel, OpensOnThePresentModelAndChoosingIsNoEdit)
{
    const std::tuple<int, const char *, int, int, int, int> cases[] = {
        {5, "SVR100-000 (174 Amps)", 0, 17, 36, 7},
        {17, "SVN020-000 (36 Amps)", 6, 23, 256, 51},
        {0, "SVN020-000 (36 Amps)", 10, 1, 36, 7},
    };
    for (const auto &[present, shown, chosen, code, amps, minMotorAmps] : cases) {
        P(Param::DriveModel) = present;
        Show<FormSelectDriveModel>(&desk.mainWindow);
        EXPECT_EQ(Text("ComboModels"), shown);
        EXPECT_EQ(Find<QComboBox>("ComboModels")->count(), 20);
        Pick("ComboModels", chosen);
        EXPECT_EQ(P(Param::DriveModel), present) << "not before OK";
        Click("CommandOK");
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(P(Param::DriveModel), code);
        EXPECT_EQ(P(Param::DriveCurrent), amps);
        EXPECT_EQ(Record(Param::MotorCurrent).Min, minMotorAmps);
        EXPECT_FALSE(desk.document.FileModified);
        EXPECT_EQ(Record(Param::DriveModel).WriteFlag, WriteState::None);
    }
}

TEST_F(SelectDriveModel, CancelChangesNothingAndHelpOpensItsTopic)
{
    P(Param::MotorCurrent) = 40;
    Show<FormSelectDriveModel>(&desk.mainWindow);
    Pick("ComboModels", 0);
    Press(Qt::Key_F1);
    EXPECT_EQ(desk.help.Topics, QStringList{Name("Select Drive Model.htm")});
    Click("CommandCancel");
    EXPECT_EQ(P(Param::MotorCurrent), 40);
}

} // namespace quorvik::testing
