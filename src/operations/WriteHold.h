#pragma once

#include "model/ParameterTable.h"

#include <vector>

namespace quorvik
{

/**
 * Holds all writable parameters, and what was queued before: nothing of them is sent, and no polled value is
 * put over them. Run, Stop and Jog are only taken back; who gives one meanwhile means it now. Going out of
 * scope gives back the flags as they were, so that no parameter stays held.
 */
class WriteHold
{
public:
    explicit WriteHold(ParameterTable &table)
        : table_(table)
    {
        for (int i = 0; i <= table_.LastParam; ++i)
            flags_.push_back(table_[i].WriteFlag);
        table_.SetAllWriteFlags(WriteState::Held);
        for (int i = 0; i <= table_.LastParam; ++i)
            if (table_[i].WriteFlag == WriteState::Queued)
                table_.Row(i).WriteFlag = WriteState::Held;
        for (const int p : {Param::Run, Param::Stop, Param::Jog})
            if (p <= table_.LastParam)
                table_.Row(p).WriteFlag = WriteState::None;
    }
    ~WriteHold() { GiveBack(); }
    WriteHold(const WriteHold &) = delete;
    WriteHold &operator=(const WriteHold &) = delete;

    /** Queues all of the set instead; what is not of it, the clock, is given back. */
    void Release()
    {
        table_.SetAllWriteFlags(WriteState::Queued);
        GiveBack();
    }
    /** Everything stays held until it is read, written or entered. */
    void Stay() { flags_.clear(); }

private:
    void GiveBack()
    {
        for (std::size_t i = 0; i < flags_.size(); ++i) {
            ParamRecord &record = table_.Row(int(i));
            const bool isMotion = i == Param::Run || i == Param::Stop || i == Param::Jog;
            if (record.WriteFlag != (isMotion ? WriteState::None : WriteState::Held))
                continue;
            record.WriteFlag = flags_[i];
            table_.WritePending |= flags_[i] == WriteState::Queued;
        }
        flags_.clear();
    }

    ParameterTable &table_;
    std::vector<std::uint8_t> flags_;
};

} // namespace quorvik
