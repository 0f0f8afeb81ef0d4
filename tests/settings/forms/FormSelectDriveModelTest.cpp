#include "settings/forms/FormSelectDriveModel.h"

#include "model/Model.h"
#include "support/TestDesk.h"

#include <QComboBox>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

TEST(SelectDriveModel, OpensOnThePresentModelAndChoosingIsNoEdit)
{
    const std::tuple<int, const char *, int, int, int, int> cases[] = {
        {5, "SVR100-000 (174 Amps)", 0, 17, 36, 7},
        {17, "SVN020-000 (36 Amps)", 6, 23, 256, 51},
        {27, "SVN150-000 (256 Amps)", 19, 10, 510, 102},
        {0, "SVN020-000 (36 Amps)", 10, 1, 36, 7},
    };
    for (const auto &[present, shown, chosen, code, amps, minMotorAmps] : cases) {
        TestDesk desk;
        Model &model = desk.model;
        model.ParamTable[Param::DriveModel].Value = present;
        FormSelectDriveModel form(desk.desk, &desk.mainWindow);
        auto *models = form.findChild<QComboBox *>(QStringLiteral("ComboModels"));
        EXPECT_EQ(models->currentText(), QLatin1String(shown));
        EXPECT_EQ(models->count(), 20);
        models->setCurrentIndex(chosen);
        EXPECT_EQ(model.Value(Param::DriveModel), present) << "not before OK";
        form.show();
        QTest::mouseClick(form.findChild<QWidget *>(QStringLiteral("CommandOK")), Qt::LeftButton);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(model.Value(Param::DriveModel), code);
        EXPECT_EQ(model.Value(Param::DriveCurrent), amps);
        EXPECT_EQ(model.ParamTable[Param::MotorCurrent].Min, minMotorAmps);
        EXPECT_FALSE(model.FileModified);
        EXPECT_EQ(model.ParamTable[Param::DriveModel].WriteFlag, WriteState::None);
    }
}

TEST(SelectDriveModel, CancelChangesNothingAndHelpOpensItsTopic)
{
    TestDesk desk;
    desk.model.ParamTable[Param::MotorCurrent].Value = 40;
    FormSelectDriveModel form(desk.desk, &desk.mainWindow);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    form.findChild<QComboBox *>(QStringLiteral("ComboModels"))->setCurrentIndex(0);
    QTest::keyClick(&form, Qt::Key_F1);
    EXPECT_EQ(desk.help.Topics, QStringList{QStringLiteral("Select Drive Model.htm")});
    QTest::mouseClick(form.findChild<QWidget *>(QStringLiteral("CommandCancel")), Qt::LeftButton);
    EXPECT_EQ(desk.model.Value(Param::MotorCurrent), 40);
}

} // namespace

} // namespace quorvik::testing
