#include "platform/CommandLine.h"

#include <gtest/gtest.h>

namespace quorvik
{

TEST(CommandLine, NamesTheSettingsFileWithAndWithoutQuotes)
{
    const struct {
        const char *line;
        const char *path;
    } cases[] = {
        {"   ", ""},
        {"a.Svx", "a.Svx"},
        {"  \"/home/u/my set.Svx\" ", "/home/u/my set.Svx"},
        {"\"/home/u/my set.Svx", "/home/u/my set.Svx"},
        {"/home/u/odd\"", "/home/u/odd\""},
        {"\"", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(SettingsPathOf(QLatin1String(c.line)), QLatin1String(c.path)) << c.line;
}

} // namespace quorvik
