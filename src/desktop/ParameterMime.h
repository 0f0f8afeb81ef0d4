#pragma once

#include <QMimeData>
#include <optional>

namespace quorvik
{

/** A parameter that is dragged from a value box or a legend: its number, and its name as text for other
 * programs. The caller owns it. */
QMimeData *MakeParameterMime(int p, const QString &text);
/** The parameter that is dragged; nothing where it is something else. */
std::optional<int> ParameterOf(const QMimeData &data);

} // namespace quorvik
