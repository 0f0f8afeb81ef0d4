#pragma once

class QString;

namespace quorvik
{

class MDIFormMain;
struct PastState;

void ShowCommunications(MDIFormMain &main);
void ShowDebug(MDIFormMain &main);
/** How well the line works, and what passes on it. */
void ShowLinkDetails(MDIFormMain &main);
/** What keeps the drive from running. */
void ShowWhyNot(MDIFormMain &main);

void ShowNotes(MDIFormMain &main);
void ShowSelectDriveModel(MDIFormMain &main);

void ShowColorSettings(MDIFormMain &main);
void ShowGettingStarted(MDIFormMain &main);
void ShowAbout(MDIFormMain &main);

void ShowIOSimulator(MDIFormMain &main);
void ShowFaultLog(MDIFormMain &main);
/** Asks first, since the panel takes every input off its destination. */
void ShowVirtualOperator(MDIFormMain &main);

/** @param readDrive whether the open set is compared with the drive, which is read for it. */
void ShowCompare(MDIFormMain &main, bool readDrive);
/** The drive, read anew, beside a set of it that was kept. */
void ShowCompareWithBackup(MDIFormMain &main, const QString &path);
/** What had not reached the drive when a link was lost, beside the drive, which is read. */
void ShowUnwrittenEntries(MDIFormMain &main);
/** A set as it was beside the drive, which is read, or off line beside the open set.
 * @param takesBack whether its values are to be taken back: all that differ are ticked for copying. */
void ShowCompareWith(MDIFormMain &main, const PastState &past, bool takesBack);
/** The open set beside the factory's, at one parameter. */
void ShowFactoryComparison(MDIFormMain &main, int p);
/** The list of all parameters at the row of one. */
void ShowInList(MDIFormMain &main, int p);
/** What the last verified write came to. */
void ShowWriteReport(MDIFormMain &main);

/** What was changed, when, from where, and what became of it. */
void ShowHistory(MDIFormMain &main);

/** The report of a commissioning, with its pages. */
void ShowCommissioningReport(MDIFormMain &main);

/** The trend recorder. */
void ShowTrend(MDIFormMain &main);
/** The trend recorder, with a parameter added to what it records. */
void AddToTrend(MDIFormMain &main, int p);
/** The trend recorder with a recording of before. */
void ShowRecording(MDIFormMain &main, const QString &path);

/** One field over parameters, windows, commands and help; the one that is open takes what is typed next. */
void ShowFind(MDIFormMain &main);

/** Opens where the drive's model is known; else tells what to do about it. */
void ShowBasicMentor(MDIFormMain &main);
/** Opens on Desk::WizardIOStart. */
void ShowIOMentor(MDIFormMain &main);

} // namespace quorvik
