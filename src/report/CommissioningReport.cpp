#include "report/CommissioningReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <optional>

namespace quorvik
{

namespace
{

QString Key(const char *name)
{
    return QString::fromLatin1(name);
}

QStringList TextsOf(const QJsonValue &value)
{
    QStringList texts;
    for (const QJsonValue each : value.toArray())
        texts.append(each.toString());
    return texts;
}

QJsonObject JsonOf(const CommissioningTable &table)
{
    QJsonArray rows;
    for (const QStringList &row : table.rows)
        rows.append(QJsonArray::fromStringList(row));
    return {{Key("heads"), QJsonArray::fromStringList(table.heads)},
            {Key("rows"), rows},
            {Key("remark"), table.remark}};
}

CommissioningTable TableOf(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    CommissioningTable table{TextsOf(object[Key("heads")]), {}, object[Key("remark")].toString()};
    for (const QJsonValue row : object[Key("rows")].toArray()) {
        QStringList fields = TextsOf(row);
        fields.resize(table.heads.size());
        table.rows.append(fields);
    }
    return table;
}

/** The verification called so; nothing for any other word. */
std::optional<Verification> VerificationOf(const QString &word)
{
    for (const Verification each : {Verification::NotCompared, Verification::Same, Verification::Differs})
        if (WordOf(each) == word)
            return each;
    return std::nullopt;
}

/** Calls take with the name and the member of each text of a report; one list for both directions. */
template<typename Report, typename Take> void ForEachText(Report &report, Take take)
{
    take("site", report.place.site);
    take("machine", report.place.machine);
    take("customer", report.place.customer);
    take("person", report.place.person);
    take("made", report.made);
    take("program", report.program);
    take("set_name", report.setName);
    take("notes", report.notes);
    take("verification_text", report.verificationText);
}

template<typename Report, typename Take> void ForEachTable(Report &report, Take take)
{
    take("identity", report.identity);
    take("motor", report.motor);
    take("settings", report.settings);
    take("faults", report.faults);
    take("journal", report.journal);
    take("differences", report.differences);
}

} // namespace

QString WordOf(Verification verification)
{
    switch (verification) {
    case Verification::Same:
        return QStringLiteral("same");
    case Verification::Differs:
        return QStringLiteral("differs");
    case Verification::NotCompared:
        break;
    }
    return QStringLiteral("not_compared");
}

QByteArray ToJson(const CommissioningReport &report)
{
    QJsonObject object;
    ForEachText(report, [&object](const char *name, const QString &text) { object[Key(name)] = text; });
    ForEachTable(report, [&object](const char *name, const CommissioningTable &table) {
        object[Key(name)] = JsonOf(table);
    });
    QJsonArray recordings;
    for (const CommissioningRecording &recording : report.recordings)
        recordings.append(QJsonObject{{Key("path"), recording.path},
                                      {Key("title"), recording.title},
                                      {Key("figures"), JsonOf(recording.figures)}});
    object[Key("recordings")] = recordings;
    object[Key("verification")] = WordOf(report.verification);
    QJsonObject rawValues;
    for (const auto &[p, rawValue] : report.rawValues)
        rawValues[QString::number(p)] = rawValue;
    object[Key("raw_values")] = rawValues;
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

CommissioningReport ReportFromJson(const QByteArray &text, QString &failure)
{
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(text, &error).object();
    const std::optional<Verification> verification = VerificationOf(object[Key("verification")].toString());
    if (error.error != QJsonParseError::NoError || !verification) {
        failure = QStringLiteral("What was given is no commissioning report.");
        return {};
    }
    CommissioningReport report;
    ForEachText(report,
                [&object](const char *name, QString &member) { member = object[Key(name)].toString(); });
    ForEachTable(report, [&object](const char *name, CommissioningTable &table) {
        table = TableOf(object[Key(name)]);
    });
    for (const QJsonValue each : object[Key("recordings")].toArray()) {
        const QJsonObject recording = each.toObject();
        report.recordings.append({recording[Key("path")].toString(), recording[Key("title")].toString(),
                                  TableOf(recording[Key("figures")])});
    }
    report.verification = *verification;
    const QJsonObject rawValues = object[Key("raw_values")].toObject();
    for (auto value = rawValues.begin(); value != rawValues.end(); ++value)
        report.rawValues.emplace(value.key().toInt(), std::int32_t(value.value().toDouble()));
    return report;
}

} // namespace quorvik
