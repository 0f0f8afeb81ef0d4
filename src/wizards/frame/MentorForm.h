#pragma once

#include "wizards/frame/WizardForm.h"

#include <span>

namespace quorvik
{

/** One row of a page order table: from a page to another, under a condition on the answers. */
template<typename Answers> struct PageRow {
    int from;
    bool (Answers::*when)() const; ///< null: always
    int to;
};

/** A Mentor over its answers: tables tell the order of the pages, checks whether a page may be left. */
template<typename Answers, typename Checks> class MentorForm : public WizardForm
{
protected:
    using Rows = std::span<const PageRow<Answers>>;

    /** The first row that fits counts; without one the pages follow each other. */
    MentorForm(Desk &desk, QWidget *owner, const QString &name, const QString &caption, const Topics &topics,
               Rows nextRows, Rows backRows)
        : WizardForm(desk, owner, name, caption, topics)
        , setup_(desk.table, desk.document)
        , checks_(setup_, desk.rules, desk.asker)
        , nextRows_(nextRows)
        , backRows_(backRows)
    {
    }
    ~MentorForm() override { DropPages(); }

    PageCheck CheckStep(int step) override { return checks_.ValidateStep(step); }
    int NextStep(int step) override { return Target(nextRows_, step, step + 1); }
    int PreviousStep(int step) const override { return Target(backRows_, step, step - 1); }
    WritePlan MakePlan(bool saveInDrive) override
    {
        setup_.saveInDrive = saveInDrive;
        return setup_.Plan();
    }

    Answers setup_;

private:
    int Target(Rows rows, int step, int otherwise) const
    {
        for (const PageRow<Answers> &row : rows)
            if (row.from == step && (row.when == nullptr || (setup_.*row.when)()))
                return row.to;
        return otherwise;
    }

    Checks checks_;
    Rows nextRows_;
    Rows backRows_;
};

} // namespace quorvik
