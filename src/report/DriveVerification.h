#pragma once

#include "compare/ParameterSet.h"
#include "operations/Outcome.h"
#include "report/CommissioningReport.h"

#include <QDateTime>
#include <span>

namespace quorvik
{

struct Engines;

/** A set held against a drive that was read for it. */
struct DriveVerification {
    Verification verification = Verification::NotCompared;
    QString text;                   ///< what was compared with what, when, and what came of it
    CommissioningTable differences; ///< the settings that differ, and those of which that is not known
    ParameterSet drive;             ///< as it was read; knows nothing where that failed
    QDateTime readAt;               ///< invalid where it failed
};

/**
 * Holds settings against those of a drive. Values that an input of the drive sets are left out.
 * @param others further sets that are held against the drive, such as that of the open file.
 * @param blocks by number, the block that shows a parameter; may be empty.
 */
DriveVerification VerifySet(const ParameterSet &set, const ParameterSet &drive, const QDateTime &readAt,
                            std::span<const ParameterSet *const> others = {}, const QStringList &blocks = {});

/** A report of what was read off a drive, with nothing to hold against it. */
DriveVerification VerifyReading(const ParameterSet &drive, const QDateTime &readAt);

/** Nothing was compared. @param why a sentence. */
DriveVerification NotVerified(const QString &why);

/** Why a reading of the drive was none, in a sentence; empty where it was one, if perhaps not of all rows. */
QString ReadingFailure(Outcome outcome);

/**
 * Reads the whole drive at this moment, with its progress shown, and holds against it what the windows show,
 * and the open file where there is one. The open set stays as it is. Off line, and where the drive cannot be
 * read, nothing is compared, and the text says why.
 */
DriveVerification VerifyOpenSet(Engines &engines, const QStringList &blocks = {});

} // namespace quorvik
