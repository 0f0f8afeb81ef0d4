#pragma once

#include "compare/VerifiedWrite.h"

namespace quorvik
{

/** A verified write on disk, so that another run of the program can go on with it. */
struct StoredWrite {
    QString what; ///< whose values were written, as whoever began it calls it
    UnfinishedWrite write;
};

/**
 * Keeps it, whole or not at all; the folder is made where it is missing.
 * @return empty, or why it could not be kept.
 */
QString SaveWrite(const QString &path, const StoredWrite &stored);

/** @param stored gets it. @return empty, or why the file holds none. */
QString LoadWrite(const QString &path, StoredWrite &stored);

} // namespace quorvik
