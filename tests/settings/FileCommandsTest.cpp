#include "SetFixture.h"

#include "model/EntryRules.h"
#include "platform/RuntimeFailure.h"
#include "settings/FileCommands.h"
#include "support/ScriptedAsker.h"

#include <QDir>
#include <QFile>

namespace quorvik::testing
{

/** The commands over a table, with a link that records what it is told. */
class FileCommandsTest : public SetTest
{
protected:
    FileCommandsTest()
    {
        QDir().mkpath(Path("program"));
        QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), Path("program/Presets.fil"));
        commands.Link.GoOnLine = [this] {
            calls.append(QStringLiteral("GoOnLine"));
            online = portOpens;
        };
        commands.Link.GoOffLine = [this](int reason) {
            calls.append(QStringLiteral("GoOffLine %1").arg(reason));
            online = false;
        };
        commands.Link.SetAllReadFlags = [this](int delta) {
            calls.append(QStringLiteral("SetAllReadFlags %1").arg(delta));
        };
        commands.Link.RunScan = [this](int kind) { calls.append(QStringLiteral("RunScan %1").arg(kind)); };
        commands.ShowSelectDriveModel = [this] { calls.append(QStringLiteral("SelectModel")); };
        QObject::connect(&commands, &FileCommands::SaveFailed,
                         [this](const QString &sentence) { failedSaves.append(sentence); });
    }

    /** Leaves a saved set at path whose Reference 1 is value; the open set is untouched. */
    void SaveReference1(const QString &path, std::int32_t value)
    {
        const std::int32_t before = model.Value(218);
        model.ParamTable[218].Value = value;
        ASSERT_EQ(file.Save(path), QString());
        model.ParamTable[218].Value = before;
    }

    ScriptedAsker asker;
    EntryRules rules{model, asker};
    FileCommands commands{model, rules, asker, file, Path("program")};
    bool portOpens = true;
    QStringList calls;
    QStringList failedSaves;
};

TEST_F(FileCommandsTest, SaveAsThenSaveGoToTheSameFile)
{
    model.FileModified = true;
    asker.ExpectSave(Path("a.Svx"));
    commands.Save(0);
    EXPECT_EQ(asker.Requests.last().folder, Path("program"));
    EXPECT_EQ(asker.Requests.last().fileName, QString());
    EXPECT_EQ(model.Title(), QStringLiteral("Quorvik - [a.Svx]"));

    model.SetParamValue(218, 4321, true, false);
    commands.Save(0);
    EXPECT_FALSE(model.FileModified);
    model.ParamTable[218].Value = 0;
    asker.ExpectSave(std::nullopt);
    commands.Save(1);
    EXPECT_EQ(asker.Requests.last().folder, folder.path() + u'/');
    EXPECT_EQ(asker.Requests.last().fileName, QStringLiteral("a.Svx"));
    EXPECT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    EXPECT_EQ(model.Value(218), 4321);
}

TEST_F(FileCommandsTest, OpenedFileIsSavedTo)
{
    SaveReference1(Path("b.Svx"), 100);
    asker.ExpectOpen(Path("b.Svx"));
    commands.Open();
    EXPECT_EQ(model.Value(218), 100);
    EXPECT_EQ(model.FileName, Path("b.Svx"));
    QFile::remove(Path("b.Svx"));
    commands.Save(0);
    EXPECT_TRUE(QFile::exists(Path("b.Svx")));
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(FileCommandsTest, SaveWithoutAnyDialogYetFailsAndSaveAsWorks)
{
    SaveReference1(Path("c.Svx"), 100);
    ASSERT_EQ(file.LoadSettings(Path("c.Svx")), QString());
    model.FileModified = true;
    EXPECT_THROW(commands.Save(0), RuntimeFailure);
    bool cancel = false;
    asker.Expect(QStringLiteral("c.Svx has been modified.\r\n\r\nSave changes?"), MsgAnswer::Yes);
    EXPECT_THROW(commands.PromptSaveChanges(cancel), RuntimeFailure);
    EXPECT_TRUE(model.FileModified);
    EXPECT_EQ(model.FileName, Path("c.Svx"));

    asker.ExpectSave(Path("d.Svx"));
    commands.Save(1);
    EXPECT_FALSE(model.FileModified);
    EXPECT_EQ(model.FileName, Path("d.Svx"));
}

TEST_F(FileCommandsTest, FactoryTableIsNeverSavedOver)
{
    QFile::copy(Path("program/Presets.fil"), Path("copy.Svx"));
    ASSERT_TRUE(QFile::link(Path("program/Presets.fil"), Path("link.Svx")));
    model.FileModified = true;
    for (const char *path :
         {"program/Presets.fil", "program/pReSeTs.FIL", "program/../program/presets.fil", "link.Svx"}) {
        SCOPED_TRACE(path);
        asker.ExpectSave(Path(path));
        asker.Expect(QStringLiteral("Cannot overwrite default file. Choose another name."));
        asker.ExpectSave(std::nullopt);
        commands.Save(1);
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::Exclamation);
        EXPECT_EQ(model.FileName, QStringLiteral("unnamed"));
    }
    // Opened and then saved, without a dialog at first.
    model.FileModified = false;
    asker.ExpectOpen(Path("program/Presets.fil"));
    commands.Open();
    asker.Expect(QStringLiteral("Cannot overwrite default file."));
    asker.ExpectSave(Path("e.Svx"));
    commands.Save(0);
    EXPECT_EQ(model.FileName, Path("e.Svx"));
    QFile before(QStringLiteral(QUORVIK_PRESETS_FILE));
    QFile after(Path("program/Presets.fil"));
    ASSERT_TRUE(before.open(QIODevice::ReadOnly) && after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), before.readAll());
}

