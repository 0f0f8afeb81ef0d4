// What the buttons of the comparison do: ticking, copying, exporting.

#include "compare/CompareReport.h"
#include "compare/forms/CompareHost.h"
#include "compare/forms/CompareSides.h"
#include "compare/forms/DifferenceModel.h"
#include "compare/forms/ExportComparison.h"
#include "compare/forms/FormCompare.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "operations/Merge.h"
#include "platform/Asker.h"

#include <QAccessible>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>

namespace quorvik
{

namespace
{

using Kind = CompareSource::Kind;

bool IsSameFile(const QString &left, const QString &right)
{
    const QString real = QFileInfo(left).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(right).canonicalFilePath();
}

QString CountOf(std::size_t count, const QString &what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(what, count == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

void FormCompare::TickShown(bool isTicked)
{
    QList<int> params;
    for (const DifferenceRow &row : isTicked ? proxy_->Shown() : model_->Rows())
        params += row.param;
    model_->Tick(params, isTicked);
}

std::vector<ParamValue> FormCompare::ValuesToCopy(int from, int to) const
{
    std::vector<ParamValue> values;
    for (const DifferenceRow &row : proxy_->Shown()) {
        const std::optional<std::int32_t> &raw = row.sides[std::size_t(from)].raw;
        if (raw && model_->IsTicked(row.param) && raw != row.sides[std::size_t(to)].raw)
            values.push_back({row.param, *raw});
    }
    return values;
}

void FormCompare::CommandCopy_Click()
{
    if (comboDirection_->currentIndex() < 0) {
        Tell(QStringLiteral(
            "None of these sets can be copied into: choose the open set, the drive or a file."));
        return;
    }
    // What the window shows is what is copied, so it is brought up to date first.
    FollowOpenSet();
    const QPoint direction = comboDirection_->currentData().toPoint();
    const int from = direction.x();
    const int to = direction.y();
    const std::vector<ParamValue> values = ValuesToCopy(from, to);
    if (values.empty()) {
        Tell(QStringLiteral("Nothing to copy: no ticked row that is shown has another value to give."));
        return;
    }
    model_->SetRefusals({});
    switch (sides_->Source(to).kind) {
    case Kind::OpenSet:
        CopyIntoOpenSet(values, from);
        break;
    case Kind::Drive:
        CopyIntoDrive(values, from);
        break;
    case Kind::File:
        CopyIntoFile(values, from, to);
        break;
    default:
        break;
    }
}

IntentInfo FormCompare::IntentOf(int from) const
{
    const QString &name = sides_->Set(from).name;
    if (sides_->Source(from).kind == Kind::Past)
        return {Origin::Undo, QStringLiteral("Back to %1").arg(name)};
    return {Origin::Compare, QStringLiteral("Copy from %1").arg(name)};
}

void FormCompare::CopyIntoOpenSet(const std::vector<ParamValue> &values, int from)
{
    const std::vector<RefusedRow> refused = [&] {
        const Intent intent(desk().table, IntentOf(from));
        return MergeIntoSet(desk().table, values, sides_->Set(from));
    }();
    sides_->Reload({Kind::OpenSet});
    TellCopied(values.size(), refused, QStringLiteral("the open set"));
}

void FormCompare::CopyIntoFile(const std::vector<ParamValue> &values, int from, int to)
{
    const CompareSource target = sides_->Source(to);
    const QString name = sides_->Set(to).name;
    if (IsSameFile(target.path, desk().document.FileName)) {
        Tell(QStringLiteral("\"%1\" is the open set's own file: copy into the open set, and save it.")
                 .arg(name));
        return;
    }
    const QString question = QStringLiteral("Copy %1 into \"%2\"?\r\n\r\nThe file is saved at once.")
                                 .arg(CountOf(values.size(), QStringLiteral("value")), name);
    if (desk().asker.MsgBox(question, MsgButtons::YesNo, MsgIcon::Question, windowTitle()) != MsgAnswer::Yes)
        return;
    const FileMerge merge =
        MergeIntoFile(target.path, values, sides_->Set(from), desk().table, host_.Saving());
    if (merge.failure.isEmpty()) {
        Intent intent(desk().table, IntentOf(from));
        intent.Note(
            QStringLiteral("Copied %1 into %2")
                .arg(CountOf(values.size() - merge.refused.size(), QStringLiteral("value")), target.path));
    }
    sides_->Reload(target);
    if (merge.failure.isEmpty())
        TellCopied(values.size(), merge.refused, u'"' + name + u'"');
    else
        desk().asker.MsgBox(merge.failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
}

void FormCompare::CopyIntoDrive(std::vector<ParamValue> values, int from)
{
    if (!desk().table.PortOpen()) {
        Tell(QStringLiteral(
            "The program is off line. \"Read Drive\" goes on line and reads what is there now."));
        return;
    }
    // Rows that were the same would be left out, and may not be the same in another drive.
    if (!sides_->IsDriveCertain()) {
        Tell(QStringLiteral(
            "The line was down since the drive was read. \"Read Drive\" reads what is there now."));
        return;
    }
    std::map<int, QString> reasons;
    for (const ParamValue &value : values) {
        const RowKind kind = model_->Row(value.param).kind;
        if (kind == RowKind::Model || kind == RowKind::Status)
            reasons[value.param] = QStringLiteral("is read only.");
        else if (Param::IsCommand(value.param))
            reasons[value.param] = QStringLiteral("is a command, which copying does not give.");
    }
    std::erase_if(values, [&reasons](const ParamValue &value) { return reasons.contains(value.param); });
    const ParameterSet source = sides_->Set(from);
    QString sentence = QStringLiteral("Nothing was sent");
    if (!values.empty()) {
        // Writing waits, and the window may be closed meanwhile.
        const QPointer<FormCompare> self = this;
        const Intent intent(desk().table, IntentOf(from));
        const WriteReport *report = host_.WriteDrive(values, source);
        if (!self || !report)
            return;
        sentence = report->Summary(desk().table);
        sides_->TakeWrite(*report);
    }
    TellRefused(sentence, reasons);
}

void FormCompare::TellCopied(std::size_t wanted, const std::vector<RefusedRow> &refused,
                             const QString &target)
{
    std::map<int, QString> reasons;
    for (const RefusedRow &row : refused)
        reasons[row.value.param] = row.reason;
    TellRefused(QStringLiteral("%1 copied into %2")
                    .arg(CountOf(wanted - refused.size(), QStringLiteral("value")), target),
                reasons);
}

void FormCompare::TellRefused(const QString &sentence, const std::map<int, QString> &reasons)
{
    model_->SetRefusals(reasons);
    Tell(reasons.empty()
             ? sentence + u'.'
             : sentence + QStringLiteral("; %1 not copied: the column Note says why.").arg(reasons.size()));
}

void FormCompare::Tell(const QString &sentence)
{
    labelOutcome_->setText(sentence);
    QAccessibleEvent event(labelOutcome_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void FormCompare::CommandExport_Click()
{
    const std::optional<QString> path = ChooseExport(FilePath(desk().document.FileName));
    if (!path)
        return;
    CompareReport report;
    for (const ParameterSet *set : sides_->Sets())
        report.sides.push_back({set->name, ModelLine(*set)});
    report.made = desk().Now();
    report.mismatches = sides_->Failures() + Mismatches(sides_->Sets());
    report.rows = proxy_->Shown();
    const QString failure = ExportComparison(*path, report);
    if (!failure.isEmpty())
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    else
        Tell(QStringLiteral("%1 exported to \"%2\".")
                 .arg(CountOf(report.rows.size(), QStringLiteral("row")), FileTitle(*path)));
}

} // namespace quorvik
