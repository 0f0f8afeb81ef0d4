#include "find/forms/FormFind.h"

#include "find/forms/FindModel.h"
#include "find/forms/ScriptedFind.h"
#include "settings/forms/ParameterListModel.h"
#include "support/WindowTest.h"

#include <QMenu>
#include <QTreeView>

namespace quorvik::testing
{

class FormFindTest : public WindowTest
{
protected:
    FormFindTest()
    {
        desk.desk.ShowParameter = [this](int p) {
            host.Chosen.append(QStringLiteral("show %1").arg(p));
            return p != Param::RunEnable;
        };
        desk.desk.ShowOnMap = [this](int p) { host.Chosen.append(QStringLiteral("map %1").arg(p)); };
    }
    void Open()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        Show<FormFind>(host, &desk.mainWindow);
    }
    void Look(const char *query) const { Type("TextFind", query); }
    QAbstractItemModel *Rows() const { return Find<QTreeView>("ListFound")->model(); }
    std::string Cell(int row, int column) const
    {
        return Rows()->index(row, column).data().toString().toStdString();
    }
    /** What the field says that it stands on. */
    std::string Current() const { return Find("TextFind")->accessibleDescription().toStdString(); }

    ScriptedFind host{desk};
};

TEST_F(FormFindTest, KeysWorkOnTheRowWhileTheFieldKeepsTheFocus)
{
    const struct {
        const char *query;
        int down;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char *chosen;
    } rows[] = {
        {"217", 0, Qt::Key_Return, {}, "show 217"},
        {"22", 0, Qt::Key_Return, {}, "show 22 list 22"}, // no window shows it
        {"fwd accel", 1, Qt::Key_Return, {}, "show 307"},
        {"fwd accel", 1, Qt::Key_Enter, Qt::AltModifier | Qt::KeypadModifier, "map 307"},
        {"velocity loop", 0, Qt::Key_Return, {}, "mnuBlockVloop"},
        {"save", 0, Qt::Key_Return, {}, "mnuFileSave(0)"},
        {"link lost", 0, Qt::Key_Return, {}, "Lost Link.htm"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.query);
        host.Chosen.clear();
        desk.help.Topics.clear();
        Open();
        Look(row.query);
        for (int i = 0; i < row.down; ++i)
            Press(Qt::Key_Down);
        EXPECT_EQ(QApplication::focusWidget(), Find("TextFind"));
        Press(row.key, row.modifiers);
        EXPECT_EQ((host.Chosen + desk.help.Topics).join(u' '), Name(row.chosen));
        EXPECT_FALSE(window->isVisible());
    }
    Open();
    EXPECT_EQ(Text("LabelFound"), "Found recently");
    EXPECT_EQ(Cell(0, FindModel::TitleColumn), "When the link is lost");
    EXPECT_EQ(Cell(3, FindModel::TitleColumn), "(307) Fwd Accel B") << "once, where it was chosen last";
    EXPECT_EQ(Rows()->rowCount(), 6);
}

TEST_F(FormFindTest, WhatCannotBeDoneIsSaidAndTheWindowStays)
{
    Open();
    const struct {
        const char *query;
        Qt::KeyboardModifiers modifiers;
        const char *said;
    } rows[] = {
        {"restart", {}, "\"Restart Drive\" can be chosen on line only."},
        {"242", Qt::ControlModifier, "(242) Run Status cannot be changed: Read Only."},
        {"save", Qt::ControlModifier, "Only a parameter has a value."},
        {"save", Qt::AltModifier, "Only a parameter stands on the map."},
        {"nothing so called",
         {},
         "Nothing found. Each word must fit: try fewer of them, or only the beginning of one."},
    };
    for (const auto &row : rows) {
        Look(row.query);
        Press(Qt::Key_Return, row.modifiers);
        EXPECT_EQ(Text("LabelFound"), row.said);
    }
    EXPECT_TRUE(host.Chosen.isEmpty());
    EXPECT_EQ(Current(), "");
    Press(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(FormFindTest, ValuesAndStatesFollowAndCtrlEnterChangesThem)
{
    Open();
    Look("fwd accel");
    EXPECT_EQ(Cell(0, FindModel::ValueColumn), "5.0 Sec");
    auto *follow = Find<QTimer>("TimerFollow");
    follow->stop();
    QMetaObject::invokeMethod(follow, "timeout");
    int changes = 0;
    QObject::connect(Rows(), &QAbstractItemModel::dataChanged, window, [&] { ++changes; });
    desk.table.SetValue(Param::FwdAccelA, 75, ChangeCause::Emulated);
    desk.table.SetValue(Param::Reference1, 2500, ChangeCause::Emulated);
    Q_EMIT desk.table.Signals().Computed(Param::FwdAccelA);
    QMetaObject::invokeMethod(follow, "timeout");
    EXPECT_EQ(changes, 1);
    const auto isRead = [this](int p) { return int(Record(p).ReadFlag); };
    EXPECT_EQ(isRead(Param::FwdAccelB), 1) << "in sight";
    EXPECT_EQ(isRead(Param::FwdDecelA), 0);
    EXPECT_EQ(Cell(0, FindModel::ValueColumn), "7.5 Sec");
    EXPECT_EQ(Rows()->index(0, 0).data(ParameterListModel::StateRole), int(ValueState::Emulated));

    desk.asker.OnEditValue = [](int, std::int32_t) { return 90; };
    Press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(P(Param::FwdAccelA), 90);
    EXPECT_TRUE(window->isVisible());
    Press(Qt::Key_Escape);
    EXPECT_EQ(isRead(Param::FwdAccelB), 0);
}

TEST_F(FormFindTest, TheMenuOfARowDoesTheSame)
{
    Open();
    Look("fwd accel");
    auto *list = Find<QTreeView>("ListFound");
    const QPoint second = list->visualRect(Rows()->index(1, 1)).center();
    Q_EMIT list->customContextMenuRequested(second);
    FindIn<QMenu>(window, "")->actions().last()->trigger();
    EXPECT_EQ(host.Chosen.join(u' '), Name("map 307"));
}

} // namespace quorvik::testing
