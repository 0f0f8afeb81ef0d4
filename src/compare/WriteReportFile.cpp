#include "compare/WriteReportFile.h"

#include "platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <limits>

namespace quorvik
{

namespace
{

constexpr int Version = 1;
/** No write is longer; what is, is no file of ours. */
constexpr qint64 MostBytes = 4 * 1024 * 1024;
constexpr int MostParams = std::numeric_limits<std::int16_t>::max();

const QString &FormatName()
{
    static const QString name = QStringLiteral("quorvik write");
    return name;
}

QJsonObject ToJson(const DriveIdentity &drive)
{
    return {{QStringLiteral("model"), drive.model},
            {QStringLiteral("amps"), drive.driveAmps},
            {QStringLiteral("firmware"), drive.firmware},
            {QStringLiteral("trigger_firmware"), drive.triggerFirmware},
            {QStringLiteral("hours"), drive.operatingHours},
            {QStringLiteral("last_parameter"), drive.lastParam}};
}

/** Takes fields out of an object, and remembers whether one was missing or of another kind. */
class Fields
{
public:
    explicit Fields(const QJsonObject &object)
        : object_(object)
    {
    }

    qint64 Number(const char *key, qint64 least, qint64 most)
    {
        const QJsonValue value = object_.value(QLatin1String(key));
        const double number = value.toDouble();
        // Of a number out of range not even the conversion means anything.
        if (!value.isDouble() || number < double(least) || number > double(most)) {
            isGood_ = false;
            return 0;
        }
        return qint64(number);
    }
    std::int32_t Raw(const char *key)
    {
        using Limits = std::numeric_limits<std::int32_t>;
        return std::int32_t(Number(key, Limits::min(), Limits::max()));
    }
    std::optional<std::int32_t> MaybeRaw(const char *key)
    {
        return object_.value(QLatin1String(key)).isUndefined() ? std::nullopt : std::optional(Raw(key));
    }
    int Param(const char *key) { return int(Number(key, 0, MostParams)); }
    QString Text(const char *key)
    {
        const QJsonValue value = object_.value(QLatin1String(key));
        isGood_ = isGood_ && value.isString();
        return value.toString();
    }
    QJsonArray Array(const char *key)
    {
        const QJsonValue value = object_.value(QLatin1String(key));
        isGood_ = isGood_ && value.isArray();
        return value.toArray();
    }
    QJsonObject Object(const char *key)
    {
        const QJsonValue value = object_.value(QLatin1String(key));
        isGood_ = isGood_ && value.isObject();
        return value.toObject();
    }
    bool IsGood() const { return isGood_; }

private:
    QJsonObject object_;
    bool isGood_ = true;
};

std::optional<StoredWrite> FromJson(const QJsonObject &object)
{
    Fields fields(object);
    if (fields.Text("format") != FormatName() || fields.Number("version", Version, Version) != Version)
        return std::nullopt;
    StoredWrite stored;
    stored.what = fields.Text("what");
    UnfinishedWrite &write = stored.write;
    write.begunAt = fields.Number("begun", 0, std::numeric_limits<std::int32_t>::max());
    write.report.end = WriteReport::End::LinkLost;
    write.report.backupPath = fields.Text("backup");
    Fields drive(fields.Object("drive"));
    write.report.drive = {.model = drive.Raw("model"),
                          .driveAmps = drive.Raw("amps"),
                          .firmware = drive.Raw("firmware"),
                          .triggerFirmware = drive.Raw("trigger_firmware"),
                          .operatingHours = drive.Raw("hours"),
                          .lastParam = drive.Param("last_parameter")};
    bool isGood = drive.IsGood();
    const QJsonArray rows = fields.Array("rows");
    for (const auto &value : rows) {
        Fields row(value.toObject());
        write.report.rows.push_back(
            {.value = {row.Param("number"), row.Raw("raw")},
             .arrival = Arrival(row.Number("arrival", int(Arrival::NotSent), int(Arrival::Given))),
             .rawBefore = row.MaybeRaw("before"),
             .rawFound = row.MaybeRaw("found")});
        isGood = isGood && row.IsGood();
    }
    const QJsonArray before = fields.Array("before");
    for (const auto &value : before) {
        Fields row(value.toObject());
        write.rawBefore[row.Param("number")] = row.Raw("raw");
        isGood = isGood && row.IsGood();
    }
    return isGood && fields.IsGood() ? std::optional(stored) : std::nullopt;
}

} // namespace

QString SaveWrite(const QString &path, const StoredWrite &stored)
{
    const WriteReport &report = stored.write.report;
    QJsonArray rows;
    for (const WrittenRow &row : report.rows) {
        QJsonObject object{{QStringLiteral("number"), row.value.param},
                           {QStringLiteral("raw"), row.value.rawValue},
                           {QStringLiteral("arrival"), int(row.arrival)}};
        if (row.rawBefore)
            object.insert(QStringLiteral("before"), *row.rawBefore);
        if (row.rawFound)
            object.insert(QStringLiteral("found"), *row.rawFound);
        rows.append(object);
    }
    QJsonArray before;
    for (const auto &[p, rawValue] : stored.write.rawBefore)
        before.append(QJsonObject{{QStringLiteral("number"), p}, {QStringLiteral("raw"), rawValue}});
    const QJsonObject object{{QStringLiteral("format"), FormatName()},
                             {QStringLiteral("version"), Version},
                             {QStringLiteral("what"), stored.what},
                             {QStringLiteral("begun"), stored.write.begunAt},
                             {QStringLiteral("backup"), report.backupPath},
                             {QStringLiteral("drive"), ToJson(report.drive)},
                             {QStringLiteral("rows"), rows},
                             {QStringLiteral("before"), before}};
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return QStringLiteral("The folder %1 cannot be made.").arg(folder);
    return AtomicFile::Write(path, QJsonDocument(object).toJson());
}

QString LoadWrite(const QString &path, StoredWrite &stored)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
    const QByteArray content = file.read(MostBytes + 1);
    const std::optional<StoredWrite> found =
        content.size() > MostBytes ? std::nullopt : FromJson(QJsonDocument::fromJson(content).object());
    if (!found)
        return QStringLiteral("%1 holds no write that could be gone on with.").arg(path);
    stored = *found;
    return {};
}

} // namespace quorvik
