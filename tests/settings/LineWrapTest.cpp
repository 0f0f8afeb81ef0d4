#include "settings/LineWrap.h"
#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

namespace quorvik
{

TEST(LineWrap, BreaksAtTheLastBlankWithinTheWidthAndKeepsEveryWord)
{
    // The text, and its lines with | between them.
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"a text as long as the line stays whole, blanks or not", "ab cd", "ab cd"},
        {"the last blank within wins over the first", "a b cdef", "a b|cdef"},
        {"a blank at the width itself still counts", "abcd efgh", "abcd|efgh"},
        {"one just beyond does not", "ab cde fgh", "ab|cde|fgh"},
        {"a leading blank gives an empty line", " abcd ef", "|abcd|ef"},
        {"a saved blank", " ", " "},
        {"a word of three lines", "abcdefghijk", "abcd|efgh|ijk"},
        {"no blank behind the last word", "go wwww", "go|wwww"},
        {"a word as long as the line amid others", "abcde end", "abcd|e end"},
        {"breaks of every kind, empty lines among them", "a\r\n\r\nb\nc\rd", "a||b|c|d"},
        {"a closing blank prints as nothing", "wwww  ", "wwww| "},
        {"a character of two units is not torn", "aaa\U0001F600b c", "aaa|\U0001F600b c"},
    };
    for (const auto &[what, text, lines] : cases)
        EXPECT_EQ(WrapNotes(QString::fromUtf8(text), 5).join(u'|').toStdString(), lines) << what;
    EXPECT_THROW(LineWrap(QStringLiteral("abcdef g"), 5), RuntimeFailure) << "the first blank lies beyond";
}

} // namespace quorvik
