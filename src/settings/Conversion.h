#pragma once

#include <QString>
#include <vector>

namespace quorvik
{

/** What becomes of a file that may be one of the older format. */
enum class ConversionResult { Converted, LeftAlone, Failed };

struct Conversion {
    QString from;
    QString to; ///< the file of the present format; empty where none is to be written
    ConversionResult result = ConversionResult::LeftAlone;
    QString sentence; ///< why it was left alone or failed
};

/**
 * Converts one settings file of the older format to the present one, and reads back what was written: every
 * record, the notes and the virtual operator are then the same, or the conversion has failed and the new file
 * is taken away. The old file is never written. The new file's folder is made where it is missing.
 * @param overwrites whether a file that stands at to is replaced; one of the older format never is.
 */
Conversion ConvertSettings(const QString &from, const QString &to, bool overwrites);

/**
 * The files of a folder, each with its place in another; those of the older format get the extension Svx.
 * Nothing is written yet. Files that are to be left alone have no place, and say why.
 * @param recurses takes the files of all folders within; they keep their folders.
 */
std::vector<Conversion> PlanConversions(const QString &fromFolder, const QString &toFolder, bool recurses);

} // namespace quorvik
