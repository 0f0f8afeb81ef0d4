#pragma once

#include <QString>
#include <QVariant>
#include <vector>

namespace quorvik
{

/** A column of a table of the older format. */
struct JetColumn {
    QString name;
    QString type; ///< as JetOutput.h lists them
};

/** A table of the older format with all its rows, in the order in which they were put in. */
struct JetTable {
    QString name;
    std::vector<JetColumn> columns;
    std::vector<QVariant> values; ///< row after row: null, texts, whole numbers, and what is neither
    int rowCount = 0;
};

/** What a reading may take, and who does it. */
struct JetLimits {
    QString program; ///< quorvik-jet; beside this program where empty
    int waitMs = 10000;
    qint64 outputBytes = 64LL * 1024 * 1024;
};

/**
 * Reads the tables of a file of the older format. The file may be anybody's, so another process does it, with
 * limits on its time and memory, an environment of its own and no way to write; only what it prints is taken.
 * Waits for it without letting events in, which is some ten milliseconds for a settings file.
 * @param tables gets them; counts for nothing after a failure.
 * @return empty, or why the file is not read, as the end of a sentence that begins with its name.
 */
QString ReadJetFile(const QString &path, std::vector<JetTable> &tables, const JetLimits &limits = {});

} // namespace quorvik
