#pragma once

#include "support/TestDesk.h"

#include <functional>

namespace quorvik::testing
{

/** What to do with a shown window; a Mentor comes once with each of its pages. The picture is what the help
 * calls it. */
using Visit = std::function<void(QWidget &window, const QString &picture)>;

void VisitBlocks(TestDesk &desk, const Visit &visit);
/** Every window but the main one, the blocks, the Mentors and "About". */
void VisitOtherWindows(TestDesk &desk, const Visit &visit);
/** Fails where a page cannot be reached. */
void VisitMentors(TestDesk &desk, const Visit &visit);

} // namespace quorvik::testing
