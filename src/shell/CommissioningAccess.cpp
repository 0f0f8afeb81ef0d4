#include "shell/CommissioningAccess.h"

#include "blocks/BlockCatalogue.h"
#include "report/CommissioningPlace.h"
#include "shell/MDIFormMain.h"

namespace quorvik
{

CommissioningPlace CommissioningAccess::Place()
{
    return PlaceIn(main_.AllEngines().document.Notes);
}

QString CommissioningAccess::KeepPlace(const CommissioningPlace &place)
{
    return quorvik::KeepPlace(main_.AllEngines().document, place);
}

std::vector<StoredRecording> CommissioningAccess::Recordings()
{
    return main_.AllEngines().recordings.List();
}

DriveVerification CommissioningAccess::Compare()
{
    return VerifyOpenSet(main_.AllEngines(), BlockNames(main_.AllEngines().table.UpperBound() + 1));
}

CommissioningReport CommissioningAccess::Make(ReportChoices choices, const DriveVerification &verification)
{
    choices.blocks = BlockNames(main_.AllEngines().table.UpperBound() + 1);
    return MakeReport(main_.AllEngines(), choices, verification);
}

} // namespace quorvik
