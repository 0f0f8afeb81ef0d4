// Writes a settings file of the older format, and tells on the standard output what is in it.

#include "jet/JetSettings.h"
#include "model/Document.h"
#include "settings/SettingsFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <cstdio>

using namespace quorvik;
using namespace quorvik::jet;

namespace
{

/** Every letter that code page 1252 has. */
QString Letters()
{
    QString letters;
    for (char16_t code = 0x20; code < 0x2200; ++code)
        if (code == u'?' || Code1252(QString(QChar(code))) != "?")
            letters.append(QChar(code));
    return letters;
}

/** Names, notes and values as wide as their columns are. */
void Decorate(ParameterTable &table, Document &document)
{
    const QString letters = Letters();
    for (int i = 0; i <= table.LastParam; ++i) {
        ParamRecord &record = table.Row(i);
        const int at = i * 13 % int(letters.size());
        record.Name = (letters.mid(at) + letters).left(i % 41);
        record.Min = i % 2 == 0 ? std::numeric_limits<std::int32_t>::min() : -i;
        record.Max = std::numeric_limits<std::int32_t>::max() - i;
    }
    document.Notes = (letters + letters).left(255);
    int number = 0;
    for (VirtualSetting &slot : document.VirtualSettings)
        slot = {std::int16_t(-number), number * 1000003, -number * 70001, ++number};
}

QString Decoded(const QByteArray &bytes)
{
    static const QString letters = Letters();
    QString text;
    for (const char byte : bytes)
        for (const QChar letter : letters)
            if (Code1252(QString(letter))[0] == byte)
                text.append(letter);
    return text;
}

QJsonObject Told(const Table &table)
{
    QJsonArray columns;
    for (const Column &column : table.columns)
        columns.append(QJsonArray{QString::fromLatin1(column.name), int(column.type), column.size});
    QJsonArray rows;
    bool isMoved = false;
    for (const Row &row : table.rows) {
        isMoved = isMoved || row.place == Place::Overflow;
        QJsonArray values;
        for (const QVariant &value : row.values)
            values.append(value.isNull()                            ? QJsonValue()
                          : value.typeId() == QMetaType::QByteArray ? QJsonValue(Decoded(value.toByteArray()))
                                                                    : QJsonValue(value.toInt()));
        if (row.place != Place::Deleted)
            rows.append(values);
    }
    return {{QStringLiteral("name"), QString::fromLatin1(table.name)},
            {QStringLiteral("columns"), columns},
            {QStringLiteral("moved"), isMoved},
            {QStringLiteral("rows"), rows}};
}

void Damage(const QString &path, quint32 seed)
{
    QRandomGenerator random(seed);
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return;
    for (int i = 0; i < 20; ++i) {
        file.seek(2048 + random.bounded(file.size() - 2048));
        file.putChar(char(random.bounded(256)));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The file to write."));
    parser.addOptions({
        {QStringLiteral("rows"), QStringLiteral("That many parameters."), QStringLiteral("N")},
        {QStringLiteral("letters"), QStringLiteral("Texts of all letters, values of all sizes.")},
        {QStringLiteral("notes"), QStringLiteral("The notes."), QStringLiteral("TEXT"), QStringLiteral(" ")},
        {QStringLiteral("no-notes"), QStringLiteral("Null for notes.")},
        {QStringLiteral("deleted"), QStringLiteral("A deleted row before each N-th."), QStringLiteral("N")},
        {QStringLiteral("overflow"), QStringLiteral("Each N-th row on another page."), QStringLiteral("N")},
        {QStringLiteral("no-slots"), QStringLiteral("Without the virtual operator.")},
        {QStringLiteral("damage"), QStringLiteral("Change bytes by this seed."), QStringLiteral("SEED")},
    });
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    const auto number = [&](const char *name) { return parser.value(QLatin1String(name)).toInt(); };

    ParameterTable table;
    Document document{table};
    const QString failure = SettingsFile(table, document).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE));
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(failure));
        return 1;
    }
    table.ResetToDefaults();
    document.Notes =
        parser.isSet(QStringLiteral("no-notes")) ? QString() : parser.value(QStringLiteral("notes"));
    if (parser.isSet(QStringLiteral("rows"))) {
        table.LastParam = std::int16_t(number("rows") - 1);
        table.Resize(table.LastParam);
    }
    if (parser.isSet(QStringLiteral("letters")))
        Decorate(table, document);

    std::vector<Table> tables = SettingsTables(table, document);
    for (std::size_t i = 0; const int every = number("overflow"); ++i) {
        if (i == tables[Settings].rows.size())
            break;
        if (i % std::size_t(every) == 0)
            tables[Settings].rows[i].place = Place::Overflow;
    }
    if (const int every = number("deleted"))
        AddDeletedRows(tables[Settings], every);
    if (parser.isSet(QStringLiteral("no-slots")))
        tables.pop_back();
    const QString path = parser.positionalArguments().constFirst();
    if (!WriteFile(path, tables)) {
        std::fprintf(stderr, "The file cannot be written.\n");
        return 1;
    }
    if (parser.isSet(QStringLiteral("damage")))
        Damage(path, quint32(number("damage")));
    QJsonArray told;
    for (const Table &each : tables)
        told.append(Told(each));
    std::puts(QJsonDocument(told).toJson(QJsonDocument::Compact).constData());
    return 0;
}
