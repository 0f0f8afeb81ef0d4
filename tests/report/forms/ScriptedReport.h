#pragma once

#include "report/forms/CommissioningHost.h"
#include "support/TestDesk.h"

namespace quorvik::testing
{

/** Answers as a drive that holds what verification says, and counts what it was asked. */
class ScriptedReport : public CommissioningHost
{
public:
    explicit ScriptedReport(TestDesk &desk)
        : desk_(desk)
    {
        verification.verification = Verification::Same;
        verification.text = QStringLiteral("All 268 settings are the same.");
    }

    CommissioningPlace Place() override { return place; }
    QString KeepPlace(const CommissioningPlace &wanted) override
    {
        place = wanted;
        return keepFailure;
    }
    std::vector<StoredRecording> Recordings() override { return recordings; }
    DriveVerification Compare() override
    {
        ++comparisons;
        if (whileReading)
            whileReading();
        return verification;
    }
    CommissioningReport Make(ReportChoices choices, const DriveVerification &made) override
    {
        last = choices;
        CommissioningReport report;
        report.place = choices.place;
        report.setName = QStringLiteral("pump.Svx");
        report.verification = made.verification;
        report.verificationText = made.text;
        for (int p = 0; p <= desk_.table.LastParam; ++p)
            report.rawValues[p] = desk_.table.Value(p);
        return report;
    }

    CommissioningPlace place;
    QString keepFailure;
    std::vector<StoredRecording> recordings;
    DriveVerification verification;
    std::function<void()> whileReading;
    ReportChoices last;
    int comparisons = 0;

private:
    TestDesk &desk_;
};

} // namespace quorvik::testing
