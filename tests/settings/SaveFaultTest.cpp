#include "SetFixture.h"

#include "FaultyCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvik::testing
{

/**
 * A set is saved by a child process over an older one while the machine fails in every way and at every
 * place. Whatever happens, the file holds the whole old or the whole new set.
 */
class SaveFaultTest : public SetTest
{
protected:
    enum Exit { Saved, Told };

    SaveFaultTest()
    {
        MakeSet(OldMark);
        EXPECT_EQ(file.Save(Target()), QString());
        MakeSet(NewMark);
        oldBytes_ = Content(Target());
    }

    QString Target() const { return Path("machine.Svx"); }

    /** The drive's commands are read as none. */
    static int MarkedValue(int p, int mark) { return Param::IsCommand(p) ? 0 : mark + p; }
    void MakeSet(int mark)
    {
        for (int p = 0; p <= model.LastParam; ++p)
            model.ParamTable[p].Value = MarkedValue(p, mark);
        model.Notes = QString::number(mark);
        for (VirtualSetting &setting : model.VirtualSettings)
            setting.BiasOpen = mark;
    }

    void RestoreOld()
    {
        QFile target(Target());
        ASSERT_TRUE(target.open(QIODevice::WriteOnly | QIODevice::Truncate));
        target.write(oldBytes_);
    }

    /** The mark of the set that the target holds as a whole, 0 when it holds none. */
    int MarkOfTarget()
    {
        Model reader;
        EXPECT_EQ(SettingsFile(reader).LoadSettings(Target()), QString());
        const int mark = reader.Notes.toInt();
        bool isWhole = (mark == OldMark || mark == NewMark) && reader.LastParam == model.LastParam;
        for (int p = 0; isWhole && p <= model.LastParam; ++p)
            isWhole = reader.Value(p) == MarkedValue(p, mark);
        for (const VirtualSetting &setting : reader.VirtualSettings)
            isWhole = isWhole && setting.BiasOpen == mark;
        return isWhole ? mark : 0;
    }

    QStringList Leftovers() const
    {
        QStringList names = Entries();
        names.removeAll(QStringLiteral("machine.Svx"));
        return names;
    }
    void RemoveLeftovers()
    {
        for (const QString &name : Leftovers())
            QFile::remove(folder.filePath(name));
    }

    std::function<int()> Save()
    {
        return [this] { return file.Save(Target()).isEmpty() ? Saved : Told; };
    }

    static constexpr int OldMark = 1000;
    static constexpr int NewMark = 5000;
    QByteArray oldBytes_;
};

TEST_F(SaveFaultTest, KilledAtEveryCallThatChangesFiles)
{
    int kills = 0;
    int keptOld = 0;
    for (int at = 1;; ++at) {
        const ChildEnd end = RunUnderFault(Fault::Kill, at, Save());
        if (!end.wasStruck) {
            ASSERT_EQ(end.exitCode, Saved);
            break;
        }
        ++kills;
        const int mark = MarkOfTarget();
        ASSERT_NE(mark, 0) << "neither set is whole after a kill at call " << at;
        keptOld += mark == OldMark ? 1 : 0;
        if (mark == NewMark)
            RestoreOld();
        RemoveLeftovers();
    }
    EXPECT_EQ(MarkOfTarget(), NewMark);
    EXPECT_GT(keptOld, 10);
    EXPECT_GT(kills, keptOld) << "some kills come after the new file is in place";
    std::printf("kills: %d, old file kept: %d, new file in place: %d\n", kills, keptOld, kills - keptOld);
}

TEST_F(SaveFaultTest, RefusedByTheDiskAtEveryPlace)
{
    // What fails, at how many places at least, and whether the save then fails at one of them.
    const std::tuple<const char *, Fault, int, bool> cases[] = {{"disk full", Fault::DiskFull, 5, true},
                                                                {"flush refused", Fault::DiskBad, 1, true},
                                                                {"naming refused", Fault::Locked, 2, true},
                                                                {"no modes", Fault::NoModes, 1, false}};
    for (const auto &[title, kind, atLeast, fails] : cases) {
        SCOPED_TRACE(title);
        int refusals = 0;
        int told = 0;
        for (int at = 1;; ++at) {
            const ChildEnd end = RunUnderFault(kind, at, Save());
            ASSERT_TRUE(end.exitCode.has_value());
            const int mark = MarkOfTarget();
            if (!end.wasStruck) {
                EXPECT_EQ(mark, NewMark);
                break;
            }
            ++refusals;
            // A save that tells of no failure has saved, and one that does has left the old file alone.
            ASSERT_EQ(mark, end.exitCode == Saved ? NewMark : OldMark) << "at " << at;
            told += end.exitCode == Told ? 1 : 0;
            if (kind != Fault::Locked) {
                EXPECT_EQ(Leftovers(), QStringList()) << "at " << at;
            }
            RemoveLeftovers();
            RestoreOld();
        }
        RestoreOld();
        EXPECT_GE(refusals, atLeast);
        EXPECT_EQ(told > 0, fails);
        std::printf("%s: %d places, told at %d\n", title, refusals, told);
    }
}

TEST_F(SaveFaultTest, AFolderThatCannotBeWrittenTo)
{
    ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0555), 0);
    EXPECT_FALSE(file.Save(Target()).isEmpty());
    ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    EXPECT_EQ(MarkOfTarget(), OldMark);
    EXPECT_EQ(Leftovers(), QStringList());
}

TEST_F(SaveFaultTest, AFileThatIsOpenElsewhere)
{
    const int reader = ::open(QFile::encodeName(Target()).constData(), O_RDONLY);
    ASSERT_EQ(::flock(reader, LOCK_EX), 0);
    EXPECT_EQ(file.Save(Target()), QString());
    QByteArray seen(oldBytes_.size(), '\0');
    EXPECT_EQ(::pread(reader, seen.data(), std::size_t(seen.size()), 0), oldBytes_.size());
    EXPECT_EQ(seen, oldBytes_) << "whoever had it open goes on with the old one";
    ::close(reader);
    EXPECT_EQ(MarkOfTarget(), NewMark);
}

} // namespace quorvik::testing
