#pragma once

#include "platform/Guard.h"
#include "support/Controls.h"
#include "support/TestDesk.h"

namespace quorvik::testing
{

/** A window over a desk with the factory table, worked by the names of its controls. */
class WindowTest : public ::testing::Test, protected Controls
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
    void TearDown() override { delete shown_.data(); }

    /** Puts up a window in place of the last one, and works that from now on. */
    template<typename Form, typename... Arguments> Form *Show(Arguments &&...arguments)
    {
        delete shown_.data();
        auto *form = new Form(desk.desk, std::forward<Arguments>(arguments)...);
        window = shown_ = form;
        form->show();
        form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form));
        return form;
    }
    /** Closes the window as its frame does, and lets it go. */
    void Close() const
    {
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /** Lets the window's timer tick once, without half a second of waiting. */
    void Tick() const { QMetaObject::invokeMethod(Find<QTimer>("TimerUpdateScreen"), "timeout"); }

    ParamRecord &Record(int p) { return desk.table.Row(p); }
    std::int32_t &P(int p) { return Record(p).Value; }

    TestDesk desk;
    QStringList told; ///< run-time failures, as the user was told them

private:
    QPointer<QWidget> shown_;
};

} // namespace quorvik::testing