TEST_F(FileCommandsTest, FailedSaveAfterTheDialogIsToldWithoutABox)
{
    QDir().mkpath(Path("dir.Svx"));
    model.FileModified = true;
    bool cancel = false;
    asker.Expect(QStringLiteral("unnamed has been modified."), MsgAnswer::Yes);
    asker.ExpectSave(Path("dir.Svx"));
    commands.PromptSaveChanges(cancel);
    EXPECT_TRUE(cancel);
    EXPECT_EQ(failedSaves.size(), 1);
    EXPECT_TRUE(model.FileModified);
    EXPECT_EQ(model.FileName, QStringLiteral("unnamed"));
    EXPECT_EQ(asker.Shown.size(), 1);
}

TEST_F(FileCommandsTest, PromptSaveChanges)
{
    struct Row {
        MsgAnswer answer;
        bool savesTo;
        bool cancel;
        bool modified;
    };
    const std::vector<Row> rows = {
        {MsgAnswer::Yes, true, false, false},
        {MsgAnswer::Yes, false, true, true},
        {MsgAnswer::No, false, false, false},
        {MsgAnswer::Cancel, false, true, true},
    };
    for (const Row &row : rows) {
        model.FileName = QStringLiteral("unnamed");
        model.FileModified = true;
        asker.Expect(QStringLiteral("unnamed has been modified.\r\n\r\nSave changes?"), row.answer);
        if (row.answer == MsgAnswer::Yes)
            asker.ExpectSave(row.savesTo ? std::optional(Path("p.Svx")) : std::nullopt);
        bool cancel = false;
        commands.PromptSaveChanges(cancel);
        EXPECT_EQ(cancel, row.cancel);
        EXPECT_EQ(model.FileModified, row.modified);
        EXPECT_EQ(asker.Shown.last().buttons, MsgButtons::YesNoCancel);
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::Question);
    }
    model.FileModified = false;
    bool cancel = false;
    commands.PromptSaveChanges(cancel);
    EXPECT_FALSE(cancel);
}

TEST_F(FileCommandsTest, NewGivesTheFactorySet)
{
    model.FileName = Path("x.Svx");
    model.Notes = QStringLiteral("old");
    model.SetParamValue(218, 4321, true, false);
    asker.Expect(QStringLiteral("x.Svx has been modified."), MsgAnswer::Cancel);
    commands.New();
    EXPECT_EQ(model.Value(218), 4321);
    EXPECT_EQ(model.Notes, QStringLiteral("old"));
    EXPECT_TRUE(calls.isEmpty());

    asker.Expect(QStringLiteral("x.Svx has been modified."), MsgAnswer::No);
    commands.New();
    EXPECT_EQ(model.Value(218), 0);
    EXPECT_EQ(model.Notes, QString());
    EXPECT_EQ(model.Title(), QStringLiteral("Quorvik - [unnamed]"));
    EXPECT_EQ(calls, QStringList(QStringLiteral("SelectModel")));
}

TEST_F(FileCommandsTest, OpenOnLineSendsTheWholeSet)
{
    model.ParamTable[28].Value = 0; // Unipolar in the file
    model.ParamTable[38].Value = -100;
    SaveReference1(Path("o.Svx"), 100);
    online = true;
    model.ParamTable[218].WriteFlag = WriteState::None;
    commands.LoadAndAssignSettingsFromFile(Path("o.Svx"));
    EXPECT_EQ(model.Value(218), 100);
    EXPECT_EQ(model.Value(38), 0) << "rules of what leads others are applied";
    EXPECT_EQ(model.ParamTable[218].WriteFlag, WriteState::Queued);
    EXPECT_EQ(model.ParamTable[256].WriteFlag, WriteState::None) << "never the clock";
    EXPECT_EQ(model.ParamTable[193].WriteFlag, WriteState::None) << "never what is read-only";
    EXPECT_TRUE(model.WritePending);
    EXPECT_FALSE(model.FileModified);
    EXPECT_FALSE(model.DriveModified);
    EXPECT_EQ(calls, QStringList(QStringLiteral("RunScan 2")));
}

