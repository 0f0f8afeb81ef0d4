#pragma once

// The plot library's header is written with Qt's lower-case keywords, which this program does without.
#define signals Q_SIGNALS
#define slots Q_SLOTS
#define emit
#define foreach(item, items) for (item : items) // NOLINT(bugprone-macro-parentheses): one declares
#include <qcustomplot.h>
#undef signals
#undef slots
#undef emit
#undef foreach
