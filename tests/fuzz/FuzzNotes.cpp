// The notes of a set as they are printed, in lines of any width.

#include "Fuzzing.h"

#include "settings/LineWrap.h"

using namespace quorvik;
using namespace quorvik::fuzzing;

namespace
{

QString WithoutBlanks(const QString &text)
{
    QString rest;
    for (const QChar character : text)
        if (!QStringLiteral(" \t\r\n\u2028\u2029").contains(character))
            rest += character;
    return rest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    const int width = 3 + bytes.Next() % 120;
    const QString text = QString::fromUtf8(bytes.Rest());
    const QStringList lines = WrapNotes(text, width);
    Require(!lines.isEmpty(), "there is a line");
    for (const QString &line : lines)
        Require(line.size() <= width, "no line is longer than the width");
    Require(WithoutBlanks(lines.join(u' ')) == WithoutBlanks(text), "nothing is lost but blanks");
    return 0;
}
