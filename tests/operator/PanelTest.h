#pragma once

#include "operator/FormVirtualOperator.h"
#include "platform/Guard.h"
#include "support/TestDesk.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik::testing
{

inline constexpr int RunParam = 239;
inline constexpr int JogParam = 241;

/** The panel opened as the menu opens it, over the factory table. */
class PanelTest : public ::testing::Test
{
protected:
    PanelTest()
    {
        SetFailureReporter([this](const RuntimeFailure &failure) { Failures.append(failure.Sentence()); });
    }
    ~PanelTest() override { SetFailureReporter({}); }

    void Open(MsgAnswer answer = MsgAnswer::Yes)
    {
        desk.asker.Expect(QStringLiteral("all inputs must be unassigned!"), answer);
        OpenVirtualOperator(desk.desk, &desk.mainWindow, fields);
        panel = desk.mainWindow.findChild<FormVirtualOperator *>();
    }

    template<typename Widget = QWidget> Widget *Find(const char *name) const
    {
        auto *widget = panel->findChild<Widget *>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    void Click(const char *name) const { QTest::mouseClick(Find(name), Qt::LeftButton); }
    QString Text(const char *label) const { return Find<QLabel>(label)->text(); }
    std::int32_t Value(int p) const { return desk.model.Value(p); }
    ParamRecord &Record(int p) { return desk.model.ParamTable[p]; }
    VirtualSetting &Setting(int index) { return desk.model.VirtualSettings.at(std::size_t(index)); }

    TestDesk desk;
    VirtualOperatorFields fields;
    FormVirtualOperator *panel = nullptr;
    QStringList Failures;
};

} // namespace quorvik::testing
