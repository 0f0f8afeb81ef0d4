#include "settings/LineWrap.h"
#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

namespace quorvik
{

namespace
{

QString Repeated(char16_t character, int count)
{
    return QString(count, QChar(character));
}

TEST(LineWrap, BreaksAtTheLastBlankWithinTheWidth)
{
    const std::tuple<const char *, const char *, int, const char *> cases[] = {
        {"a text as long as the line stays whole, blanks or not", "ab cd", 5, "ab cd"},
        {"the last blank within wins over the first", "a b c defg ", 6, "a b c"},
        {"a blank at the width itself still counts", "abcd efgh ", 5, "abcd"},
        {"a blank just beyond does not", "ab cde fgh ", 6, "ab"},
        {"a leading blank gives an empty line", " abcdefg ", 5, ""},
    };
    for (const auto &[what, text, width, line] : cases)
        EXPECT_EQ(LineWrap(QLatin1String(text), width).toStdString(), line) << what;
    EXPECT_THROW(LineWrap(QStringLiteral("abcdef g"), 5), RuntimeFailure) << "the first blank lies beyond";
}

TEST(WrapNotes, KeepsEveryWordAndBreakOfAnyNotes)
{
    const QString word76 = Repeated(u'w', 76);
    const QString word77 = Repeated(u'x', 77);
    const std::tuple<const char *, QString, QStringList> cases[] = {
        {"a saved blank", QStringLiteral(" "), {QStringLiteral(" ")}},
        {"one character more", word77 + u'y', {Repeated(u'x', 76), QStringLiteral("xy")}},
        {"no blank behind the last word", QStringLiteral("go ") + word76, {QStringLiteral("go"), word76}},
        {"a word as long as the line amid others",
         word77 + QStringLiteral(" end"),
         {Repeated(u'x', 76), QStringLiteral("x end")}},
        {"breaks of every kind, empty lines among them",
         QStringLiteral("a\r\n\r\nb\nc\rd"),
         {QStringLiteral("a"), QString(), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}},
        {"a closing blank prints as nothing", word76 + QStringLiteral("  "), {word76, QStringLiteral(" ")}},
        {"a character of two units is not torn",
         Repeated(u'a', 75) + QStringLiteral("\U0001F600b c"),
         {Repeated(u'a', 75), QStringLiteral("\U0001F600b c")}},
    };
    for (const auto &[what, notes, lines] : cases)
        EXPECT_EQ(WrapNotes(notes, 77), lines) << what;
}

} // namespace

} // namespace quorvik
