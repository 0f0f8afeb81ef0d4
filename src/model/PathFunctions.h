#pragma once

#include <QString>

namespace quorvik
{

/** What follows the last path separator; the whole text when it holds none. */
QString FileTitle(const QString &path);

/** The path less its last part, with the closing separator kept. */
QString FilePath(const QString &path);

} // namespace quorvik
