#pragma once

#include "report/forms/CommissioningHost.h"

namespace quorvik
{

class MDIFormMain;

/** Lets the window of the commissioning report reach the engines of this run. */
class CommissioningAccess : public CommissioningHost
{
public:
    explicit CommissioningAccess(MDIFormMain &main)
        : main_(main)
    {
    }

    CommissioningPlace Place() override;
    QString KeepPlace(const CommissioningPlace &place) override;
    std::vector<StoredRecording> Recordings() override;
    DriveVerification Compare() override;
    CommissioningReport Make(ReportChoices choices, const DriveVerification &verification) override;

private:
    MDIFormMain &main_;
};

} // namespace quorvik
