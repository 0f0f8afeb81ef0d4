#include "generator/PageWriter.h"
#include "generator/ProjectWriter.h"
#include "model/Conversions.h"
#include "support/TestDesk.h"

#include <QFile>
#include <QImage>
#include <gtest/gtest.h>

namespace quorvik::help
{

namespace
{

/** A help of two topics in a folder of its own, to be spoilt by a test. */
class Generator : public ::testing::Test
{
protected:
    Generator()
    {
        QDir(folder.path()).mkdir(QStringLiteral("topics"));
        QDir(folder.path()).mkdir(QStringLiteral("pictures"));
        QImage picture(900, 10, QImage::Format_RGB32);
        picture.fill(Qt::white);
        picture.save(folder.filePath(QStringLiteral("pictures/FormRamp.png")));
        WriteGoodHelp();
    }

    void WriteGoodHelp() const
    {
        Write("topics/Speed.md", "# Speed\nIndex: rate; pace\n\nSee [Ramp](Ramp%20Up.htm).\n");
        Write("topics/Ramp Up.md",
              "# Ramp\n\n![Ramp](picture:FormRamp)\n\n@217 The *first* one.\n@218 Next.\n");
        Write("contents.txt", "[All]\n  Speed.htm\n    Ramp Up.htm\n");
    }

    void Write(const char *name, const char *text) const
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    /** @return what the generator complains about, without the folder's name. */
    QString Problems(const char *required = "Speed.htm")
    {
        QStringList problems;
        Topics topics;
        topics.Read(folder.path(), problems);
        topics.Check({QString::fromLatin1(required)}, problems);
        const QString out = folder.filePath(QStringLiteral("out"));
        PageWriter pages(desk.model, topics, folder.filePath(QStringLiteral("pictures")), out);
        pages.WriteAll(problems);
        WriteProject(topics, pages.Files(), out, problems);
        return problems.join(u'\n').remove(folder.path() + u'/');
    }

    QString Made(const char *name) const
    {
        QFile file(folder.filePath(QStringLiteral("out/") + QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return QString::fromUtf8(file.readAll());
    }

    quorvik::testing::TestDesk desk;
    QTemporaryDir folder;
};

} // namespace

TEST_F(Generator, WhatIsWrongFailsWithASentence)
{
    const struct {
        const char *file;
        const char *text;
        const char *problem;
    } cases[] = {
        {"topics/Speed.md", "# Speed\n\nSee [Ramp](Ramp.htm).\n",
         "Speed.htm: the link to \"Ramp.htm\" leads nowhere"},
        {"topics/Speed.md", "# Speed\n\n![Speed](picture:FormSpeed)\n",
         "Speed.htm: there is no picture of FormSpeed"},
        {"topics/Speed.md", "# Speed\n\n@9999 Too far.\n",
         "Speed.htm: no row of a parameter: @9999 Too far."},
        {"topics/Speed.md", "# Speed\n\n@220..217 Backwards.\n",
         "Speed.htm: no row of a parameter: @220..217 Backwards."},
        {"topics/Speed.md", "# Speed\n\n@217\n", "Speed.htm: no row of a parameter: @217"},
        {"topics/Speed.md", "Speed\n", "topics/Speed.md: begins with no \"# Title\""},
        {"contents.txt", "Speed.htm\nRamp Up.htm\nGone.htm\n",
         "contents.txt: there is no topic \"Gone.htm\""},
        {"topics/Lost.md", "# Lost\n", "\"Lost.htm\" stands nowhere in the contents"},
    };
    ASSERT_EQ(Problems(), QString());
    EXPECT_EQ(Problems("Torque.htm"),
              QStringLiteral("a window asks for the topic \"Torque.htm\", which does not exist"));
    for (const auto &wrong : cases) {
        WriteGoodHelp();
        Write(wrong.file, wrong.text);
        EXPECT_EQ(Problems(), QString::fromLatin1(wrong.problem));
    }
}

TEST_F(Generator, RowsTakeTheirNumbersFromTheFactoryTable)
{
    ASSERT_EQ(Problems(), QString());
    const QString page = Made("Ramp Up.htm");
    const ParamRecord &record = desk.model.ParamTable[218];
    for (const QString &cell : {QStringLiteral("(218) ") + record.Name,
                                ValueText(record.Max, record.Attributes), QStringLiteral("Next.")})
        EXPECT_TRUE(page.contains(cell)) << qPrintable(cell) << '\n' << qPrintable(page);
    EXPECT_EQ(page.count(QStringLiteral("<table")), 1) << "rows in a row make one table";
    EXPECT_TRUE(page.contains(QStringLiteral("<em>first</em>")));
}

TEST_F(Generator, ContentsNestAsTheirIndentationSays)
{
    Write("topics/Third.md", "# Third\n");
    Write("contents.txt", "[All]\n  Speed.htm\n    Ramp Up.htm\n  [More]\n    Third.htm\n");
    ASSERT_EQ(Problems(), QString());
    EXPECT_TRUE(Made("quorvik.qhp")
                    .simplified()
                    .contains(QStringLiteral("<section title=\"All\"> "
                                             "<section title=\"Speed\" ref=\"Speed.htm\"> "
                                             "<section title=\"Ramp\" ref=\"Ramp Up.htm\"/> </section> "
                                             "<section title=\"More\"> "
                                             "<section title=\"Third\" ref=\"Third.htm\"/> </section> "
                                             "</section>")));
}

} // namespace quorvik::help
