#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/** One run of a fuzz target over one input; libFuzzer's own name for it. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace quorvik::fuzzing
{

/** Ends the process where something does not hold, which is what a fuzzer looks for. */
inline void Require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/** The bytes of an input, one after another; zeros past its end. */
class Bytes
{
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : data_(data)
        , size_(size)
    {
    }

    bool AtEnd() const { return at_ >= size_; }
    std::uint8_t Next() { return at_ < size_ ? data_[at_++] : std::uint8_t(0); }
    int Next16()
    {
        const int high = Next();
        return high * 256 + Next();
    }
    QByteArray Take(std::size_t count)
    {
        const std::size_t taken = count < size_ - at_ ? count : size_ - at_;
        const QByteArray bytes(reinterpret_cast<const char *>(data_ + at_), qsizetype(taken));
        at_ += taken;
        return bytes;
    }
    QByteArray Rest() { return Take(size_ - at_); }

private:
    const std::uint8_t *data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

} // namespace quorvik::fuzzing
