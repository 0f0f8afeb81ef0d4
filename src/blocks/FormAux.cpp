#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {Aux1, Aux2, Aux3, Aux4, Aux5, Aux6, Aux7};

class AuxSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

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
                                      .sheet = MakeSheet<AuxSheet>};

} // namespace quorvik
