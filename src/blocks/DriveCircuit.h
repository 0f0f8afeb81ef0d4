#pragma once

#include "blocks/BlockSheet.h"
#include "circuit/Circuit.h"

#include <memory>
#include <vector>

namespace quorvik
{

/** The circuit of the drive, made of the sheets of all blocks. It needs no window. */
class DriveCircuit
{
public:
    explicit DriveCircuit(ParameterTable &table);

    Circuit &Get() { return *circuit_; }
    const Circuit &Get() const { return *circuit_; }
    /** The sheet of a block of the circuit; its net has the circuit's local numbers, as has the net of the
     * window that shows the same block. */
    const BlockSheet &Sheet(int block) const { return *sheets_[std::size_t(block)]; }

private:
    std::vector<std::unique_ptr<BlockSheet>> sheets_;
    std::unique_ptr<Circuit> circuit_;
};

} // namespace quorvik
