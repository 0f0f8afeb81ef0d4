#include "blocks/DeskCircuit.h"

#include "blocks/DriveCircuit.h"
#include "desktop/Desk.h"

namespace quorvik
{

DeskCircuit::DeskCircuit(Desk &desk)
    : desk_(desk)
{
}

DeskCircuit::~DeskCircuit() = default;

Circuit &DeskCircuit::Get()
{
    if (Circuit *shared = desk_.TheCircuit())
        return *shared;
    if (!own_)
        own_ = std::make_unique<DriveCircuit>(desk_.table);
    own_->Get().Follow();
    return own_->Get();
}

} // namespace quorvik
