#pragma once

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "desktop/ValueBox.h"
#include "support/WindowTest.h"

#include <algorithm>
#include <initializer_list>
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
        const auto entry = std::ranges::find(BlockCatalogue(), Name(formName),
                                             [](const BlockMenuEntry &each) { return Name(each.form); });
        form = MakeBlockForm(desk.desk, *entry, member);
        form->show();
        window = form;
    }

    void CloseByButton()
    {
        Click("CommandClose");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void Set(const Values &values)
    {
        for (const auto &[number, rawValue] : values)
            P(number) = rawValue;
    }

    ValueBox *Text1(int i) const { return Find<ValueBox>(ControlName("Text1", i)); }
    QLabel *Label1(int i) const { return Find<QLabel>(ControlName("Label1", i)); }
    std::string ValueText(int row) const { return Text(ControlName("Text1", row)); }
    std::string CaptionText(int row) const { return Text(ControlName("Label1", row)); }
    int Number(int row) const { return Label1(row)->property("Tag").toInt(); }
    int State(const char *part) const { return form->drawing().Find(Name(part))->state; }
    int ReadFlag(int p) const { return desk.table[p].ReadFlag; }
    std::vector<int> ReadFlags() const
    {
        std::vector<int> flags;
        for (int p = 0; p <= desk.table.LastParam; ++p)
            flags.push_back(ReadFlag(p));
        return flags;
    }

    const std::vector<int> before = ReadFlags();
    BlockForm *form = nullptr;
};

} // namespace quorvik::testing
