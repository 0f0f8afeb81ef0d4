#pragma once

#include "trend/StoredRecording.h"

/** What the list of recordings says. */
namespace quorvik::RecordingTexts
{

/** The heads of the columns. */
QStringList Heads();
/** The fields of a row, as many as there are heads. */
QStringList Fields(const StoredRecording &recording);
/** "2026-11-22 14:03:10", by the clock on the wall at that time and place. */
QString When(const StoredRecording &recording);
/** "35.2 s", "12:03 min", "1:00:00 h". */
QString Length(qint64 milliseconds);
/** How it stands with it, in sentences: that it was cut off, why it cannot be read, that it will be cleared
 * away. */
QString State(const StoredRecording &recording);

} // namespace quorvik::RecordingTexts
