#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

constexpr BlockRow Rows[] = {
    {"Aux 1", 0}, {"Aux 2", 1}, {"Aux 3", 2}, {"Aux 4", 3}, {"Aux 5", 4}, {"Aux 6", 5}, {"Aux 7", 6},
};

class FormAux final : public BlockForm
{
public:
    explicit FormAux(Desk &desk)
        : BlockForm(desk, {.name = "FormAux",
                           .caption = QStringLiteral("Auxillary Parameters"),
                           .helpTopic = "Auxillary.htm",
                           .rows = Rows,
                           .base = 115})
    {
    }

protected:
    void Draw(Drawing &) override
    {
        Table({0, 0}, QStringLiteral("Spare Parameters"), {0, 1, 2, 3, 4, 5, 6});
    }
};

} // namespace

BlockForm *MakeFormAux(Desk &desk, int);

BlockForm *MakeFormAux(Desk &desk, int)
{
    return Loaded(new FormAux(desk));
}

} // namespace quorvik
