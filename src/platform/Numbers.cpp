#include "platform/Numbers.h"

#include "platform/Arithmetic.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

/** Digits that a number as text has at most. */
constexpr int Significant = 15;

} // namespace

std::optional<double> ParseNumber(QStringView text)
{
    // Letters beyond Latin-1 become question marks: a locale, the C locale too, takes more signs than these.
    bool ok = false;
    const double value = text.trimmed().toLatin1().toDouble(&ok);
    // "inf" and "nan" pass.
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

bool IsNumeric(QStringView text)
{
    return ParseNumber(text).has_value();
}

std::optional<QString> PointForComma(const QString &typed)
{
    if (typed.count(u',') != 1 || typed.contains(u'.'))
        return typed;
    const qsizetype comma = typed.indexOf(u',');
    QString pointed = typed;
    pointed[comma] = u'.';
    if (!IsNumeric(pointed))
        return typed;
    constexpr int digitsOfThousands = 3;
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const auto *afterDigits = std::find_if_not(typed.cbegin() + comma + 1, typed.cend(), isDigit);
    if (afterDigits - typed.cbegin() == comma + 1 + digitsOfThousands)
        return std::nullopt;
    return pointed;
}

double CDbl(QStringView text)
{
    const std::optional<double> value = ParseNumber(text);
    if (!value)
        throw RuntimeFailure(QStringLiteral("\"%1\" is not a number.").arg(text.left(40)));
    return *value;
}

std::int32_t CLng(const QString &text)
{
    return CLng(CDbl(text));
}

QString DoubleText(double value)
{
    if (value == 0)
        return QStringLiteral("0");
    QString text = QString::number(value, 'G', Significant);
    const qsizetype mark = text.indexOf(u'E');
    const int exponent = mark < 0 ? 0 : text.mid(mark + 1).toInt();
    if (exponent >= 0 || exponent < -Significant)
        return text;
    // Qt would write numbers below 0.0001 with an exponent.
    const QString digits = text.left(mark).remove(u'.').remove(u'-');
    return (value < 0 ? QStringLiteral("-0.") : QStringLiteral("0.")) + QString(-exponent - 1, u'0') + digits;
}

QString FormatFixed(double value, int decimals)
{
    // "d.dddddddddddddde+xx": all digits as one whole number, and how many of them are past the last decimal.
    const QByteArray scientific = QByteArray::number(std::abs(value), 'e', Significant - 1);
    qint64 digits = scientific.left(Significant + 1).replace(".", "").toLongLong();
    const int surplus = Significant - 1 - scientific.mid(Significant + 2).toInt() - decimals;
    qint64 unit = 1;
    for (int i = 0; i < std::min(surplus, Significant + 1); ++i)
        unit *= 10;
    digits = (digits + unit / 2) / unit;
    QString text = QString::number(digits) + QString(std::max(-surplus, 0), u'0');
    text = text.rightJustified(decimals + 1, u'0');
    if (decimals > 0)
        text.insert(text.size() - decimals, u'.');
    return value < 0 && digits != 0 ? u'-' + text : text;
}

} // namespace quorvik
