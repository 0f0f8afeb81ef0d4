#pragma once

#include <QString>

namespace quorvik
{

/** Whether a page may be left, and the name of the control that the focus belongs to if not. */
struct PageCheck {
    bool passed = true;
    QString focus; ///< empty where it stays
};

} // namespace quorvik
