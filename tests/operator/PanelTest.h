#pragma once

#include "operator/FormVirtualOperator.h"
#include "support/WindowTest.h"

namespace quorvik::testing
{

inline constexpr int RunParam = 239;
inline constexpr int JogParam = 241;

/** The panel opened as the menu opens it, over the factory table. */
class PanelTest : public WindowTest
{
protected:
    void Open(MsgAnswer answer = MsgAnswer::Yes)
    {
        desk.asker.Expect("all inputs must be unassigned!", answer);
        desk.mainWindow.show();
        OpenVirtualOperator(desk.desk, &desk.mainWindow, fields);
        window = panel = desk.mainWindow.findChild<FormVirtualOperator *>();
    }

    VirtualSetting &Setting(int index) { return desk.document.VirtualSettings.at(std::size_t(index)); }

    VirtualOperatorFields fields;
    FormVirtualOperator *panel = nullptr;
};

} // namespace quorvik::testing
