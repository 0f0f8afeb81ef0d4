#pragma once

#include <memory>

namespace quorvik
{

class Circuit;
class DriveCircuit;
struct Desk;

/** The circuit of the drive for a window: the one that all share, or one of its own where the desk has none.
 */
class DeskCircuit
{
public:
    explicit DeskCircuit(Desk &desk);
    ~DeskCircuit();

    /** As of now. */
    Circuit &Get();

private:
    Desk &desk_;
    std::unique_ptr<DriveCircuit> own_;
};

} // namespace quorvik
