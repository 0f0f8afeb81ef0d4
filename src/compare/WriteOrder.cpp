#include "compare/WriteOrder.h"

#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"

#include <algorithm>
#include <tuple>

namespace quorvik
{

namespace
{

int StageOf(int p, const ParameterTable &table)
{
    enum { Leading, Following, Commanding, Saving };
    if (p == Param::SaveParameters)
        return Saving;
    if (Param::ClearsItself(p) || p == Param::Run || p == Param::Stop || p == Param::Jog)
        return Commanding;
    return LeadsOthers(p, table) ? Leading : Following;
}

} // namespace

bool LeadsOthers(int p, const ParameterTable &table)
{
    const std::int32_t attributes = table[p].Attributes;
    return (attributes & (Attr::Refresh | Attr::Destination)) != 0 ||
           TypeOf(TypeCode(attributes)).form == ValueType::Form::Parameter;
}

std::vector<ParamValue> InWriteOrder(std::vector<ParamValue> values, const ParameterTable &table)
{
    std::stable_sort(values.begin(), values.end(), [&table](const ParamValue &a, const ParamValue &b) {
        return std::tuple(StageOf(a.param, table), a.param) < std::tuple(StageOf(b.param, table), b.param);
    });
    return values;
}

} // namespace quorvik
