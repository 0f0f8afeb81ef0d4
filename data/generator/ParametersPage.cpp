#include "PresetsSource.h"

#include "model/Conversions.h"

#include <QStringList>

namespace quorvik
{

namespace
{

QString AccessOf(std::int32_t attributes)
{
    if ((attributes & Attr::ReadOnly) != 0)
        return QStringLiteral("read only");
    if ((attributes & Attr::Icr) != 0)
        return QStringLiteral("at stop");
    return QStringLiteral("read and write");
}

QString FactoryOf(const RecordArray &records, const ParamRecord &record)
{
    const QString text = ValueText(record.Value, record.Attributes);
    const bool isSelector = TypeCode(record.Attributes) == 0;
    return isSelector && record.Value != 0 ? text + u' ' + records[record.Value].Name : text;
}

} // namespace

QString ParametersPage(const RecordArray &records)
{
    QString page =
        QStringLiteral("# Parameters\n\n"
                       "The factory table, printed from `data/presets.csv`. A limit or kind may change at "
                       "run time: what hangs on a selector takes it over from the parameter selected.\n\n"
                       "| Number | Name | Range | Factory value | Access |\n"
                       "|---:|---|---|---|---|\n");
    for (int i = 0; i <= records.UpperBound(); ++i) {
        const ParamRecord &record = records[i];
        const QStringList cells = {QString::number(i), record.Name, LimitsText(record),
                                   FactoryOf(records, record), AccessOf(record.Attributes)};
        page += QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
    }
    return page;
}

} // namespace quorvik
