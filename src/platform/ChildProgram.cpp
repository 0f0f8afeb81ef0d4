#include "platform/ChildProgram.h"

#include <QCoreApplication>

namespace quorvik
{

QString ProgramBeside(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

} // namespace quorvik
