#include "platform/FileMark.h"

#include <QFile>
#include <sys/stat.h>

namespace quorvik
{

std::optional<FileMark> MarkOf(const QString &path)
{
    struct stat file = {};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0)
        return {};
    return FileMark{file.st_dev, file.st_ino};
}

} // namespace quorvik
