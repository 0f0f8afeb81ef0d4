#pragma once

#include "operator/FormVirtualOperator.h"
#include "platform/Guard.h"
#include "support/Controls.h"
#include "support/TestDesk.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTimer>

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
        desk.mainWindow.show();
        OpenVirtualOperator(desk.desk, &desk.mainWindow, fields);
        panel = desk.mainWindow.findChild<FormVirtualOperator *>();
    }

    template<typename Widget = QWidget> Widget *Find(const Name &name) const
    {
        return FindIn<Widget>(panel, name);
    }

    void Click(const Name &name) const { ClickIn(panel, name); }
    bool Enabled(const Name &name) const { return Find(name)->isEnabled(); }
    void Tick() const { QMetaObject::invokeMethod(Find<QTimer>("TimerUpdateScreen"), "timeout"); }
    std::string Text(const Name &label) const { return Find<QLabel>(label)->text().toStdString(); }
    QAbstractButton &Digital(int index) const
    {
        return *Find<QAbstractButton>(ControlName("CommandDigital", index));
    }
    std::int32_t Value(int p) const { return desk.model.Value(p); }
    ParamRecord &Record(int p) { return desk.model.ParamTable[p]; }
    VirtualSetting &Setting(int index) { return desk.model.VirtualSettings.at(std::size_t(index)); }

    TestDesk desk;
    VirtualOperatorFields fields;
    FormVirtualOperator *panel = nullptr;
    QStringList Failures;
};

} // namespace quorvik::testing
