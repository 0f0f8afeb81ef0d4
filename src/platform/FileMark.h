#pragma once

#include <QString>
#include <optional>

namespace quorvik
{

/** What tells a file from another one that has taken its name. */
struct FileMark {
    quint64 device = 0;
    quint64 node = 0;

    bool operator==(const FileMark &) const = default;
};

/** The mark of the file that a path leads to; nothing where there is none. */
std::optional<FileMark> MarkOf(const QString &path);

} // namespace quorvik
