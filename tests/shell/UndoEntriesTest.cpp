#include "shell/ShellFixture.h"

#include <QLineEdit>
#include <QMenu>

namespace quorvik::testing
{

class UndoEntries : public ShellTest
{
protected:
    void Edit(int p, std::int32_t rawValue)
    {
        const Intent intent(Table(), Origin::EditDialog);
        Table().SetParamValue(p, rawValue, true, true);
    }
    static void Press(QWidget *widget, Qt::Key key) { QTest::keyClick(widget, key, Qt::ControlModifier); }
};

TEST_F(UndoEntries, SayWhatTheyDoAndLeaveTheirKeysToFields)
{
    LoadQuietly();
    main->show();
    main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
    EXPECT_FALSE(Entry("mnuToolsUndo")->isEnabled());
    EXPECT_EQ(Entry("mnuToolsUndo")->toolTip(), QStringLiteral("Nothing was done yet."));
    const std::int32_t before = Table().Value(Param::FwdAccelA);
    Edit(Param::FwdAccelA, before + 5);
    EXPECT_TRUE(Entry("mnuToolsUndo")->text().startsWith(QStringLiteral("&Undo (226) Fwd Accel A")));

    QLineEdit field(main.get());
    field.show();
    field.setFocus();
    for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Y})
        Press(&field, key);
    EXPECT_EQ(Table().Value(Param::FwdAccelA), before + 5);
    field.setReadOnly(true);
    Press(&field, Qt::Key_Z);
    EXPECT_EQ(Table().Value(Param::FwdAccelA), before) << "one that takes no typing has no use for them";
    EXPECT_TRUE(Entry("mnuToolsRedo")->text().startsWith(QStringLiteral("Re&do (226)")));
    field.setReadOnly(false);
    Press(&field, Qt::Key_Y);
    EXPECT_EQ(Table().Value(Param::FwdAccelA), before);
    Press(main.get(), Qt::Key_Y);
    EXPECT_EQ(Table().Value(Param::FwdAccelA), before + 5);
}

} // namespace quorvik::testing
