#include "generator/PageWriter.h"
#include "generator/WordWriter.h"
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
          "# Speed\n\nSee [Ramp](Ramp.htm).\n\n![S](picture:FormSpeed)\n\n"
          "1. A step.\n\n   ![T](picture:FormTorque)\n\nNot so: ![U](picture:FormSpeed)\n\n@220..217 Back.\n"
          "@226 The forward acceleration of set A.\n@227 Shorter: the motor brakes harder.\n");
    write("topics/Lost.md", "Lost\n");
    write("contents.txt", "Speed.htm\nGone.htm\n");

    QStringList problems;
    Topics topics;
    topics.Read(folder.path(), problems);
    topics.Check({QStringLiteral("Speed.htm"), QStringLiteral("Torque.htm")}, problems);
    PageWriter(desk.table, topics, folder.path(), folder.filePath(QStringLiteral("out"))).WriteAll(problems);
    problems.replaceInStrings(folder.path() + u'/', QString()).sort();
    EXPECT_EQ(
        problems.join(u'\n').toStdString(),
        "\"Lost.htm\" stands nowhere in the contents\n"
        "Speed.htm: a picture stands alone in its line: Not so: ![U](picture:FormSpeed)\n"
        "Speed.htm: no row of a parameter: @220..217 Back.\n"
        "Speed.htm: the link to \"Ramp.htm\" leads nowhere\n"
        "Speed.htm: the row of (226) says no more than its name: @226 The forward acceleration of set A.\n"
        "Speed.htm: there is no picture of FormSpeed\n"
        "Speed.htm: there is no picture of FormTorque\n"
        "a window asks for the topic \"Torque.htm\", which does not exist\n"
        "contents.txt: there is no topic \"Gone.htm\"\n"
        "topics/Lost.md: begins with no \"# Title\"");
}

TEST(Generator, TopicsAndParametersAreFoundByTheirWords)
{
    const quorvik::testing::TestDesk desk;
    const QDir folder(desk.folder.path());
    folder.mkdir(QStringLiteral("topics"));
    const std::pair<const char *, QByteArray> files[] = {
        {"contents.txt", "[Loops]\n  Speed.htm\n"},
        {"topics/Speed.md", "# Speed\nIndex: rpm; tacho\n\nThe speed, see [the ramp](Gone.htm).\n\n"
                            "@220..221 A fixed speed.\n@221 As above.\n"}};
    for (const auto &[name, text] : files) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QStringList problems;
    Topics topics;
    topics.Read(folder.path(), problems);
    WriteWords(topics, folder.path(), problems);
    EXPECT_TRUE(problems.isEmpty());
    const HelpWords words = HelpWords::Load(folder.filePath(QStringLiteral("quorvik.words")));
    ASSERT_EQ(words.topics.size(), 1);
    const HelpWords::Topic &topic = words.topics.first();
    EXPECT_EQ((QStringList{topic.page, topic.title, topic.chapter} + topic.keywords).join(u'|').toStdString(),
              "Speed.htm|Speed|Loops|rpm|tacho");
    EXPECT_EQ(topic.words.toStdString(), "speed the see ramp");
    EXPECT_EQ(words.parameters[220].toStdString(), "fixed speed");
    EXPECT_EQ(words.parameters[221].toStdString(), "fixed speed above");
}

} // namespace quorvik::help
