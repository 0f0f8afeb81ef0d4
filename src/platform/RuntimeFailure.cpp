#include "platform/RuntimeFailure.h"

#include <utility>

namespace quorvik
{

RuntimeFailure::RuntimeFailure(QString sentence)
    : sentence_(std::move(sentence))
    , utf8_(sentence_.toUtf8())
{
}

RuntimeFailure RuntimeFailure::About(const QString &name) const
{
    return RuntimeFailure(name + QStringLiteral(": ") + sentence_);
}

} // namespace quorvik
