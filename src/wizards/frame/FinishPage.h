#pragma once

#include "wizards/frame/WizardPage.h"
#include "wizards/frame/WritePlan.h"

class QCheckBox;

namespace quorvik
{

class WriteTable;

/** The last page: what Finish will write, and whether the drive is to keep it. */
class FinishPage : public WizardPage
{
    Q_OBJECT

public:
    /**
     * @param online decides once, for as long as the window lives, about the save and the text.
     * @param saveCaption of CheckSaveDriveParameters.
     */
    FinishPage(QWidget *parent, bool online, const QString &saveCaption);

    /** The save is possible and asked for. */
    bool SaveWanted() const;

    void ShowLines(const std::vector<PlannedLine> &lines);
    /** Says why nothing can be written, in place of the list. */
    void ShowFailure(const QString &sentence);

Q_SIGNALS:
    void SaveToggled();

private:
    QCheckBox *save_;
    WriteTable *table_;
    QLabel *failure_;
};

} // namespace quorvik
