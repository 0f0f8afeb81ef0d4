#include "SetFixture.h"

#include "FaultyCalls.h"

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
        for (int p = 0; p <= table.LastParam; ++p)
            table.Row(p).Value = MarkedValue(p, mark);
        document.Notes = QString::number(mark);
        for (VirtualSetting &setting : document.VirtualSettings)
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
        ParameterTable reader;
        Document opened(reader);
        EXPECT_EQ(SettingsFile(reader, opened).LoadSettings(Target()), QString());
        const int mark = opened.Notes.toInt();
        bool isWhole = (mark == OldMark || mark == NewMark) && reader.LastParam == table.LastParam;
        for (int p = 0; isWhole && p <= table.LastParam; ++p)
            isWhole = reader.Value(p) == MarkedValue(p, mark);
        for (const VirtualSetting &setting : opened.VirtualSettings)
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

TEST_F(SaveFaultTest, StruckAtEveryCallThatChangesFiles)
{
    const struct {
        const char *title;
        Fault fault;
        int places;    ///< at which it strikes, at least
        bool keepsOld; ///< at some of them the save fails
        bool isTidy;   ///< and can still clean up behind it
    } cases[] = {{"killed", Fault::Kill, 12, true, false},
                 {"disk full", Fault::DiskFull, 5, true, true},
                 {"flush refused", Fault::DiskBad, 1, true, true},
                 {"naming refused", Fault::Locked, 2, true, false},
                 {"no modes", Fault::NoModes, 1, false, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        RestoreOld();
        int keptOld = 0;
        int at = 1;
        for (;; ++at) {
            const ChildEnd end = RunUnderFault(c.fault, at, Save());
            const int mark = MarkOfTarget();
            if (!end.wasStruck) {
                EXPECT_EQ(mark, NewMark);
                break;
            }
            ASSERT_NE(mark, 0) << "neither set is whole after a strike at call " << at;
            // A save that tells of no failure has saved, and one that does has left the old file alone.
            ASSERT_TRUE(!end.exitCode || mark == (end.exitCode == Saved ? NewMark : OldMark)) << "at " << at;
            EXPECT_TRUE(!c.isTidy || Leftovers().isEmpty()) << "at " << at;
            keptOld += mark == OldMark ? 1 : 0;
            RemoveLeftovers();
            RestoreOld();
        }
        EXPECT_GT(at, c.places);
        EXPECT_EQ(keptOld > 0, c.keepsOld);
        std::printf("%s: %d places, old file kept at %d\n", c.title, at - 1, keptOld);
    }
}

} // namespace quorvik::testing
