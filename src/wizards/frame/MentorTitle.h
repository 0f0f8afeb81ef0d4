#pragma once

#include "platform/Asker.h"

namespace quorvik
{

/** The title of the Mentors' own message boxes. */
inline QString MentorTitle()
{
    return AppTitle() + QStringLiteral(" Mentor");
}

} // namespace quorvik
