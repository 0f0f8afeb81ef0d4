#include "SampleComparison.h"

#include "blocks/BlockCatalogue.h"
#include "model/Document.h"
#include "model/ParameterTable.h"

namespace quorvik
{

SampleComparison::SampleComparison(Desk &desk)
    : desk_(desk)
    , file_(desk.table, desk.document)
    , saving_(desk.document, desk.asker, file_, {})
{
}

OperationResult SampleComparison::ReadDrive(ParameterSet &set)
{
    set = ParameterSet::Of(desk_.table, QStringLiteral("drive, read 14:03:12"));
    const std::pair<int, std::int32_t> values[] = {
        {Param::Reference1, 2500},
        {Param::Reference2, -1250},
        {Param::FwdAccelA, 75},
        {Param::RevAccelA, 75},
        {Param::JogReference, 800},
        {Param::StopMode, 1},
        {Param::AnalogIn2Destination, Param::Reference1},
        {Param::RelayOut1Source, Param::DriveState},
        {Param::PropGainA, 40},
        {Param::DriveState, 1},
    };
    for (const auto &[p, rawValue] : values)
        set.records[p].Value = rawValue;
    return {};
}

QStringList SampleComparison::BlockNames() const
{
    return quorvik::BlockNames(desk_.table.UpperBound() + 1);
}

} // namespace quorvik
