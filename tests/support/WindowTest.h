#pragma once

#include "platform/Guard.h"
#include "support/Controls.h"
#include "support/TestDesk.h"

#include <QLabel>
#include <QPointer>

namespace quorvik::testing
{

/** A window over a desk with the factory table, worked by the names of its controls. */
class WindowTest : public ::testing::Test
{
protected:
    WindowTest()
    {
        SetFailureReporter([this](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    }
    ~WindowTest() override
    {
        SetFailureReporter([](const RuntimeFailure &) {});
    }

    template<typename Control = QWidget> Control *Find(const Name &name) const
    {
        return FindIn<Control>(window, name);
    }
    void Click(const Name &name) const { ClickIn(window, name); }
    QString Text(const Name &label) const { return Find<QLabel>(label)->text(); }
    std::int32_t &P(int p) { return desk.model.ParamTable[p].Value; }

    TestDesk desk;
    QStringList told; ///< run-time failures, as the user was told them
    QPointer<QWidget> window;
};

} // namespace quorvik::testing
