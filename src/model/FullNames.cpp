#include "model/FullNames.h"

#include "model/ParameterTable.h"

namespace quorvik
{

QString FullNames(const ParameterTable &table, const std::vector<int> &params, int most,
                  const QString &separator)
{
    QStringList names;
    for (const int p : params) {
        if (names.size() == most) {
            names.append(QStringLiteral("and %1 more").arg(int(params.size()) - most));
            break;
        }
        names.append(table.FullName(p));
    }
    return names.join(separator);
}

} // namespace quorvik
