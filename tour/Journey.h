#pragma once

#include "tour/Tour.h"

#include <memory>

namespace quorvik
{

class Walk;

/** The first minute of a new user, told in clicks and seconds; a program and a drive of its own, left at the
 * end. */
void AddFirstMinute(Tour &tour);
/** Runs the program up to the link and the tips: the first of all. */
void AddGoingOnline(Tour &tour);
/** Blocks on line, an edit that arrives in the drive, and the file that keeps it. */
void AddMainJob(Tour &tour);
/** The questions before risky commands, a comparison, and writes that are proved; after the main job. */
void AddSafeJob(Tour &tour);
/** A drive that does not run, its first cause and the way to its box; after the safe job. */
void AddWhyNotJob(Tour &tour);
/** What was done so far, and how one of it was before; after the why not job. */
void AddHistoryJob(Tour &tour);
/** A trip, and links that are lost and come back; after the safe job. */
void AddLostLinkJob(Tour &tour);
/** The value of a wire, its path through the open windows, and from box to box; after the lost link job. */
void AddFollowJob(Tour &tour);
/** The map of the drive: a path, a block that a click opens, and what stands in the way of a stopped drive.
 */
void AddMapJob(Tour &tour);
/** Shapes of the drawings that show what they do; on line, after the lost links. */
void AddLiveShapesJob(Tour &tour);
/** A round through every window of the Blocks menu. */
void AddBlockRound(Tour &tour);
/** Finds a parameter by what it is called, and goes to its window. */
void AddFindJob(Tour &tour);
/** An entry on line, taken back; the drive holds the old value again. */
void AddUndoJob(Tour &tour);
/** A recording on line, a capture of the answer to a change, and the file of its values. */
void AddTrendJob(Tour &tour);
/** The report of the commissioning as a PDF, compared with the drive; on line. */
void AddReportJob(Tour &tour);
/** The procedures of the help from the first commissioning to the speed loop; on line, all windows closed. */
void AddProceduresOne(Tour &tour);
/** Those that tune the current loop and the speed loop; a part of them. */
void AddTuningProcedures(Tour &tour, Walk &walk);
/** Those from start and stop to the winder, which stays wired; on line, all windows closed. */
void AddProceduresTwo(Tour &tour);
/** A drive is swapped and a fault found; after the winder's. */
void AddProceduresThree(Tour &tour);
/** The windows of the other menus that are of use on line. */
void AddOnlineRound(Tour &tour);
/** A drawing seen more closely, a window taken out of the frame, and the option that keeps both. */
void AddWindowsJob(Tour &tour);
/** What the windows job has left, after a restart. */
void AddKeptWindows(Tour &tour);
/** The list of recent files, after a restart. */
void AddRecentFilesJob(Tour &tour);
/** Ends the program, starts it again, opens the file of the main job and looks at what it holds. */
void AddRestart(Tour &tour);
/** The windows that are of use off line, and both Mentors page by page. */
void AddOfflineRound(Tour &tour);
/** Leaves without saving. */
void AddLeaving(Tour &tour);

/** Where the main job saves its file. */
QString SavedFile(const Tour &tour);

} // namespace quorvik
