#pragma once

#include <QString>

namespace quorvik::testing
{

/** The name of a control or a text in one, as a literal or put together. */
struct Name : QString {
    using QString::QString;
    Name(const char *latin1)
        : QString(QString::fromLatin1(latin1))
    {
    }
    Name(const QString &text)
        : QString(text)
    {
    }
};

} // namespace quorvik::testing
