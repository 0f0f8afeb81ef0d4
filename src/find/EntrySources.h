#pragma once

#include <QStringList>

namespace quorvik
{

class FindIndex;
class ParameterTable;
struct HelpWords;

/** Adds the parameters that exist, each with the texts of its values, its unit, and what the help says of it.
 * @param blocks by number, the window that shows a parameter. */
void AddParameters(FindIndex &index, const ParameterTable &table, const QStringList &blocks,
                   const HelpWords &words);

/** Adds the topics of the help. */
void AddTopics(FindIndex &index, const HelpWords &words);

} // namespace quorvik
