#pragma once

#include <QString>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** The first most of the parameters as messages call them, and how many more there are. */
QString FullNames(const ParameterTable &table, const std::vector<int> &params, int most,
                  const QString &separator);

} // namespace quorvik
