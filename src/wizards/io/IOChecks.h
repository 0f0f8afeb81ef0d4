#pragma once

#include "wizards/io/IOSetup.h"

#include <optional>

namespace quorvik
{

class Asker;
class EntryRules;

/** A control that a refused entry sends the focus to, by its kind and index. */
struct IOFocus {
    enum Control { Cal, Text, List };
    Control control;
    int index;
};

/** Whether a page may be left, and where the focus belongs if not. */
struct IOPageCheck {
    bool passed = true;
    std::optional<IOFocus> focus;
};

/** What the pages of the I/O Mentor demand before Next; tells the user what is wrong, and asks. */
class IOChecks
{
public:
    IOChecks(IOSetup &setup, EntryRules &rules, Asker &asker);

    /** May add to IOSetup::overwritten, as the user answers. */
    IOPageCheck ValidateStep(int step) const;

private:
    bool ValidateDestination() const;
    IOPageCheck ValidateCalibrations() const;
    bool CheckCalibrations(const QString &text, const QString &name) const;
    IOPageCheck ValidateInputValues() const;
    IOPageCheck ValidateOutputValues() const;
    IOPageCheck ValidateTexts(const ValuesView &view, const ValuePair &values, int p) const;
    IOPageCheck ValidatePicks(const ValuesView &view, const ValuePair &values, const QString &pairName) const;
    IOPageCheck CheckOutputRange(double low, double high, std::int32_t rawLow, std::int32_t rawHigh,
                                 std::int32_t attributes) const;
    IOPageCheck CheckAnalogOutputValues() const;
    IOPageCheck CheckFreqOutputValues() const;

    IOSetup &setup_;
    EntryRules &rules_;
    Asker &asker_;
};

} // namespace quorvik
