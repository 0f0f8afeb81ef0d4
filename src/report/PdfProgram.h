#pragma once

#include "report/CommissioningReport.h"

#include <functional>

namespace quorvik
{

/** How a report is to become a file, and what that may take. */
struct PdfWish {
    QString path;         ///< of the file; written whole, or left as it was
    QString paper;        ///< "a4" or "letter"
    QString presets;      ///< path of the factory table
    QString program = {}; ///< quorvik-report; beside this program where empty
    int waitMs = 120000;
    std::function<bool()> isUnwanted = {}; ///< asked meanwhile; true ends it
};

/** What quorvik-report takes of the report on its standard input at most. */
inline constexpr qint64 MostReportBytes = 64LL * 1024 * 1024;

/** "a4" or "letter": what the user's country prints on. */
QString UsualPaperName();

/**
 * Makes a PDF of a report. Pages need fonts and pictures, which another program has: it is started, given the
 * report and waited for, with events let in.
 * @return empty, or why there is no file, in a sentence.
 */
QString WritePdf(const CommissioningReport &report, const PdfWish &wish);

} // namespace quorvik
