#include "SetFixture.h"

#include "settings/SettingsTables.h"

#include <sys/stat.h>

namespace quorvik::testing
{

namespace
{

/** Writes a set of count parameters, each told by its number, with no virtual operator. */
QString WriteSet(const QString &path, int count)
{
    RecordArray records;
    records.Resize(count - 1);
    for (int i = 0; i < count; ++i)
        records[i] = {-i, i, 0, i + 1, i + 2, QStringLiteral("Row %1").arg(i), 0, 0};
    return WriteSettingsDatabase(path, records, records.UpperBound(), QString());
}

} // namespace

using SettingsFileTest = SetTest;

TEST_F(SettingsFileTest, RoundTripKeepsEveryFieldAndNoFlag)
{
    table.Row(0).Min = std::numeric_limits<std::int32_t>::min();
    table.Row(0).Max = std::numeric_limits<std::int32_t>::max();
    table.Row(226) = {-1,     99,
                      0x7FFF, -3,
                      77,     QStringLiteral("Übergang \"x'; DROP TABLE Settings;--"),
                      3,      WriteState::Queued};
    document.Notes = QStringLiteral("first\r\nsecond");
    document.VirtualSettings[11] = {-1, 2147483647, -5, 9};
    document.FileModified = true;
    ASSERT_EQ(file.Save(Path("a b#?%.Svx")), QString());
    EXPECT_TRUE(document.FileModified) << "the file itself changes no mark";

    ParameterTable other;
    Document opened(other);
    other.Resize(table.LastParam);
    other.Row(226).ReadFlag = 1;
    opened.FileModified = true;
    ASSERT_EQ(SettingsFile(other, opened).LoadSettings(Path("a b#?%.Svx")), QString());
    const auto fields = [](const ParamRecord &record) {
        return std::tie(record.Min, record.Max, record.Attributes, record.Preset, record.Value, record.Name);
    };
    for (int i = 0; i <= table.LastParam; ++i)
        ASSERT_EQ(fields(other.Row(i)), fields(table.Row(i))) << i;
    EXPECT_EQ(other.Row(226).ReadFlag, 1);
    EXPECT_EQ(other.Row(226).WriteFlag, 0);
    EXPECT_EQ(opened.Notes, document.Notes);
    EXPECT_EQ(opened.VirtualSettings, document.VirtualSettings);
    EXPECT_EQ(opened.FileName, Path("a b#?%.Svx"));
    EXPECT_FALSE(opened.FileModified);
}

TEST_F(SettingsFileTest, NotesAndNamesAreMadeShowable)
{
    const std::vector<std::pair<QString, QString>> notes = {
        {QString(), QStringLiteral(" ")}, {QStringLiteral("a\r\nb\a"), QStringLiteral("a\r\nb ")}};
    for (const auto &[saved, loaded] : notes) {
        document.Notes = saved;
        table.Row(5).Name = QStringLiteral("a\nb\x1b") + QChar(0x202E) + u'c';
        ASSERT_EQ(file.Save(Path("a.Svx")), QString());
        ASSERT_EQ(file.LoadSettings(Path("a.Svx")), QString());
        EXPECT_EQ(document.Notes, loaded);
        EXPECT_EQ(table.Row(5).Name, QStringLiteral("a b  c")) << "a name cannot break its label";
    }
}

TEST_F(SettingsFileTest, ShorterFileLeavesTheRest)
{
    ASSERT_EQ(WriteSet(Path("short.Svx"), 300), QString());
    table.Row(300).Value = 4321;
    document.Notes = QStringLiteral("kept");
    document.VirtualSettings[0].Destination = 5;
    ASSERT_EQ(file.LoadSettings(Path("short.Svx")), QString());
    EXPECT_EQ(table.Row(299).Value, 301);
    EXPECT_EQ(table.Row(300).Value, 4321);
    EXPECT_EQ(table.LastParam, 433);
    EXPECT_EQ(document.Notes, QStringLiteral("kept")) << "Null is no text";
    EXPECT_EQ(document.VirtualSettings[0].Destination, 0) << "no table, no slots";
}

TEST_F(SettingsFileTest, LongerFileMakesBothTablesGrow)
{
    table.LastParam = 400;
    ASSERT_EQ(WriteSet(Path("same.Svx"), 434), QString());
    ASSERT_EQ(file.LoadSettings(Path("same.Svx")), QString());
    EXPECT_EQ(table.LastParam, 400) << "only a longer one touches it";
    ASSERT_EQ(WriteSet(Path("long.Svx"), 440), QString());
    ASSERT_EQ(file.LoadSettings(Path("long.Svx")), QString());
    EXPECT_EQ(table.FileLastParam, 439);
    EXPECT_EQ(table.LastParam, 439);
    EXPECT_EQ(table.Row(439).Value, 441);
    EXPECT_EQ(table.PresetTable[439].Value, 440) << "the factory value becomes the factory table's value";
    EXPECT_EQ(table.PresetTable[439].Name, QStringLiteral("Row 439"));
    EXPECT_EQ(table.PresetTable[433].Name, QStringLiteral("Winder Speed"));
}

TEST_F(SettingsFileTest, OnLineTheDriveKeepsWhatIsItsOwn)
{
    ASSERT_EQ(WriteSet(Path("online.Svx"), 440), QString());
    const ParamRecord motor = table.Row(123);
    table.Row(411).Attributes &= ~Attr::ReadOnly;
    const ParamRecord drive = table.Row(411);
    const ParamRecord status = table.Row(200);
    table.SetPortOpen(true);
    ASSERT_EQ(file.LoadSettings(Path("online.Svx")), QString());
    EXPECT_EQ(table.Row(123).Value, 125);
    EXPECT_EQ(table.Row(123).Max, motor.Max);
    EXPECT_EQ(table.Row(411).Value, drive.Value);
    EXPECT_EQ(table.Row(411).Attributes, drive.Attributes);
    EXPECT_EQ(table.Row(200).Value, status.Value);
    EXPECT_EQ(table.Row(200).Min, status.Min);
    EXPECT_EQ(table.Row(226).Min, -226);
    EXPECT_EQ(table.Row(439).Value, 441) << "a new parameter has no read-only bit yet";
}

TEST_F(SettingsFileTest, SaveFollowsLinksAndKeepsModes)
{
    const QString longest = QString(125, u'ü') + QStringLiteral("x.Svx"); // 255 bytes
    ASSERT_TRUE(QDir().mkpath(Path("sub")));
    ASSERT_TRUE(QFile::link(Path("a.Svx"), Path("link.Svx")) &&
                QFile::link(QStringLiteral("../new.Svx"), Path("sub/dangling.Svx")));
    const mode_t umaskBefore = ::umask(0027);
    // The name saved to, the file behind it, its mode before where it exists, and after.
    const std::tuple<QString, QString, mode_t, mode_t> cases[] = {
        {Path("plain.Svx"), Path("plain.Svx"), 0, 0640},
        {Path("link.Svx"), Path("a.Svx"), 0440, 0640},
        {Path("sub/dangling.Svx"), Path("new.Svx"), 0, 0640},
        {folder.filePath(longest), folder.filePath(longest), 0606, 0606},
    };
    for (const auto &[path, behind, before, after] : cases) {
        SCOPED_TRACE(path.toStdString());
        const QByteArray name = QFile::encodeName(behind);
        if (before != 0) {
            ASSERT_EQ(WriteSet(behind, 2), QString());
            ASSERT_EQ(::chmod(name.constData(), before), 0);
        }
        const bool wasLink = QFileInfo(path).isSymLink();
        ASSERT_EQ(file.Save(path), QString());
        struct stat saved = {};
        ASSERT_EQ(::lstat(name.constData(), &saved), 0);
        EXPECT_EQ(saved.st_mode & 07777, after);
        EXPECT_EQ(QFileInfo(path).isSymLink(), wasLink);
        EXPECT_EQ(file.LoadSettings(path), QString());
    }
    ::umask(umaskBefore);
}

TEST_F(SettingsFileTest, FailedSaveLeavesFileFolderAndMarks)
{
    // Where to, and the lengths of a name and of the notes.
    const std::tuple<const char *, int, int, const char *> cases[] = {
        {"folder.Svx", 9, 9, "something other than a file"},
        {"none/a.Svx", 9, 9, "was not written"},
        {"old.Svx", 41, 9, "row 433"},
        {"old.Svx", 9, 256, "Notes"},
    };
    ASSERT_EQ(WriteSet(Path("old.Svx"), 2), QString());
    ASSERT_TRUE(QDir().mkpath(Path("folder.Svx")));
    const QByteArray before = Content(Path("old.Svx"));
    const QStringList entries = Entries();
    document.FileModified = true;
    for (const auto &[path, nameLength, notesLength, sentence] : cases) {
        table.Row(433).Name = QString(nameLength, u'x');
        document.Notes = QString(notesLength, u'x');
        const QString failure = file.Save(Path(path));
        EXPECT_TRUE(failure.contains(QLatin1String(sentence))) << failure.toStdString();
        EXPECT_EQ(Content(Path("old.Svx")), before);
        EXPECT_EQ(Entries(), entries) << "nothing left behind";
        EXPECT_TRUE(document.FileModified);
        EXPECT_EQ(document.FileName, QStringLiteral("unnamed"));
    }
}

TEST_F(SettingsFileTest, PresetsTooShortForTheLogicAreRefused)
{
    ASSERT_EQ(WriteSet(Path("Presets.fil"), 422), QString());
    EXPECT_TRUE(file.LoadPresets(Path("Presets.fil")).contains(QStringLiteral("422 parameters")));
    EXPECT_EQ(table.FileLastParam, 433);
    ASSERT_EQ(WriteSet(Path("Presets.fil"), 423), QString());
    EXPECT_EQ(file.LoadPresets(Path("Presets.fil")), QString());
    EXPECT_EQ(table.FileLastParam, 422);
}

} // namespace quorvik::testing
