#pragma once

namespace quorvik
{

/** Starts the first system information viewer found on PATH. @return whether one was there and started. */
bool StartSystemInformation();

} // namespace quorvik
