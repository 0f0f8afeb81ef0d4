#pragma once

class QIcon;
class QString;

namespace quorvik
{

/** An icon of the program by its file's name, sharp at every size; "quorvik" is the program's own. */
QIcon IconOf(const QString &name);

} // namespace quorvik
