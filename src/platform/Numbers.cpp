#include "platform/Numbers.h"

#include "platform/Arithmetic.h"
#include "platform/RuntimeFailure.h"

#include <QLocale>
#include <charconv>
#include <cmath>

namespace quorvik
{

namespace
{

bool IsDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/** Skips the digits from position on. @return how many there were. */
qsizetype SkipDigits(QStringView text, qsizetype &position)
{
    const qsizetype start = position;
    while (position < text.size() && IsDigit(text[position]))
        ++position;
    return position - start;
}

void SkipSign(QStringView text, qsizetype &position)
{
    if (position < text.size() && (text[position] == u'+' || text[position] == u'-'))
        ++position;
}

bool HasNumberForm(QStringView text)
{
    qsizetype position = 0;
    SkipSign(text, position);
    qsizetype digits = SkipDigits(text, position);
    if (position < text.size() && text[position] == u'.') {
        ++position;
        digits += SkipDigits(text, position);
    }
    if (digits == 0)
        return false;
    if (position < text.size() && (text[position] == u'e' || text[position] == u'E')) {
        ++position;
        SkipSign(text, position);
        if (SkipDigits(text, position) == 0)
            return false;
    }
    return position == text.size();
}

/** The decimal digits of a number of at most 15 significant digits: value is 0.digits times 10 to the
 * exponent. */
struct Decimal {
    bool negative = false;
    QByteArray digits;
    int exponent = 0;
};

Decimal ToDecimal(double value)
{
    // "d.dddddddddddddde+xx", 15 significant digits, correctly rounded.
    const QByteArray scientific = QByteArray::number(std::abs(value), 'e', 14);
    const qsizetype mark = scientific.indexOf('e');
    Decimal decimal;
    decimal.negative = std::signbit(value) && value != 0.0;
    decimal.digits = scientific.left(1) + scientific.mid(2, mark - 2);
    decimal.exponent = scientific.mid(mark + 1).toInt() + 1;
    while (decimal.digits.size() > 1 && decimal.digits.endsWith('0'))
        decimal.digits.chop(1);
    if (decimal.digits == "0")
        decimal.exponent = 1;
    return decimal;
}

} // namespace

std::optional<double> ParseNumber(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (!HasNumberForm(trimmed))
        return std::nullopt;
    bool ok = false;
    const double value = QLocale::c().toDouble(trimmed, &ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

bool IsNumeric(QStringView text)
{
    return ParseNumber(text).has_value();
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
    const Decimal decimal = ToDecimal(value);
    const int count = int(decimal.digits.size());
    QByteArray text;
    if (decimal.exponent > 15 || decimal.exponent < -14) {
        text = decimal.digits.left(1);
        if (count > 1)
            text += '.' + decimal.digits.mid(1);
        const int exponent = decimal.exponent - 1;
        text += exponent < 0 ? "E-" : "E+";
        text += QByteArray::number(std::abs(exponent)).rightJustified(2, '0');
    } else if (decimal.exponent <= 0) {
        text = "0." + QByteArray(-decimal.exponent, '0') + decimal.digits;
    } else if (count <= decimal.exponent) {
        text = decimal.digits.leftJustified(decimal.exponent, '0');
    } else {
        text = decimal.digits.left(decimal.exponent) + '.' + decimal.digits.mid(decimal.exponent);
    }
    return QString::fromLatin1(decimal.negative ? '-' + text : text);
}

QString FormatFixed(double value, int decimals)
{
    const Decimal decimal = ToDecimal(value);
    // All digits up to the wanted place, as one whole number scaled by 10 to the decimals.
    const int kept = decimal.exponent + decimals;
    QByteArray digits;
    bool roundUp = false;
    if (kept >= 0) {
        digits = decimal.digits.left(kept).leftJustified(kept, '0');
        roundUp = kept < decimal.digits.size() && decimal.digits.at(kept) >= '5';
    }
    if (roundUp) {
        qsizetype place = digits.size();
        while (place > 0 && digits[place - 1] == '9')
            digits[--place] = '0';
        if (place > 0)
            ++digits.data()[place - 1];
        else
            digits.prepend('1');
    }
    digits = digits.rightJustified(decimals + 1, '0');
    const bool isZero = digits.count('0') == digits.size();
    QByteArray text = digits.left(digits.size() - decimals);
    if (decimals > 0)
        text += '.' + digits.right(decimals);
    return QString::fromLatin1(decimal.negative && !isZero ? '-' + text : text);
}

} // namespace quorvik
