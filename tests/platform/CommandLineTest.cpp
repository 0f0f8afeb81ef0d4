#include "platform/CommandLine.h"

#include <QDir>
#include <gtest/gtest.h>

namespace quorvik
{

TEST(CommandLine, AnswersRefusesOrNamesAFile)
{
    const std::tuple<const char *, const char *, bool, const char *> cases[] = {
        {"--help", "[file]", true, ""},
        {"-v", "", true, ""},
        {"-platform minimal -h", "[file]", false, "minimal"},
        {"-reverse", "", false, ""},
        {"my set.Svx", "", true, "my set.Svx"},
        {"-- -a.Svx", "", true, "-a.Svx"},
    };
    for (const auto &[arguments, answer, isRight, file] : cases) {
        const CommandLine line =
            ReadCommandLine((QStringLiteral("quorvik ") + QLatin1String(arguments)).split(u' '));
        EXPECT_TRUE(line.answer.contains(QLatin1String(answer))) << arguments;
        EXPECT_EQ(line.failure.isEmpty(), isRight) << arguments;
        EXPECT_EQ(line.file, QLatin1String(file)) << arguments;
    }
}

TEST(CommandLine, NamesTheSettingsFileWithAndWithoutQuotes)
{
    const std::pair<const char *, const char *> cases[] = {
        {"   ", ""},
        {"a.Svx", "@/a.Svx"},
        {"  \"/home/u/my set.Svx\" ", "/home/u/my set.Svx"},
        {"\"/home/u/my set.Svx", "/home/u/my set.Svx"},
        {"/home/u/odd\"", "/home/u/odd\""},
        {"\"", ""},
    };
    for (const auto &[line, path] : cases)
        EXPECT_EQ(SettingsPathOf(QLatin1String(line)),
                  QString::fromLatin1(path).replace(u'@', QDir::currentPath()))
            << line;
}

} // namespace quorvik
