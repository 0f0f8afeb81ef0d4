#pragma once

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "desktop/ValueBox.h"
#include "support/TestDesk.h"

#include <QApplication>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <vector>

namespace quorvik::testing
{

/** Opens block windows of the catalogue on a desk with the factory table. */
class BlockFixture : public ::testing::Test
{
protected:
    ~BlockFixture() override
    {
        while (desk.forms.Count() > 1)
            delete desk.forms.At(1);
    }

    BlockForm *Open(const char *formName, int member = 0)
    {
        for (const BlockMenuEntry &entry : BlockCatalogue())
            if (QLatin1String(entry.form) == QLatin1String(formName)) {
                auto *made = entry.make(desk.desk, member);
                made->show();
                return form = made;
            }
        ADD_FAILURE() << "no such block: " << formName;
        return nullptr;
    }

    void Close()
    {
        form->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        form = nullptr;
    }

    /** Lets TimerUpdateScreen tick once, without half a second of waiting. */
    void Tick()
    {
        auto *timer = Find<QTimer>(QStringLiteral("TimerUpdateScreen"));
        const int interval = timer->interval();
        timer->start(0);
        QSignalSpy ticks(timer, &QTimer::timeout);
        EXPECT_TRUE(ticks.wait(1000));
        timer->start(interval);
    }

    template<typename Control> Control *Find(const QString &name) const
    {
        auto *control = form->findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }
    ValueBox *Text1(int i) const { return Find<ValueBox>(ControlName("Text1", i)); }
    QLabel *Label1(int i) const { return Find<QLabel>(ControlName("Label1", i)); }
    int ReadFlag(int p) const { return desk.model.ParamTable[p].ReadFlag; }
    std::vector<int> ReadFlags() const
    {
        std::vector<int> flags;
        for (int p = 0; p <= desk.model.LastParam; ++p)
            flags.push_back(ReadFlag(p));
        return flags;
    }
    int State(const char *name) const
    {
        const Element *element = form->drawing().Find(QLatin1String(name));
        EXPECT_NE(element, nullptr) << name;
        return element ? element->state : -2;
    }

    TestDesk desk;
    BlockForm *form = nullptr;
};

} // namespace quorvik::testing
