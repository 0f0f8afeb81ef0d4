#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {Aux1, Aux2, Aux3, Aux4, Aux5, Aux6, Aux7};

class FormAux final : public BlockForm
{
public:
    using BlockForm::BlockForm;

protected:
    void Draw(Drawing &) override
    {
        Table({0, 0}, QStringLiteral("Spare Parameters"), {Aux1, Aux2, Aux3, Aux4, Aux5, Aux6, Aux7});
    }
};

} // namespace

constexpr BlockDescriptor BlockAux = {.form = "FormAux",
                                      .window = "Auxillary Parameters",
                                      .helpTopic = "Auxillary.htm",
                                      .rows = Rows,
                                      .make = MakeBlock<FormAux, BlockAux>};

} // namespace quorvik
