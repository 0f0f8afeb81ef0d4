#pragma once

namespace quorvik
{

class MDIFormMain;

/** Fills in what the engines and the windows need of each other. */
void WireSeams(MDIFormMain &main);

} // namespace quorvik
