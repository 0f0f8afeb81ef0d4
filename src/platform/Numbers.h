#pragma once

#include <QString>
#include <QStringView>
#include <cstdint>
#include <optional>

namespace quorvik
{

/**
 * Reads a number as a user types it, in every locale alike: decimal digits with an optional sign, point and
 * exponent, blanks around it allowed. A comma, "inf", "nan" and hexadecimal are not numbers.
 */
std::optional<double> ParseNumber(QStringView text);

bool IsNumeric(QStringView text);

/**
 * What a user typed, with a point where the only comma of a number stands for one: "12,5" is "12.5". Other
 * texts stay as they are.
 * @return nothing where exactly three digits follow the comma, for "1,000" may be one or a thousand.
 */
std::optional<QString> PointForComma(const QString &typed);

/** ParseNumber(), raising RuntimeFailure where the text is no number. */
double CDbl(QStringView text);

/** The text read as a number and converted by CLng(double), raising RuntimeFailure on no number or overflow.
 */
std::int32_t CLng(const QString &text);

/** A number as text: at most 15 significant digits, in the shortest plain form ("0.5", "-12", "1E+20"). */
QString DoubleText(double value);

/**
 * A number as fixed-point text with 0 to 15 decimals. The decimal digits of DoubleText(value) are rounded,
 * halves away from zero (2.675 to two decimals is "2.68"), and a result of zero has no sign.
 */
QString FormatFixed(double value, int decimals);

} // namespace quorvik
