#include "operations/Merge.h"
#include "operations/OperationsFixture.h"
#include "platform/RuntimeFailure.h"

namespace quorvik::testing
{

class FileCommandsTest : public OperationsTest
{
protected:
    FileCommandsTest()
    {
        // What is told here is what comes after the questions.
        guards.Asking = false;
        QDir().mkpath(Path("program"));
        QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), Path("program/Presets.fil"));
        QObject::connect(&saving, &SaveCommands::SaveFailed,
                         [this](const QString &sentence) { failedSaves.append(sentence); });
    }

    QStringList failedSaves;
};

TEST_F(FileCommandsTest, SaveAsThenSaveGoToTheSameFile)
{
    document.FileModified = true;
    asker.ExpectSave(Path("a.Svx"));
    saving.Save(0);
    EXPECT_EQ(asker.Requests.last().folder, QString());
    EXPECT_EQ(asker.Requests.last().fileName, QString());
    EXPECT_EQ(document.Title(), QStringLiteral("Quorvik - [a.Svx]"));

    table.SetParamValue(218, 4321, true, false);
    saving.Save(0);
    EXPECT_FALSE(document.FileModified);
    table.Row(218).Value = 0;
    asker.ExpectSave(std::nullopt);
    saving.Save(1);
    EXPECT_EQ(asker.Requests.last().folder, folder.path() + u'/');
    EXPECT_EQ(asker.Requests.last().fileName, QStringLiteral("a.Svx"));
    EXPECT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    EXPECT_EQ(table.Value(218), 4321);
}

