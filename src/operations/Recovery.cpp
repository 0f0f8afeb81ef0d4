#include "operations/Recovery.h"

#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "settings/RecoveryCopy.h"

namespace quorvik
{

bool OfferLeftover(RecoveryCopy &copy, ParameterTable &table, Asker &asker)
{
    const std::optional<QString> name = copy.LeftoverName();
    if (!name)
        return false;
    const QString question =
        QStringLiteral(
            "Quorvik did not end normally, and changes to %1 had not been saved.\r\n\r\nRecover them?")
            .arg(FileTitle(*name));
    switch (asker.MsgBox(question, MsgButtons::YesNo, MsgIcon::Question, AppTitle())) {
    case MsgAnswer::Yes:
        break;
    case MsgAnswer::No:
        // A key pressed in haste must not be the end of unsaved work.
        copy.KeepDeclined();
        return false;
    default:
        // No answer, as when the run ends meanwhile: it is asked again next time.
        return false;
    }
    Intent intent(table, Origin::File, QStringLiteral("Recover %1").arg(FileTitle(*name)));
    const QString failure = copy.Recover(*name);
    if (failure.isEmpty()) {
        intent.Note(QStringLiteral("Restored the unsaved changes of %1").arg(*name));
        return true;
    }
    const QString kept = copy.KeepUnreadable();
    asker.MsgBox(QStringLiteral("%1\r\n\r\nThe copy is kept as \"%2\".").arg(failure, kept), MsgButtons::Ok,
                 MsgIcon::Exclamation, AppTitle());
    return false;
}

} // namespace quorvik
