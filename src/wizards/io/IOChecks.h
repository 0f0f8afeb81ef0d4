#pragma once

#include "wizards/frame/PageCheck.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

class Asker;
class EntryRules;

/** What the pages of the I/O Mentor demand before Next; tells the user what is wrong, and asks. */
class IOChecks
{
public:
    IOChecks(IOSetup &setup, EntryRules &rules, Asker &asker);

    /** May add to IOSetup::overwritten, as the user answers. */
    PageCheck ValidateStep(int step) const;

private:
    bool ValidateDestination() const;
    PageCheck ValidateCalibrations() const;
    bool CheckCalibrations(const QString &text, const QString &name) const;
    PageCheck ValidateInputValues() const;
    PageCheck ValidateOutputValues() const;
    PageCheck RefusedValue(const char *kind, std::size_t index) const;
    PageCheck ValidateTexts(const ValuesView &view, const ValuePair &values, int p) const;
    PageCheck ValidatePicks(const ValuesView &view, const ValuePair &values, const QString &pairName) const;
    PageCheck CheckOutputRange(double low, double high, std::int32_t rawLow, std::int32_t rawHigh,
                               std::int32_t attributes) const;
    PageCheck CheckAnalogOutputValues() const;
    PageCheck CheckFreqOutputValues() const;

    IOSetup &setup_;
    EntryRules &rules_;
    Asker &asker_;
};

} // namespace quorvik
