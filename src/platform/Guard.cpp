#include "platform/Guard.h"

#include <QDebug>

namespace quorvik
{

namespace
{

FailureReporter &Reporter()
{
    static FailureReporter reporter = [](const RuntimeFailure &failure) {
        qCritical() << failure.Sentence();
    };
    return reporter;
}

} // namespace

void SetFailureReporter(FailureReporter reporter)
{
    Reporter() = std::move(reporter);
}

void ReportFailure(const RuntimeFailure &failure)
{
    Reporter()(failure);
}

} // namespace quorvik
