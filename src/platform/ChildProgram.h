#pragma once

#include <QString>

namespace quorvik
{

/** The path of a program that belongs to this one and lies beside it: "quorvik-jet". */
QString ProgramBeside(const QString &name);

} // namespace quorvik