TEST_F(FileCommandsTest, OpenOnLineKeepsTheMotorCurrentOfTheFile)
{
    model.ParamTable[123].Value = 99;
    SaveReference1(Path("o.Svx"), 100);
    model.ParamTable[123].Value = 50;
    online = true;
    commands.LoadAndAssignSettingsFromFile(Path("o.Svx"));
    EXPECT_EQ(model.Value(123), 99) << "the rule of the drive model must not run";
}

TEST_F(FileCommandsTest, OpenOnLineWhileRunningReadsNothing)
{
    SaveReference1(Path("o.Svx"), 100);
    online = true;
    model.ParamTable[Param::DriveState].Value = 1;
    asker.Expect(QStringLiteral("Drive must be in Stop mode"));
    commands.LoadAndAssignSettingsFromFile(Path("o.Svx"));
    EXPECT_EQ(model.Value(218), 0);
    EXPECT_EQ(model.FileName, QStringLiteral("unnamed"));
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(FileCommandsTest, BadFileOnLineSendsNothingAndHoldsNothing)
{
    online = true;
    model.SetParamValue(218, 77, true, false);
    asker.Expect(QStringLiteral("Could not find file"));
    commands.LoadAndAssignSettingsFromFile(Path("none.Svx"));
    EXPECT_EQ(asker.Shown.last().icon, MsgIcon::None);
    EXPECT_EQ(model.ParamTable[218].WriteFlag, WriteState::Queued) << "a pending edit still goes out";
    EXPECT_EQ(model.ParamTable[219].WriteFlag, WriteState::None);
    EXPECT_TRUE(model.FileModified);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(FileCommandsTest, SelectorOutOfTheTableEndsTheCommandWithNothingHeld)
{
    model.ParamTable[1].Value = 5000;
    SaveReference1(Path("o.Svx"), 100);
    online = true;
    EXPECT_THROW(commands.LoadAndAssignSettingsFromFile(Path("o.Svx")), RuntimeFailure);
    EXPECT_EQ(model.ParamTable[219].WriteFlag, WriteState::None);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(FileCommandsTest, ReadFromDriveMakesAnUnsavedSet)
{
    model.FileName = Path("x.Svx");
    model.SetParamValue(218, 1, false, false);
    commands.ReadFromDrive();
    EXPECT_EQ(calls, QStringList({QStringLiteral("GoOnLine"), QStringLiteral("SetAllReadFlags 1"),
                                  QStringLiteral("RunScan 1"), QStringLiteral("GoOffLine 1")}));
    EXPECT_EQ(model.ParamTable[218].WriteFlag, WriteState::None);
    EXPECT_EQ(model.Title(), QStringLiteral("Quorvik - [unnamed*]"));
}

TEST_F(FileCommandsTest, ReadFromDriveWithADeadPortOnlyDropsPendingWrites)
{
    portOpens = false;
    model.FileName = Path("x.Svx");
    model.SetParamValue(218, 1, false, false);
    commands.ReadFromDrive();
    EXPECT_EQ(calls, QStringList(QStringLiteral("GoOnLine")));
    EXPECT_FALSE(model.WritePending);
    EXPECT_EQ(model.ParamTable[218].WriteFlag, WriteState::None);
    EXPECT_EQ(model.Title(), QStringLiteral("Quorvik - [x.Svx]"));
}

TEST_F(FileCommandsTest, WriteToDrive)
{
    model.ParamTable[Param::DriveState].Value = 3;
    asker.Expect(QStringLiteral("Drive must be in Stop mode"));
    commands.WriteToDrive();
    EXPECT_TRUE(calls.isEmpty());

    model.ParamTable[Param::DriveState].Value = 8;
    commands.WriteToDrive();
    EXPECT_EQ(calls, QStringList({QStringLiteral("GoOnLine"), QStringLiteral("RunScan 2"),
                                  QStringLiteral("GoOffLine 1")}));
    EXPECT_EQ(model.ParamTable[218].WriteFlag, WriteState::Queued);
    EXPECT_TRUE(model.DriveModified);
    EXPECT_FALSE(model.FileModified);
}

} // namespace quorvik::testing
