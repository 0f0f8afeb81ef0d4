#pragma once

#include "find/forms/FindHost.h"

namespace quorvik
{

class ParameterTable;

/** The search over parameters and blocks, without the menus of a program. */
class SampleFind : public FindHost
{
public:
    explicit SampleFind(const ParameterTable &table)
        : table_(table)
    {
    }

    FindIndex MakeIndex() override;
    Command CommandOf(const QString &) const override { return {}; }
    void Choose(const QString &) override {}
    void ListParameter(int) override {}

private:
    const ParameterTable &table_;
};

} // namespace quorvik
