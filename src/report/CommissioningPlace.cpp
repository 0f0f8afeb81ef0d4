#include "report/CommissioningPlace.h"

#include "model/Document.h"
#include "settings/SettingsTables.h"

#include <QRegularExpression>
#include <array>
#include <optional>

namespace quorvik
{

namespace
{

/** A kind of line, and the field that it fills. */
struct PlaceField {
    QString name;
    QString CommissioningPlace::*text;
};

const std::array<PlaceField, 4> &Fields()
{
    static const std::array<PlaceField, 4> fields = {
        {{QStringLiteral("Site"), &CommissioningPlace::site},
         {QStringLiteral("Machine"), &CommissioningPlace::machine},
         {QStringLiteral("Customer"), &CommissioningPlace::customer},
         {QStringLiteral("Person"), &CommissioningPlace::person}}};
    return fields;
}

/** What the line says of the field; nothing where it is another line. */
std::optional<QString> TextIn(const QString &line, const PlaceField &field)
{
    static const QRegularExpression form(QStringLiteral("^\\s*(\\w+)\\s*:(.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch() || match.captured(1).compare(field.name, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return match.captured(2).simplified();
}

qsizetype LineOf(const QStringList &lines, const PlaceField &field)
{
    for (qsizetype i = 0; i < lines.size(); ++i)
        if (TextIn(lines[i], field))
            return i;
    return -1;
}

QStringList LinesOf(const QString &notes)
{
    return notes.split(u'\n');
}

/** Of notes that say nothing no line is left: a settings file has one blank for them. */
QString Joined(const QStringList &lines)
{
    const QString notes = lines.join(u'\n');
    return notes.trimmed().isEmpty() ? QString() : notes;
}

} // namespace

CommissioningPlace PlaceIn(const QString &notes)
{
    CommissioningPlace place;
    const QStringList lines = LinesOf(notes);
    for (const PlaceField &field : Fields())
        if (const qsizetype line = LineOf(lines, field); line >= 0)
            place.*field.text = TextIn(lines[line], field).value_or(QString());
    return place;
}

QString NotesWithoutPlace(const QString &notes)
{
    QStringList lines = LinesOf(notes);
    for (const PlaceField &field : Fields())
        if (const qsizetype line = LineOf(lines, field); line >= 0)
            lines.removeAt(line);
    return Joined(lines);
}

std::optional<QString> NotesWithPlace(const QString &notes, const CommissioningPlace &place)
{
    QStringList lines = LinesOf(notes);
    bool isChanged = false;
    for (const PlaceField &field : Fields()) {
        const QString text = (place.*field.text).simplified();
        qsizetype line = LineOf(lines, field);
        if (text == (line < 0 ? QString() : TextIn(lines[line], field).value_or(QString())))
            continue;
        isChanged = true;
        const QString whole = field.name + QStringLiteral(": ") + text;
        if (!text.isEmpty() && line >= 0) {
            lines[line] = whole;
        } else if (!text.isEmpty()) {
            while (!lines.isEmpty() && lines.last().trimmed().isEmpty())
                lines.removeLast();
            lines.append(whole);
        } else {
            // A second line of the kind would be read in its place.
            for (; line >= 0; line = LineOf(lines, field))
                lines.removeAt(line);
        }
    }
    if (!isChanged)
        return notes;
    QString joined = Joined(lines);
    return joined.size() <= LongestNotes ? std::optional(std::move(joined)) : std::nullopt;
}

QString KeepPlace(Document &document, const CommissioningPlace &place)
{
    const std::optional<QString> notes = NotesWithPlace(document.Notes, place);
    if (!notes)
        return QStringLiteral("The notes of a set hold %1 characters, and with these lines they would have "
                              "more. Shorten them with File, Notes, or keep the lines out of them.")
            .arg(LongestNotes);
    if (*notes == document.Notes)
        return {};
    document.Notes = *notes;
    document.MarkFile(true);
    return {};
}

} // namespace quorvik
