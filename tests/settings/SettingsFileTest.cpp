#include "SetFixture.h"

#include "settings/SettingsTables.h"

#include <QDir>
#include <QFile>
#include <csignal>
#include <sys/resource.h>

namespace quorvik::testing
{

namespace
{

/** Writes a set of count parameters, each told by its number, with no virtual operator. */
QString WriteSet(const QString &path, int count, std::int32_t attributes = 0)
{
    RecordArray records;
    records.Resize(count - 1);
    for (int i = 0; i < count; ++i) {
        records[i].Min = -i;
        records[i].Max = i;
        records[i].Attributes = attributes;
        records[i].Preset = i + 1;
        records[i].Value = i + 2;
        records[i].Name = QStringLiteral("Row %1").arg(i);
    }
    return WriteSettingsDatabase(path, records, records.UpperBound(), QString());
}

QByteArray Content(const QString &path)
{
    QFile opened(path);
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

} // namespace

using SettingsFileTest = SetTest;

TEST_F(SettingsFileTest, RoundTripKeepsEveryFieldAndNoFlag)
{
    model.ParamTable[0].Min = std::numeric_limits<std::int32_t>::min();
    model.ParamTable[0].Max = std::numeric_limits<std::int32_t>::max();
    model.ParamTable[226].Value = 77;
    model.ParamTable[226].Preset = -3;
    model.ParamTable[226].Attributes = 0x7FFF;
    model.ParamTable[226].Name = QStringLiteral("Übergang \"x'; DROP TABLE Settings;--");
    model.ParamTable[226].ReadFlag = 3;
    model.ParamTable[226].WriteFlag = WriteState::Queued;
    model.Notes = QStringLiteral("first\r\nsecond");
    model.VirtualSettings[11] = {-1, 2147483647, -5, 9};
    model.FileModified = true;
    ASSERT_EQ(file.Save(Path("a b#?%.Svx")), QString());
    EXPECT_TRUE(model.FileModified) << "the file itself changes no mark";

    Model other;
    SettingsFile otherFile(other);
    ASSERT_EQ(otherFile.LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
    other.ResetToDefaults();
    other.ParamTable[226].ReadFlag = 1;
    ASSERT_EQ(otherFile.LoadSettings(Path("a b#?%.Svx")), QString());
    for (int i = 0; i <= model.LastParam; ++i) {
        const ParamRecord &saved = model.ParamTable[i];
        const ParamRecord &loaded = other.ParamTable[i];
        ASSERT_EQ(
            std::tie(loaded.Min, loaded.Max, loaded.Attributes, loaded.Preset, loaded.Value, loaded.Name),
            std::tie(saved.Min, saved.Max, saved.Attributes, saved.Preset, saved.Value, saved.Name))
            << i;
    }
    EXPECT_EQ(other.ParamTable[226].ReadFlag, 1);
    EXPECT_EQ(other.ParamTable[226].WriteFlag, 0);
    EXPECT_EQ(other.Notes, model.Notes);
    EXPECT_EQ(other.VirtualSettings, model.VirtualSettings);
    EXPECT_EQ(other.FileName, Path("a b#?%.Svx"));
    EXPECT_FALSE(other.FileModified);
}

TEST_F(SettingsFileTest, NoNotesBecomeOneBlankAndStaySo)
{
    model.Notes.clear();
    ASSERT_EQ(file.Save(Path("a.Svx")), QString());
    EXPECT_EQ(model.Notes, QStringLiteral(" "));
    model.Notes = QStringLiteral("other");
    ASSERT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    EXPECT_EQ(model.Notes, QStringLiteral(" "));
}

TEST_F(SettingsFileTest, ShorterFileLeavesTheRest)
{
    ASSERT_EQ(WriteSet(Path("short.Svx"), 300), QString());
    model.ParamTable[300].Value = 4321;
    model.Notes = QStringLiteral("kept");
    model.VirtualSettings[0].Destination = 5;
    ASSERT_EQ(file.LoadSettings(Path("short.Svx")), QString());
    EXPECT_EQ(model.ParamTable[299].Name, QStringLiteral("Row 299"));
    EXPECT_EQ(model.ParamTable[299].Value, 301);
    EXPECT_EQ(model.ParamTable[300].Value, 4321);
    EXPECT_EQ(model.LastParam, 433);
    EXPECT_EQ(model.Notes, QStringLiteral("kept")) << "Null is no text";
    EXPECT_EQ(model.VirtualSettings[0].Destination, 0) << "no table, no slots";
}

TEST_F(SettingsFileTest, LongerFileMakesBothTablesGrow)
{
    ASSERT_EQ(WriteSet(Path("long.Svx"), 440), QString());
    model.LastParam = 400;
    ASSERT_EQ(file.LoadSettings(Path("long.Svx")), QString());
    EXPECT_EQ(model.FileLastParam, 439);
    EXPECT_EQ(model.LastParam, 439);
    EXPECT_EQ(model.ParamTable[439].Value, 441);
    EXPECT_EQ(model.PresetTable[439].Value, 440) << "the factory value becomes the factory table's value";
    EXPECT_EQ(model.PresetTable[439].Name, QStringLiteral("Row 439"));
    EXPECT_EQ(model.PresetTable[433].Name, QStringLiteral("Winder Speed"));
}

TEST_F(SettingsFileTest, FileOfTheTablesOwnLengthLeavesLastParam)
{
    ASSERT_EQ(WriteSet(Path("same.Svx"), 434), QString());
    model.LastParam = 400;
    ASSERT_EQ(file.LoadSettings(Path("same.Svx")), QString());
    EXPECT_EQ(model.LastParam, 400);
}

TEST_F(SettingsFileTest, OnLineTheDriveKeepsWhatIsItsOwn)
{
    ASSERT_EQ(WriteSet(Path("online.Svx"), 440), QString());
    const ParamRecord motor = model.ParamTable[123];
    model.ParamTable[411].Attributes &= ~Attr::ReadOnly;
    const ParamRecord drive = model.ParamTable[411];
    const ParamRecord status = model.ParamTable[200];
    online = true;
    ASSERT_EQ(file.LoadSettings(Path("online.Svx")), QString());
    EXPECT_EQ(model.ParamTable[123].Value, 125);
    EXPECT_EQ(model.ParamTable[123].Max, motor.Max);
    EXPECT_EQ(model.ParamTable[123].Name, motor.Name);
    EXPECT_EQ(model.ParamTable[411].Value, drive.Value);
    EXPECT_EQ(model.ParamTable[411].Attributes, drive.Attributes);
    EXPECT_EQ(model.ParamTable[200].Value, status.Value);
    EXPECT_EQ(model.ParamTable[200].Min, status.Min);
    EXPECT_EQ(model.ParamTable[226].Value, 228);
    EXPECT_EQ(model.ParamTable[226].Min, -226);
    EXPECT_EQ(model.ParamTable[439].Value, 441) << "a new parameter has no read-only bit yet";
}

TEST_F(SettingsFileTest, NamesCannotBreakLabels)
{
    model.ParamTable[5].Name = QStringLiteral("a\nb\x1b") + QChar(0x202E) + u'c';
    model.Notes = QStringLiteral("a\r\nb\a");
    ASSERT_EQ(file.Save(Path("a.Svx")), QString());
    ASSERT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    EXPECT_EQ(model.ParamTable[5].Name, QStringLiteral("a b  c"));
    EXPECT_EQ(model.Notes, QStringLiteral("a\r\nb "));
}

TEST_F(SettingsFileTest, SaveReplacesReadOnlyFilesAndFollowsLinks)
{
    const QString target = Path("a.Svx");
    ASSERT_EQ(WriteSet(target, 2), QString());
    QFile::setPermissions(target, QFile::ReadOwner | QFile::ReadGroup);
    ASSERT_TRUE(QFile::link(target, Path("link.Svx")));
    ASSERT_EQ(file.Save(Path("link.Svx")), QString());
    EXPECT_TRUE(QFileInfo(Path("link.Svx")).isSymLink());
    EXPECT_TRUE(QFile::permissions(target) & QFile::WriteOwner);
    EXPECT_TRUE(QFile::permissions(target) & QFile::ReadGroup);
    EXPECT_EQ(file.LoadSettings(target), QString());
}

struct FailedSave {
    const char *title;
    const char *path;
    void (*prepare)(Model &model, const QString &path);
    const char *sentence;
};

class FailedSaveTest : public SetTest, public ::testing::WithParamInterface<FailedSave>
{
};

TEST_P(FailedSaveTest, LeavesFileFolderAndMarks)
{
    const FailedSave &row = GetParam();
    const QString target = Path(row.path);
    ASSERT_EQ(WriteSet(Path("old.Svx"), 2), QString());
    const QByteArray before = Content(Path("old.Svx"));
    row.prepare(model, target);
    const QStringList entries = QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden);
    model.FileModified = true;

    // A file may not grow past this many bytes, as on a full disk.
    const bool fills = QByteArray(row.title) == "full disk";
    rlimit old = {};
    getrlimit(RLIMIT_FSIZE, &old);
    auto *oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    if (fills) {
        const rlimit small = {8192, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    const QString failure = file.Save(target);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_TRUE(failure.contains(QString::fromUtf8(row.sentence))) << failure.toStdString();
    EXPECT_EQ(Content(Path("old.Svx")), before);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden), entries)
        << "nothing left behind";
    EXPECT_TRUE(model.FileModified);
    EXPECT_EQ(model.FileName, QStringLiteral("unnamed"));
}

INSTANTIATE_TEST_SUITE_P(
    SettingsFile, FailedSaveTest,
    ::testing::Values(
        FailedSave{"full disk", "old.Svx", [](Model &, const QString &) {}, "was not written: disk"},
        FailedSave{"name of a folder", "folder.Svx",
                   [](Model &, const QString &path) { QDir().mkpath(path); }, "something other than a file"},
        FailedSave{"no such folder", "none/a.Svx", [](Model &, const QString &) {}, "was not written"},
        FailedSave{"name too long", "old.Svx",
                   [](Model &model, const QString &) { model.ParamTable[433].Name = QString(41, u'x'); },
                   "row 433"},
        FailedSave{"notes too long", "old.Svx",
                   [](Model &model, const QString &) { model.Notes = QString(256, u'x'); }, "Notes"}),
    [](const ::testing::TestParamInfo<FailedSave> &tested) {
        return QString::fromUtf8(tested.param.title).replace(u' ', u'_').toStdString();
    });

TEST_F(SettingsFileTest, PresetsTooShortForTheLogicAreRefused)
{
    ASSERT_EQ(WriteSet(Path("Presets.fil"), 422), QString());
    EXPECT_TRUE(file.LoadPresets(Path("Presets.fil")).contains(QStringLiteral("422 parameters")));
    EXPECT_EQ(model.FileLastParam, 433);
    ASSERT_EQ(WriteSet(Path("Presets.fil"), 423), QString());
    EXPECT_EQ(file.LoadPresets(Path("Presets.fil")), QString());
    EXPECT_EQ(model.FileLastParam, 422);
}

} // namespace quorvik::testing
