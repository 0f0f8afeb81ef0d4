#include "generator/PageWriter.h"
#include "support/TestDesk.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace quorvik::help
{

TEST(Generator, WhatIsWrongFailsWithASentence)
{
    const quorvik::testing::TestDesk desk;
    const QDir folder(desk.folder.path());
    folder.mkdir(QStringLiteral("topics"));
    const auto write = [&](const char *name, const char *text) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    write("topics/Speed.md",
          "# Speed\n\nSee [Ramp](Ramp.htm).\n\n![S](picture:FormSpeed)\n\n@220..217 Back.\n");
    write("topics/Lost.md", "Lost\n");
    write("contents.txt", "Speed.htm\nGone.htm\n");

    QStringList problems;
    Topics topics;
    topics.Read(folder.path(), problems);
    topics.Check({QStringLiteral("Speed.htm"), QStringLiteral("Torque.htm")}, problems);
    PageWriter(desk.table, topics, folder.path(), folder.filePath(QStringLiteral("out"))).WriteAll(problems);
    problems.replaceInStrings(folder.path() + u'/', QString()).sort();
    EXPECT_EQ(problems.join(u'\n').toStdString(),
              "\"Lost.htm\" stands nowhere in the contents\n"
              "Speed.htm: no row of a parameter: @220..217 Back.\n"
              "Speed.htm: the link to \"Ramp.htm\" leads nowhere\n"
              "Speed.htm: there is no picture of FormSpeed\n"
              "a window asks for the topic \"Torque.htm\", which does not exist\n"
              "contents.txt: there is no topic \"Gone.htm\"\n"
              "topics/Lost.md: begins with no \"# Title\"");
}

} // namespace quorvik::help
