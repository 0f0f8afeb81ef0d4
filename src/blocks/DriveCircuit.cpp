#include "blocks/DriveCircuit.h"

#include "blocks/BlockCatalogue.h"

namespace quorvik
{

DriveCircuit::DriveCircuit(ParameterTable &table)
{
    std::vector<BlockNet> nets;
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet)
            continue;
        for (int member = entry.firstMember; member <= entry.lastMember; ++member) {
            sheets_.push_back(entry.sheet(entry, member, table, SheetRuler::ByCount()));
            BlockSheet *sheet = sheets_.back().get();
            nets.push_back({.window = entry.WindowCaption(member),
                            .net = &sheet->drawing.TheNet(),
                            .follow = [sheet] { sheet->Follow(); }});
        }
    }
    circuit_ = std::make_unique<Circuit>(table, std::move(nets));
    circuit_->Follow();
}

} // namespace quorvik
