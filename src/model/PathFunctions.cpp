#include "model/PathFunctions.h"

namespace quorvik
{

namespace
{

/** The index behind the last separator. A backslash separates only where nothing else does: elsewhere it may
 * stand in a name. */
qsizetype TitleStart(const QString &path)
{
    return path.lastIndexOf(path.contains(u'/') ? u'/' : u'\\') + 1;
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
