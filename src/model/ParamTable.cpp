#include "model/ParamTable.h"

#include "platform/RuntimeFailure.h"

namespace quorvik
{

ParamRecord &RecordArray::operator[](int number)
{
    if (number < 0 || number > UpperBound())
        RaiseBounds(number);
    return records_[std::size_t(number)];
}

const ParamRecord &RecordArray::operator[](int number) const
{
    if (number < 0 || number > UpperBound())
        RaiseBounds(number);
    return records_[std::size_t(number)];
}

void RecordArray::RaiseBounds(int number) const
{
    throw RuntimeFailure(
        QStringLiteral("There is no parameter %1; the last one is %2.").arg(number).arg(UpperBound()));
}

} // namespace quorvik
