#pragma once

#include "operations/TripRecords.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace quorvik
{

class ParameterTable;

/** The faults of a trip: "Phase Loss, OverTemp", or that they are not known. */
QString TripFaultsText(const TripRecord &record);

/** What a record is worth, in a sentence: when it was seen, and how much of it was read later or not at all.
 */
QString TripSummary(const TripRecord &record);

/** The heads of a record's table. */
QStringList TripHeads();

/** The fields of a row under these heads. */
QStringList TripFields(const TripValue &value, const ParameterTable &table);

/**
 * A record as comma-separated values in UTF-8, one CR LF terminated line each; no text can become a formula.
 * @param setName what the open set is called.
 */
QByteArray TripAsCsv(const TripRecord &record, const ParameterTable &table, const QString &setName);

} // namespace quorvik
