#pragma once

#include "platform/RuntimeFailure.h"

#include <QString>
#include <cstdint>
#include <initializer_list>

namespace quorvik
{

class ParameterTable;

/**
 * The table as one emulated block sees it: checked steps on parameters that are given by number.
 *
 * Whatever fails in a step raises RuntimeFailure with the block and the parameters involved in front, as in
 * "Analog Input 1 (38, 43): Division by zero.", so that the user knows which value to put right.
 */
class EmulatedBlock
{
public:
    /**
     * @param name must outlive the block; it is put together only when something fails.
     * @param member shown behind the name unless it is 0.
     */
    EmulatedBlock(ParameterTable &table, const char *name, int member = 0)
        : table_(table)
        , name_(name)
        , member_(member)
    {
    }

    std::int32_t Value(int p) const;
    /** The value of the parameter whose number selector holds. */
    std::int32_t Followed(int selector) const;

    std::int32_t Sum(int left, int right) const;
    std::int32_t Difference(int left, int right) const;
    std::int32_t Negated(int p) const;

    /** Stores raw in p, without a flag, a mark or a limit. */
    void Store(int p, std::int32_t raw) const;
    /** Stores raw in the parameter whose number selector holds, whatever that parameter's limits. */
    void StoreFollowed(int selector, std::int32_t raw) const;
    /** The same cut to that parameter's limits; between them converted by convert. */
    void StoreFollowedClamped(int selector, double y, std::int32_t (*convert)(double)) const;

    /** Runs step and returns its result; puts the block and the parameters in front of what it raises. */
    template<typename Step> auto Naming(std::initializer_list<int> parameters, Step step) const
    {
        try {
            return step();
        } catch (const RuntimeFailure &failure) {
            Rethrow(parameters, failure);
        }
    }

private:
    void StoreComputed(int p, std::int32_t raw) const;
    [[noreturn]] void Rethrow(std::initializer_list<int> parameters, const RuntimeFailure &failure) const;

    ParameterTable &table_;
    const char *name_;
    int member_;
};

} // namespace quorvik
