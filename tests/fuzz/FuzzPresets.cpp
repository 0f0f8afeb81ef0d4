// The source of the factory table.

#include "Fuzzing.h"

#include "PresetsSource.h"
#include "platform/RuntimeFailure.h"

using namespace quorvik;
using namespace quorvik::fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString csv = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    RecordArray records;
    if (ParsePresets(csv, records).isEmpty())
        for (int i = 0; i <= records.UpperBound(); ++i)
            Require(records[i].ReadFlag == 0 && records[i].WriteFlag == 0, "a fresh record has no flags");
    return 0;
}
