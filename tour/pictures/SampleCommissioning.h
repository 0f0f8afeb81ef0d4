#pragma once

#include "model/ParameterTable.h"
#include "report/ReportSource.h"
#include "report/forms/CommissioningHost.h"

namespace quorvik
{

struct Desk;
class JournalReader;
class TrendStore;

/** The end of a morning's work: a set that a drive holds, with the journal and the recordings of others. */
class SampleCommissioning : public CommissioningHost
{
public:
    SampleCommissioning(Desk &desk, JournalReader &journal, TrendStore &recordings);

    CommissioningPlace Place() override;
    QString KeepPlace(const CommissioningPlace &) override { return {}; }
    std::vector<StoredRecording> Recordings() override;
    DriveVerification Compare() override;
    CommissioningReport Make(ReportChoices choices, const DriveVerification &verification) override;

private:
    Desk &desk_;
    JournalReader &journal_;
    TrendStore &recordings_;
    ParameterTable table_; ///< of the set
    ReportSource source_;
};

} // namespace quorvik
