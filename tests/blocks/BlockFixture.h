#pragma once

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "blocks/diagram/ClickArea.h"
#include "desktop/ValueBox.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <initializer_list>
#include <utility>
#include <vector>

namespace quorvik::testing
{

/** Opens block windows of the catalogue on a desk with the factory table. */
class BlockFixture : public WindowTest
{
protected:
    using Values = std::initializer_list<std::pair<int, std::int32_t>>;

    void Open(const char *formName, int member = 0)
    {
        for (const BlockMenuEntry &entry : BlockCatalogue())
            if (QLatin1String(entry.form) == QLatin1String(formName)) {
                form = entry.make(desk.desk, member);
                form->show();
                window = form;
                return;
            }
        FAIL() << "no such block: " << formName;
    }

    /** As the title bar does it. */
    void Close()
    {
        form->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void CloseByButton()
    {
        Press("CommandClose");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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

    void Set(const Values &values)
    {
        for (const auto &[number, rawValue] : values)
            desk.model.ParamTable[number].Value = rawValue;
    }

    ValueBox *Text1(int i) const { return Find<ValueBox>(ControlName("Text1", i)); }
    QLabel *Label1(int i) const { return Find<QLabel>(ControlName("Label1", i)); }
    ClickArea *Area(const char *name) const { return Find<ClickArea>(name); }
    void Press(const char *button) const { Find<QPushButton>(button)->click(); }
    int Number(int row) const { return Label1(row)->property("Tag").toInt(); }
    int State(const char *part) const { return form->drawing().Find(QLatin1String(part))->state; }
    int ReadFlag(int p) const { return desk.model.ParamTable[p].ReadFlag; }
    std::vector<int> ReadFlags() const
    {
        std::vector<int> flags;
        for (int p = 0; p <= desk.model.LastParam; ++p)
            flags.push_back(ReadFlag(p));
        return flags;
    }

    const std::vector<int> before = ReadFlags();
    BlockForm *form = nullptr;
};

} // namespace quorvik::testing
