#include "platform/CommandLine.h"

#include <gtest/gtest.h>

namespace quorvik
{

TEST(CommandLine, NamesTheSettingsFileWithAndWithoutQuotes)
{
    const struct {
        QString line;
        QString path;
    } cases[] = {
        {QString(), QString()},
        {QStringLiteral("   "), QString()},
        {QStringLiteral("a.Svx"), QStringLiteral("a.Svx")},
        {QStringLiteral("  \"/home/u/my set.Svx\" "), QStringLiteral("/home/u/my set.Svx")},
        {QStringLiteral("\"/home/u/my set.Svx"), QStringLiteral("/home/u/my set.Svx")},
        {QStringLiteral("/home/u/odd\""), QStringLiteral("/home/u/odd\"")},
        {QStringLiteral("\"\""), QString()},
        {QStringLiteral("\""), QString()},
    };
    for (const auto &c : cases)
        EXPECT_EQ(SettingsPathOf(c.line), c.path) << qPrintable(c.line);
}

} // namespace quorvik
