// Number entry: what a user types into the edit window, for every kind of parameter.

#include "Fuzzing.h"

#include "model/Conversions.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

#include <QRegularExpression>
#include <cmath>

using namespace quorvik;
using namespace quorvik::fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    const std::int32_t attributes = bytes.Next16();
    const QString text = QString::fromUtf8(bytes.Rest());
    const std::optional<double> number = ParseNumber(text);
    Require(number.has_value() == IsNumeric(text), "both readers agree on what is a number");
    if (number) {
        Require(std::isfinite(*number), "a number is finite");
        const QString shown = DoubleText(*number);
        const std::optional<double> again = ParseNumber(shown);
        Require(again.has_value(), "a number's text is a number");
        Require(DoubleText(*again) == shown, "a number's text stays as it is");
        for (const int decimals : {0, DecimalsOf(attributes), 15}) {
            const QString fixed = FormatFixed(*number, decimals);
            Require(ParseNumber(fixed).has_value(), "fixed-point text is a number");
            Require(!fixed.startsWith(u'-') || fixed.contains(QRegularExpression(QStringLiteral("[1-9]"))),
                    "a zero has no sign");
        }
    }
    try {
        const std::int32_t raw = EntryToRaw(text, attributes);
        Require(number.has_value(), "only a number becomes a raw value");
        const double expected = *number * std::pow(10.0, DecimalsOf(attributes));
        Require(std::abs(double(raw) - expected) <= 0.5 + std::abs(expected) * 1e-12,
                "the raw value is the nearest one");
        Require(EntryToRaw(NumberText(raw, attributes), attributes) == raw,
                "a raw value comes back from its text");
    } catch (const RuntimeFailure &) {
        // No number, or beyond what a raw value can be.
    }
    return 0;
}
