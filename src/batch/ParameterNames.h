#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace quorvik
{

class ParameterTable;

/** Which parameters a word of the command line means, or why it means none. */
struct NamedParams {
    std::vector<int> params = {};
    QString failure = {};
};

/**
 * A number ("226"), a range of numbers ("220-229"), a name or a part of one, capitals or not; a whole name
 * goes before parts of others. A number need not be in the table, since the drive may have more or fewer.
 */
NamedParams FindParams(const QString &text, const ParameterTable &table);

/** Those of all the words, in their order, each once. */
NamedParams FindAllParams(const QStringList &texts, const ParameterTable &table);

/** Of a word that must mean one parameter. */
NamedParams FindOneParam(const QString &text, const ParameterTable &table);

} // namespace quorvik
