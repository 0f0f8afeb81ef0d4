#pragma once

#include "desktop/Form.h"
#include "wizards/frame/PageCheck.h"
#include "wizards/frame/WritePlan.h"

#include <QPointer>
#include <array>

class QStackedWidget;

namespace quorvik
{

class DriveLink;
class FinishPage;
class PageArea;
class WizardPage;

/**
 * The frame that both Mentors share: a stack of pages, the five buttons, a help topic for each page and one
 * commit at Finish. Nothing reaches the table before that, and Cancel leaves no trace.
 */
class WizardForm : public DialogForm
{
    Q_OBJECT

public:
    static constexpr int LastStep = 10;

    /** Follows the link: while the window is open, and what was written at Finish until it has reached the
     * drive. */
    void Follow(DriveLink &link);

    int CurrentStep() const { return currentStep_; }

protected:
    using Topics = std::array<const char *, LastStep + 1>;

    WizardForm(Desk &desk, QWidget *owner, const QString &name, const QString &caption, const Topics &topics);

    /**
     * Stacks the pages FrameStep(0) to FrameStep(9) and the Finish page, and shows the first one.
     * @param saveCaption of CheckSaveDriveParameters.
     */
    void StackPages(QList<WizardPage *> pages, const QString &saveCaption);
    void SetStep(int step);
    /** Destroys the pages. A Mentor's destructor calls it, for its answers go before a window's children do,
     * and a text box that loses the focus on its way out still reaches for them. */
    void DropPages();

    /** Whether the page may be left by Next; tells the user why not. */
    virtual PageCheck CheckStep(int step) = 0;
    virtual int NextStep(int step) = 0;
    virtual int PreviousStep(int step) const = 0;
    virtual void LeaveStep(int) {}
    virtual void EnterStep(int) {}
    /** The link came or went.
     * @param gone it was there when the window opened, and no longer is. */
    virtual void FollowLink(bool /*gone*/) {}

    /** What Finish will write, with that wish about saving in the drive. */
    virtual WritePlan MakePlan(bool saveInDrive) = 0;
    /** Writes and returns what was written; called once the drive is known to stand still. */
    virtual WritePlan WriteSetup() = 0;
    /** What the user is to be reminded of once everything is written. */
    virtual void ShowReminder() {}

    void done(int result) override;

private:
    enum Nav { Help, Cancel, Back, Next, Finish, NavCount };

    void MakeNavigation();
    void OrderTabs();
    void ComStatusChanged();
    void WatchWrites(const WritePlan &written, const RecordArray &before);
    void CmdNav_Click(int index);
    void GoNext();
    bool ValidateStep(int step);
    void FinishSetup();
    void ShowPlan();
    void FitPage(int step);
    void UpdateNavButtons(int step);
    void FocusPage(int step);

    Topics helpTopics_;
    const bool openedOnline_;
    QPointer<DriveLink> link_;
    QWidget *linkGone_ = nullptr;
    PageArea *pages_ = nullptr;
    QStackedWidget *stack_ = nullptr;
    FinishPage *finishPage_ = nullptr;
    std::array<QPushButton *, NavCount> navButtons_{};
    int currentStep_ = 0;
    bool finishEnabled_ = false;
};

} // namespace quorvik
