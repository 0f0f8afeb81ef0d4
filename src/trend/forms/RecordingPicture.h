#pragma once

#include "trend/TrendData.h"

#include <QImage>

namespace quorvik
{

class ParameterTable;

/** The plots of a recording as a report shows them: all of it, on white, with its title and what the curves
 * are. Null where it cannot be drawn. @param table the factory table. */
QImage PictureOf(const TrendDataPtr &data, ParameterTable &table);

} // namespace quorvik
