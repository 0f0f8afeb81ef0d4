#pragma once

#include "model/Document.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

/** A table of 434 nameless parameters, writable percentages from -1000 to 1000, which a test then shapes. */
class ModelTest : public ::testing::Test
{
protected:
    ModelTest()
    {
        table.PresetTable.Resize(433);
        for (int i = 0; i <= 433; ++i) {
            ParamRecord &record = table.PresetTable[i];
            record.Min = -1000;
            record.Max = 1000;
            record.Attributes = 32;
            record.Name = QStringLiteral("P%1").arg(i);
        }
        table.PresetTable[Param::DriveModel].Value = 5;
        table.FileLastParam = 433;
        table.ResetToDefaults();
    }

    ParamRecord &At(int number) { return table.Row(number); }
    void Shape(int number, std::int32_t rawMin, std::int32_t rawMax, std::int32_t attributes)
    {
        At(number).Min = rawMin;
        At(number).Max = rawMax;
        At(number).Attributes = attributes;
    }

    ParameterTable table;
};

} // namespace quorvik::testing
