#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>

namespace quorvik
{

/** What the person at the machine says of it; each may be empty. */
struct CommissioningPlace {
    QString site;
    QString machine;
    QString customer;
    QString person;

    bool operator==(const CommissioningPlace &) const = default;
};

/** Rows of texts under their heads; every row has as many fields as there are heads. */
struct CommissioningTable {
    QStringList heads;
    QList<QStringList> rows;
    QString remark; ///< a sentence in place of the rows, or below them; may be empty

    bool operator==(const CommissioningTable &) const = default;
};

/** A recording of the trend recorder, as the report shows it. */
struct CommissioningRecording {
    QString path;               ///< of its file, for the plot
    QString title;              ///< "Step of (217) Reference 0, 2026-11-23 09:12"
    CommissioningTable figures; ///< of its steps; no rows where it holds none

    bool operator==(const CommissioningRecording &) const = default;
};

/** How the set was held against the drive. */
enum class Verification : std::uint8_t {
    NotCompared, ///< there was no drive, or it could not be read
    Same,        ///< every setting was read from the drive and is the same
    Differs,     ///< the drive holds something else
};

/** "same", "differs" or "not_compared", as scripts know it. */
QString WordOf(Verification verification);

/** All that a commissioning report says, as texts; pages and pictures are made from nothing else. */
struct CommissioningReport {
    CommissioningPlace place;
    QString made;                ///< date and time with the zone, "2026-11-23 09:12 +01:00"
    QString program;             ///< "Quorvik 2.1"
    QString setName;             ///< the title of the settings file, or "unsaved settings"
    QString notes;               ///< of the set
    CommissioningTable identity; ///< model, firmware, serial data of the drive
    CommissioningTable motor;
    CommissioningTable settings; ///< changed from factory: number, name, factory, now
    CommissioningTable faults;   ///< the drive's log, the most recent first
    CommissioningTable journal;  ///< changes of the day
    QList<CommissioningRecording> recordings;
    Verification verification = Verification::NotCompared;
    QString verificationText; ///< "Compared with the drive on ...: all 310 settings are the same."
    CommissioningTable differences;
    std::map<int, std::int32_t> rawValues; ///< by parameter, for the map; what is missing is not known

    bool operator==(const CommissioningReport &) const = default;
};

/** For another process. */
QByteArray ToJson(const CommissioningReport &report);
/** @param failure gets a sentence where the text is no report; the result is empty then. */
CommissioningReport ReportFromJson(const QByteArray &text, QString &failure);

} // namespace quorvik
