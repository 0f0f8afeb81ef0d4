// What a database of the older format has of its own; all else is as for one of the present.

#include "platform/DBEngine.h"
#include "platform/JetReader.h"

#include <algorithm>

namespace quorvik
{

namespace
{

bool IsNumber(const QString &type)
{
    static const QStringList types = {QStringLiteral("byte"),   QStringLiteral("integer"),
                                      QStringLiteral("long"),   QStringLiteral("money"),
                                      QStringLiteral("single"), QStringLiteral("double")};
    return types.contains(type);
}

bool HoldsTypeOf(const JetColumn &column, const Field &field)
{
    // A greater type is good as long as each value fits, which is looked at row by row.
    return field.type == FieldType::dbText ? column.type == QStringLiteral("text") : IsNumber(column.type);
}

} // namespace

QString Database::OpenOlder(const QString &path)
{
    older_ = std::make_unique<std::vector<JetTable>>();
    const QString reason = ReadJetFile(path, *older_);
    return reason.isEmpty() ? QString() : QStringLiteral("\"%1\" %2.").arg(title_, reason);
}

QString Database::OpenOlderSnapshot(const TableDef &table, Recordset &recordset) const
{
    const auto found = std::ranges::find_if(*older_, [&table](const JetTable &each) {
        return each.name.compare(table.Name(), Qt::CaseInsensitive) == 0;
    });
    const JetTable &read = found == older_->end() ? JetTable() : *found;
    QStringList present;
    for (const JetColumn &column : read.columns)
        present.append(column.name);
    if (QString failure = CheckColumnNames(table, present); !failure.isEmpty())
        return failure;
    std::vector<std::size_t> places;
    for (const Field &field : recordset.fields_) {
        const auto column = std::ranges::find_if(read.columns, [&field](const JetColumn &each) {
            return each.name.compare(field.name, Qt::CaseInsensitive) == 0;
        });
        if (!HoldsTypeOf(*column, field))
            return Failure(QStringLiteral("the column \"%1\" of the table \"%2\" is of another type")
                               .arg(field.name, table.Name()));
        places.push_back(std::size_t(column - read.columns.begin()));
    }
    for (int row = 0; row < read.rowCount; ++row) {
        QVariantList values;
        for (const std::size_t place : places)
            values.append(read.values[std::size_t(row) * read.columns.size() + place]);
        if (QString failure = TakeRow(table.Name(), values, recordset); !failure.isEmpty())
            return failure;
    }
    return {};
}

} // namespace quorvik
