#pragma once

#include "report/CommissioningReport.h"

#include <optional>

namespace quorvik
{

class Document;

/** What lines such as "Site: Mill 3" of a set's notes say; the first of each kind counts, capitals or not. */
CommissioningPlace PlaceIn(const QString &notes);

/** The notes without the lines that PlaceIn() takes. */
QString NotesWithoutPlace(const QString &notes);

/**
 * The notes with this place in them: a line of it is replaced where it stands or added at the end, and one
 * whose text is empty goes. All else stays as it is, and so does a line that says the same already.
 * @return nothing where a settings file could not hold them, see LongestNotes.
 */
std::optional<QString> NotesWithPlace(const QString &notes, const CommissioningPlace &place);

/** Puts the place into the notes of the open set, which is marked where they change.
 * @return empty, or why the notes stay as they are, in a sentence. */
QString KeepPlace(Document &document, const CommissioningPlace &place);

} // namespace quorvik
