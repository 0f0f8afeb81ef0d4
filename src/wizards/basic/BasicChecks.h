#pragma once

#include "wizards/basic/BasicSetup.h"
#include "wizards/frame/PageCheck.h"

namespace quorvik
{

class Asker;
class EntryRules;

/** What the pages of the Basic Setup Mentor demand before Next; tells the user what is wrong. */
class BasicChecks
{
public:
    BasicChecks(const BasicSetup &setup, EntryRules &rules, Asker &asker);

    PageCheck ValidateStep(int step) const;

private:
    PageCheck ValidateModel() const;
    PageCheck ValidateEntries(Entry first, int count) const;
    PageCheck ValidateMotorData() const;
    PageCheck ValidateFieldCurrents() const;
    bool CheckFieldCurrent(Entry entry, int p, int ratedAmps, std::int32_t attributes) const;
    PageCheck ValidateFeedback() const;
    PageCheck ValidateMaxSpeeds() const;
    void ShowTachVoltageMessage() const;
    void Tell(const QString &text) const;

    const BasicSetup &setup_;
    EntryRules &rules_;
    Asker &asker_;
};

} // namespace quorvik
