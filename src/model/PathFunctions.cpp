#include "model/PathFunctions.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** The index behind the last separator of either kind of platform. */
qsizetype TitleStart(const QString &path)
{
    return std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/')) + 1;
}

} // namespace

QString FileTitle(const QString &path)
{
    return path.mid(TitleStart(path));
}

QString FilePath(const QString &path)
{
    return path.left(TitleStart(path));
}

} // namespace quorvik