TEST_F(FileCommandsTest, OpenedFileIsSavedTo)
{
    asker.ExpectOpen(SavedSet());
    commands.Open();
    EXPECT_EQ(table.Value(218), 100);
    EXPECT_EQ(document.FileName, Path("saved.Svx"));
    QFile other(Path("other.Svx"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    asker.ExpectOpen(other.fileName());
    asker.Expect(QStringLiteral("is not a settings file"));
    commands.Open();
    asker.ExpectSave(Path("none/a.Svx"));
    saving.Save(1);
    QFile::remove(Path("saved.Svx"));
    saving.Save(0);
    EXPECT_TRUE(QFile::exists(Path("saved.Svx"))) << "and not to what was refused";
    EXPECT_EQ(other.size(), 0);
}

TEST_F(FileCommandsTest, SaveWithoutAnyDialogYetFailsAndSaveAsWorks)
{
    ASSERT_EQ(file.LoadSettings(SavedSet()), QString());
    document.FileModified = true;
    EXPECT_THROW(saving.Save(0), RuntimeFailure);
    EXPECT_TRUE(document.FileModified);
    EXPECT_EQ(document.FileName, Path("saved.Svx"));

    asker.ExpectSave(Path("d.Svx"));
    saving.Save(1);
    EXPECT_FALSE(document.FileModified);
    EXPECT_EQ(document.FileName, Path("d.Svx"));
}

TEST_F(FileCommandsTest, FactoryTableIsNeverSavedOver)
{
    ASSERT_TRUE(QFile::link(Path("program/Presets.fil"), Path("link.Svx")));
    document.FileModified = true;
    for (const char *path :
         {"program/Presets.fil", "program/pReSeTs.FIL", "program/../program/presets.fil", "link.Svx"}) {
        SCOPED_TRACE(path);
        asker.ExpectSave(Path(path));
        asker.Expect(QStringLiteral("Cannot overwrite default file. Choose another name."));
        asker.ExpectSave(std::nullopt);
        saving.Save(1);
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::Exclamation);
        EXPECT_EQ(document.FileName, QStringLiteral("unnamed"));
    }
    // Opened and then saved, without a dialog at first.
    document.FileModified = false;
    asker.ExpectOpen(Path("program/Presets.fil"));
    commands.Open();
    asker.Expect(QStringLiteral("Cannot overwrite default file."));
    asker.ExpectSave(Path("e.Svx"));
    saving.Save(0);
    EXPECT_EQ(document.FileName, Path("e.Svx"));
    EXPECT_EQ(Content(Path("program/Presets.fil")), Content(QStringLiteral(QUORVIK_PRESETS_FILE)));
}

TEST_F(FileCommandsTest, FileOfTheOlderFormatIsNeverWritten)
{
    const QString older = Path("pump.mdb");
    ASSERT_TRUE(QFile::copy(QStringLiteral(QUORVIK_JET_FILES "/delTestV1997.mdb"), older));
    ASSERT_TRUE(QFile::link(older, Path("link.Svx")));
    const QByteArray before = Content(older);
    // As after opening it in the dialog, and as after a start with it or a recovery, which know no dialog.
    for (const QString &dialogName : {older, QString()}) {
        document.FileName = older;
        document.MarkFile(true);
        saving.SaveTo(dialogName);
        asker.ExpectSave(older);
        asker.Expect(
            QStringLiteral("\"pump.mdb\" is a settings file of the older format and stays as it is."));
        asker.ExpectSave(Path("link.Svx"));
        asker.Expect(QStringLiteral("\"link.Svx\" is"));
        asker.ExpectSave(std::nullopt);
        saving.Save(0);
        EXPECT_EQ(asker.Requests.last().folder, folder.path() + u'/');
        EXPECT_EQ(asker.Requests.last().fileName, QStringLiteral("pump (converted).Svx"));
        EXPECT_EQ(document.FileName, older);
        EXPECT_TRUE(document.FileModified);
    }
    EXPECT_FALSE(file.Save(older).isEmpty()) << "and no other way leads to it";
    EXPECT_TRUE(
        MergeIntoFile(older, {{218, 1}}, {}, table, saving).failure.contains(QStringLiteral("older")));
    asker.ExpectSave(Path("pump (converted).Svx"));
    saving.Save(0);
    saving.Save(0);
    EXPECT_EQ(document.FileName, Path("pump (converted).Svx"));
    EXPECT_EQ(Content(older), before);
}

TEST_F(FileCommandsTest, PromptSaveChangesCancelsWhatItCouldNotSave)
{
    QDir().mkpath(Path("folder.Svx"));
    const std::vector<std::tuple<MsgAnswer, std::optional<QString>, bool>> rows = {
        {MsgAnswer::Yes, Path("folder.Svx"), true},
        {MsgAnswer::Yes, std::nullopt, true},
        {MsgAnswer::Yes, Path("p.Svx"), false},
        {MsgAnswer::No, {}, false},
        {MsgAnswer::Cancel, {}, true},
    };
    for (const auto &[answer, path, stays] : rows) {
        document.FileName = QStringLiteral("unnamed");
        document.MarkFile(true);
        // A write that is no edit takes the mark away, and not the edits.
        document.FileModified = answer != MsgAnswer::Cancel;
        asker.Expect(QStringLiteral("unnamed has been modified.\r\n\r\nSave changes?"), answer);
        if (answer == MsgAnswer::Yes)
            asker.ExpectSave(path);
        EXPECT_EQ(saving.PromptSaveChanges(), !stays);
        EXPECT_EQ(document.HasUnsavedEdits, stays);
        EXPECT_EQ(asker.Shown.last().buttons, MsgButtons::YesNoCancel);
        EXPECT_EQ(asker.Shown.last().icon, MsgIcon::Question);
    }
    EXPECT_EQ(asker.Shown.size(), qsizetype(rows.size()));
    EXPECT_EQ(failedSaves.size(), 1) << "a failure behind the dialog is told without a box";
    document.MarkFile(false);
    EXPECT_TRUE(saving.PromptSaveChanges());
}

TEST_F(FileCommandsTest, NewGivesTheFactorySet)
{
    document.FileName = Path("x.Svx");
    document.Notes = QStringLiteral("old");
    table.SetParamValue(218, 4321, true, false);
    asker.Expect(QStringLiteral("x.Svx has been modified."), MsgAnswer::Cancel);
    commands.New();
    EXPECT_EQ(table.Value(218), 4321);
    EXPECT_EQ(asker.ModelsSelected, 0);

    asker.Expect(QStringLiteral("x.Svx has been modified."), MsgAnswer::No);
    commands.New();
    EXPECT_EQ(table.Value(218), 0);
    EXPECT_EQ(document.Notes, QString());
    EXPECT_EQ(document.Title(), QStringLiteral("Quorvik - [unnamed]"));
    EXPECT_EQ(asker.ModelsSelected, 1);
}

TEST_F(FileCommandsTest, OpenOnLineSendsTheWholeSet)
{
    table.Row(28).Value = 0; // Unipolar in the file
    table.Row(38).Value = -100;
    table.Row(123).Value = 99;
    const QString path = SavedSet();
    table.Row(123).Value = 50;
    ASSERT_TRUE(drive.GoOnLine().IsDone());
    peer.Values[28] = 1;
    EXPECT_TRUE(commands.LoadAndAssignSettingsFromFile(path).IsDone());
    EXPECT_EQ(peer.Values[218], 100);
    EXPECT_EQ(peer.Values[28], 0);
    EXPECT_EQ(peer.Values[38], 0) << "rules of what leads others are applied";
    EXPECT_EQ(table.Value(123), 99) << "but the rule of the drive model must not run";
    EXPECT_FALSE(document.FileModified || document.DriveModified);
    EXPECT_EQ(asker.Progresses, std::vector({int(WholeScan::Writing)}));
}

TEST_F(FileCommandsTest, OpenThatFailsOnLineSendsNothingAndHoldsNothing)
{
    table.Row(1).Value = 5000;
    table.Row(Param::LoadParameters).Value = 1;
    const QString beyond = SavedSet();
    ASSERT_TRUE(drive.GoOnLine().IsDone());
    table.SetParamValue(219, 77, true, false);
    asker.Expect(QStringLiteral("Could not find file"));
    EXPECT_EQ(commands.LoadAndAssignSettingsFromFile(Path("none.Svx")).outcome, Outcome::Refused);
    EXPECT_EQ(asker.Shown.last().icon, MsgIcon::None);

    table.Row(Param::DriveState).Value = 1;
    asker.Expect(QStringLiteral("Drive must be in Stop mode"));
    EXPECT_EQ(commands.LoadAndAssignSettingsFromFile(beyond).outcome, Outcome::Refused);
    EXPECT_EQ(document.FileName, QStringLiteral("unnamed"));
    EXPECT_TRUE(document.FileModified);

    table.Row(Param::DriveState).Value = 0;
    EXPECT_EQ(table.Row(219).WriteFlag, WriteState::Queued) << "a pending edit still goes out";
    EXPECT_EQ(table.Row(220).WriteFlag, WriteState::None);
    EXPECT_TRUE(asker.Progresses.empty());

    // A selector that points nowhere is told, and keeps no other row from the drive.
    peer.Values[Param::LoadParameters] = 7;
    commands.LoadAndAssignSettingsFromFile(beyond);
    EXPECT_EQ(peer.Values[218], 100);
    EXPECT_EQ(peer.Values[Param::LoadParameters], 0) << "a file gives no command";
    document.DriveModified = false;
}

TEST_F(FileCommandsTest, ReadFromDriveMakesAnUnsavedSet)
{
    for (const bool opens : {false, true}) {
        portOpens = opens;
        document.FileName = Path("x.Svx");
        table.SetParamValue(218, 1, false, false);
        peer.Values[218] = 55;
        if (!opens)
            asker.Expect(QStringLiteral("There is no port"));
        EXPECT_EQ(commands.ReadFromDrive().outcome, opens ? Outcome::Done : Outcome::Refused);
        EXPECT_FALSE(table.WritePending || link.PortOpen());
        EXPECT_EQ(table.Value(218), opens ? 55 : 1);
        EXPECT_EQ(table.Row(218).WriteFlag, WriteState::None);
        EXPECT_EQ(document.Title().toStdString(), opens ? "Quorvik - [unnamed*]" : "Quorvik - [x.Svx]");
    }
}

TEST_F(FileCommandsTest, WriteToDriveSendsTheWholeSetToAStoppedDrive)
{
    table.Row(Param::DriveState).Value = 3;
    asker.Expect(QStringLiteral("Drive must be in Stop mode"));
    EXPECT_EQ(commands.WriteToDrive().outcome, Outcome::Refused);

    const QByteArray refused = WriteRequest(219, 0);
    peer.Answer = [&](const QByteArray &frame) { return frame == refused ? Nak : peer.DriveAnswer(frame); };
    for (const bool isRefusedOne : {true, false}) {
        table.Row(Param::DriveState).Value = 8;
        table.Row(218).Value = 44;
        if (isRefusedOne)
            asker.Expect(QStringLiteral("Could not write value of 0 to (219)"));
        asker.Expect(QStringLiteral("Save Changes in Drive?"), MsgAnswer::No);
        const OperationResult result = commands.WriteToDrive();
        EXPECT_EQ(result.outcome, isRefusedOne ? Outcome::Partial : Outcome::Done);
        EXPECT_EQ(result.missing, isRefusedOne ? std::vector({219}) : std::vector<int>());
        EXPECT_EQ(peer.Values[218], 44);
        EXPECT_FALSE(peer.Values.contains(256)) << "never the clock";
        EXPECT_TRUE(document.DriveModified);
        EXPECT_FALSE(document.FileModified || link.PortOpen());
        peer.Answer = [&](const QByteArray &frame) { return peer.DriveAnswer(frame); };
    }
}

} // namespace quorvik::testing
