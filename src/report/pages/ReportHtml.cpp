#include "report/pages/ReportHtml.h"

#include <QRegularExpression>

namespace quorvik
{

namespace
{

QString Heading(const QString &text)
{
    return QStringLiteral("<h2>%1</h2>").arg(text.toHtmlEscaped());
}

/** Plain text with its line breaks; a word that no column has room for may break, as that of a path. */
QString Escaped(const QString &given)
{
    static const QRegularExpression longWord(QStringLiteral("(\\S{40})(?=\\S)"));
    QString text = given;
    text.replace(longWord, QStringLiteral("\\1") + QChar(0x200b));
    return text.toHtmlEscaped()
        .replace(QStringLiteral("\r\n"), QStringLiteral("<br>"))
        .replace(u'\n', QStringLiteral("<br>"));
}

QString Paragraph(const QString &text)
{
    return text.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(Escaped(text));
}

/** Rows under heads that are repeated on each page. */
QString Rows(const CommissioningTable &table)
{
    if (table.rows.isEmpty())
        return {};
    // Many columns have room for short words only in a smaller letter.
    constexpr int manyColumns = 6;
    const QString style =
        table.heads.size() < manyColumns ? QString() : QStringLiteral(" style=\"font-size:7pt\"");
    QString html =
        QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\"%1><thead><tr>").arg(style);
    for (const QString &head : table.heads)
        html += QStringLiteral("<th align=\"left\" bgcolor=\"#d5dde3\">%1</th>").arg(Escaped(head));
    html += QStringLiteral("</tr></thead>");
    for (qsizetype row = 0; row < table.rows.size(); ++row) {
        const QString ground = row % 2 == 1 ? QStringLiteral(" bgcolor=\"#f2f4f6\"") : QString();
        html += QStringLiteral("<tr>");
        for (const QString &field : table.rows[row])
            html += QStringLiteral("<td%1>%2</td>").arg(ground, Escaped(field));
        html += QStringLiteral("</tr>");
    }
    return html + QStringLiteral("</table>");
}

/** A part that has nothing to show says so. */
QString Part(const QString &heading, const CommissioningTable &table, const QString &nothing)
{
    const QString rows = Rows(table);
    // Above the rows, which end anywhere on a page.
    QString html = Heading(heading) + Paragraph(table.remark) + rows;
    if (rows.isEmpty() && table.remark.isEmpty())
        html += Paragraph(nothing);
    return html;
}

QString PlaceTable(const CommissioningReport &report)
{
    const CommissioningPlace &place = report.place;
    CommissioningTable table;
    const std::pair<const char *, QString> rows[] = {
        {"Site", place.site},         {"Machine", place.machine},
        {"Customer", place.customer}, {"Commissioned by", place.person},
        {"Settings", report.setName}, {"Made", report.made},
        {"Program", report.program},
    };
    QString html = QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\">");
    for (const auto &[name, text] : rows)
        html += QStringLiteral("<tr><td width=\"22%\"><b>%1</b></td><td>%2</td></tr>")
                    .arg(QString::fromLatin1(name), text.isEmpty() ? QStringLiteral("-") : Escaped(text));
    return html + QStringLiteral("</table>");
}

QString VerificationBox(const CommissioningReport &report)
{
    QString verdict;
    QString ground;
    switch (report.verification) {
    case Verification::Same:
        verdict = QStringLiteral("The drive holds these settings");
        ground = QStringLiteral("#e3f2e6");
        break;
    case Verification::Differs:
        verdict = QStringLiteral("The drive holds other settings");
        ground = QStringLiteral("#fdeccd");
        break;
    case Verification::NotCompared:
        verdict = QStringLiteral("NOT compared with the drive");
        ground = QStringLiteral("#fdeccd");
        break;
    }
    return Heading(QStringLiteral("Verification")) +
           QStringLiteral(
               "<table width=\"100%\" border=\"1\" cellspacing=\"0\" cellpadding=\"6\" "
               "style=\"border-collapse:collapse\"><tr><td bgcolor=\"%1\"><b>%2</b><br>%3</td></tr>"
               "</table>")
               .arg(ground, verdict, Escaped(report.verificationText)) +
           (report.differences.rows.isEmpty() ? QString() : QStringLiteral("<p></p>")) +
           Paragraph(report.differences.remark) + Rows(report.differences);
}

QString Signatures(const CommissioningPlace &place)
{
    const QString line = QStringLiteral("<tr><td width=\"14%\">%1</td><td width=\"34%\">%2</td><td "
                                        "width=\"4%\"></td><td width=\"14%\">%1</td><td "
                                        "width=\"34%\">%3</td></tr>");
    const QString dots = QStringLiteral("_______________________________");
    const QString gap = QStringLiteral("<br><br>");
    QString html = Heading(QStringLiteral("Signatures")) +
                   QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"4\">"
                                  "<tr><td colspan=\"2\"><b>Commissioned by</b></td><td></td>"
                                  "<td colspan=\"2\"><b>Accepted by</b></td></tr>");
    html += line.arg(QStringLiteral("Name"), place.person.isEmpty() ? dots : Escaped(place.person), dots);
    html += line.arg(QStringLiteral("Date"), dots, dots);
    html += line.arg(gap + QStringLiteral("Signature"), gap + dots, gap + dots);
    return html + QStringLiteral("</table>");
}

} // namespace

QString FrontHtml(const CommissioningReport &report, const QString &title)
{
    return QStringLiteral("<h1>%1</h1>").arg(title.toHtmlEscaped()) + PlaceTable(report) +
           VerificationBox(report) +
           Part(QStringLiteral("Drive"), report.identity, QStringLiteral("Nothing is known of the drive.")) +
           Part(QStringLiteral("Motor"), report.motor, QStringLiteral("Nothing is known of the motor.")) +
           Part(QStringLiteral("Settings changed from the factory"), report.settings,
                QStringLiteral("All settings have their factory values."));
}

QString BackHtml(const CommissioningReport &report, const PictureAddress &picture, int widthPx)
{
    QString html = Heading(QStringLiteral("Recordings"));
    if (report.recordings.isEmpty())
        html += Paragraph(QStringLiteral("None was chosen."));
    for (const CommissioningRecording &recording : report.recordings) {
        html += QStringLiteral("<h3>%1</h3>").arg(Escaped(recording.title));
        const QString address = picture(recording);
        html += address.isEmpty() ? Paragraph(QStringLiteral("There is no picture of this recording."))
                                  : QStringLiteral("<p><img src=\"%1\" width=\"%2\"></p>")
                                        .arg(address.toHtmlEscaped())
                                        .arg(widthPx);
        html += Rows(recording.figures) + Paragraph(recording.figures.remark);
        if (recording.figures.rows.isEmpty() && recording.figures.remark.isEmpty())
            html += Paragraph(QStringLiteral("It holds no step."));
    }
    html += Part(QStringLiteral("Fault history"), report.faults, QStringLiteral("No fault is known."));
    html += Part(QStringLiteral("Changes of the day"), report.journal,
                 QStringLiteral("Nothing was changed on that day."));
    html += Heading(QStringLiteral("Notes"));
    html += report.notes.trimmed().isEmpty() ? Paragraph(QStringLiteral("None.")) : Paragraph(report.notes);
    return html + Signatures(report.place);
}

} // namespace quorvik
