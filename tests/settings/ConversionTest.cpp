#include "SetFixture.h"

#include "jet/JetSettings.h"
#include "platform/DBEngine.h"
#include "settings/Conversion.h"

namespace quorvik::testing
{

using ConversionTest = SetTest;

TEST_F(ConversionTest, AFolderIsConvertedWhateverLiesInIt)
{
    table.Row(Param::Reference0).Name = QStringLiteral("Größe €");
    table.Row(Param::SaveParameters).Value = 1; // a file is taken over as it is
    document.Notes = QStringLiteral("Pumpe „Süd“\r\n2. Zeile");
    document.VirtualSettings[11] = {-300, 1, -2147483647 - 1, 70000};
    const StoredSet given{table.Records(), document.Notes, document.VirtualSettings};
    const auto tables = jet::SettingsTables(table, document);
    QDir().mkpath(Path("old/more"));
    for (const char *name : {"old/a.mdb", "old/a.Svx", "old/c.Svx", "old/more/d.svx"})
        ASSERT_TRUE(jet::WriteFile(Path(name), tables));
    ASSERT_TRUE(QFile::resize(Path("old/c.Svx"), QFileInfo(Path("old/c.Svx")).size() - 2048));
    ASSERT_EQ(file.Save(Path("old/b.Svx")), QString());
    const QByteArray before = Content(Path("old/a.Svx"));

    QStringList report;
    for (const Conversion &step :
         PlanConversions(QDir::current().relativeFilePath(Path("old")), Path("new"), true)) {
        const Conversion done = step.to.isEmpty() ? step : ConvertSettings(step.from, step.to, false);
        report.append(QDir(Path("old")).relativeFilePath(QFileInfo(done.from).absoluteFilePath()) + u' ' +
                      QString::number(int(done.result)));
        StoredSet stored;
        const bool isConverted = done.result == ConversionResult::Converted;
        EXPECT_TRUE(!isConverted || (ReadStoredSet(done.to, stored).isEmpty() && stored.IsSame(given)));
    }
    // Two of one name, one of the present format, a damaged one, and one in a folder of its own.
    EXPECT_EQ(report.join(u','), QStringLiteral("a.Svx 0,a.mdb 2,b.Svx 1,c.Svx 2,more/d.svx 0"));
    EXPECT_FALSE(DBEngine::IsOlderFormat(Path("new/more/d.Svx")));

    // What is there stays unless it is to be replaced; an older file stays in any case.
    const auto result = [&](const char *to, bool overwrites) {
        return ConvertSettings(Path("old/a.Svx"), Path(to), overwrites).result;
    };
    EXPECT_EQ(result("new/a.Svx", false), ConversionResult::Failed);
    EXPECT_EQ(result("new/a.Svx", true), ConversionResult::Converted);
    EXPECT_EQ(result("old/a.mdb", true), ConversionResult::Failed);
    EXPECT_EQ(result("old/a.Svx", true), ConversionResult::Failed);
    EXPECT_EQ(Content(Path("old/a.mdb")) + Content(Path("old/a.Svx")), before + before);
}

} // namespace quorvik::testing
