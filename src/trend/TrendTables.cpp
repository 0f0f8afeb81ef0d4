#include "trend/TrendTables.h"

#include <QByteArray>
#include <QtEndian>
#include <array>

namespace quorvik::TrendTables
{

namespace
{

constexpr std::size_t MostNumbers = 8;

} // namespace

const QStringList &Statements()
{
    static const QStringList statements = {
        QStringLiteral("CREATE TABLE head (key TEXT NOT NULL PRIMARY KEY, value NOT NULL, "
                       "checksum INTEGER NOT NULL) WITHOUT ROWID"),
        QStringLiteral("CREATE TABLE channels (position INTEGER PRIMARY KEY, param INTEGER NOT NULL, "
                       "pace INTEGER NOT NULL, attributes INTEGER NOT NULL, name TEXT NOT NULL, "
                       "checksum INTEGER NOT NULL)"),
        QStringLiteral("CREATE TABLE samples (param INTEGER NOT NULL, position INTEGER NOT NULL, "
                       "time_us INTEGER NOT NULL, span_us INTEGER NOT NULL, gap INTEGER NOT NULL, "
                       "raw INTEGER NOT NULL, checksum INTEGER NOT NULL, PRIMARY KEY (param, position)) "
                       "WITHOUT ROWID"),
        QStringLiteral("CREATE TABLE marks (id INTEGER PRIMARY KEY, time_us INTEGER NOT NULL, "
                       "kind INTEGER NOT NULL, param INTEGER NOT NULL, text TEXT NOT NULL, "
                       "checksum INTEGER NOT NULL)"),
    };
    return statements;
}

QString Written(const QString &text)
{
    // Not null, and without halves of characters.
    const QByteArray bytes = text.left(MostText).toUtf8();
    return bytes.isEmpty() ? QStringLiteral("") : QString::fromUtf8(bytes);
}

int CheckOf(std::initializer_list<qint64> numbers, const QString &text)
{
    std::array<qint64, MostNumbers> bytes{};
    std::size_t count = 0;
    for (const qint64 number : numbers)
        bytes[count++] = qToLittleEndian(number);
    const auto size = qsizetype(count) * qsizetype(sizeof(qint64));
    const QByteArrayView packed(reinterpret_cast<const char *>(bytes.data()), size);
    const quint16 check = qChecksum(packed);
    return text.isEmpty() ? check : check ^ qChecksum(text.toUtf8());
}

} // namespace quorvik::TrendTables
