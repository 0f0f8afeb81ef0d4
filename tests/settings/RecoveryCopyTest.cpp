#include "SetFixture.h"

#include "operations/Recovery.h"
#include "platform/Waiting.h"
#include "settings/RecoveryCopy.h"
#include "support/ScriptedAsker.h"

#include <QSignalSpy>

namespace quorvik::testing
{

class RecoveryCopyTest : public SetTest
{
protected:
    static constexpr int SoonMs = 20;
    static constexpr int Edited = 217;

    std::unique_ptr<RecoveryCopy> MakeCopy(int delayMs = SoonMs)
    {
        return std::make_unique<RecoveryCopy>(document, file, Path("data/recovery"), delayMs);
    }
    void Edit(std::int32_t rawValue) { table.SetParamValue(Edited, rawValue, true, false); }
    /** The edited value as the copy on disk has it, or -1. */
    std::int32_t CopiedValue(const RecoveryCopy &copy)
    {
        ParameterTable other;
        Document opened(other);
        SettingsFile reader(other, opened);
        if (!QFile::exists(copy.Path()) || !reader.LoadSettings(copy.Path()).isEmpty())
            return -1;
        return other.Value(Edited);
    }
    bool BecomesCopied(const RecoveryCopy &copy, std::int32_t rawValue)
    {
        return PumpWhile([&] { return CopiedValue(copy) != rawValue; }, QDeadlineTimer(10000));
    }
    /** Edits, crashes once the copy is written, and starts again. */
    std::unique_ptr<RecoveryCopy> CrashAndStartAnew(const QString &name)
    {
        auto copy = MakeCopy();
        document.FileName = name;
        Edit(321);
        EXPECT_TRUE(BecomesCopied(*copy, 321));
        copy = MakeCopy();
        document.FileModified = document.HasUnsavedEdits = false;
        StartAnew();
        return copy;
    }

    ScriptedAsker asker;
};

TEST_F(RecoveryCopyTest, SteadyEditsDoNotHoldItBack)
{
    static_assert(RecoveryCopy::WriteDelayMs < 5000, "what is promised");
    // An edit at least every 20 ms, until there is a copy.
    const auto copy = MakeCopy(100);
    std::int32_t edits = 0;
    EXPECT_TRUE(PumpWhile(
        [&] {
            Edit(++edits);
            return !QFile::exists(copy->Path());
        },
        QDeadlineTimer(10000)));
    EXPECT_TRUE(BecomesCopied(*copy, edits));
}

TEST_F(RecoveryCopyTest, IsOfferedWithItsNameAndContent)
{
    for (const bool taken : {false, false, true}) {
        SCOPED_TRACE(taken);
        const auto copy = CrashAndStartAnew(QStringLiteral("/machines/winder.Svx"));
        asker.Expect(QStringLiteral("changes to winder.Svx had not been saved"),
                     taken ? MsgAnswer::Yes : MsgAnswer::No);
        EXPECT_EQ(OfferLeftover(*copy, table, asker), taken);
        EXPECT_EQ(document.FileModified, taken);
        EXPECT_EQ(document.FileName,
                  taken ? QStringLiteral("/machines/winder.Svx") : QStringLiteral("unnamed"));
        EXPECT_EQ(table.Value(Edited) == 321, taken);
        EXPECT_TRUE(QFile::exists(Path("data/recovery/declined.Svx")));
        EXPECT_EQ(CopiedValue(*copy), taken ? 321 : -1) << "a second crash loses nothing";
    }
}

TEST_F(RecoveryCopyTest, GoesAwayWithItsReason)
{
    for (const bool endsNormally : {true, false}) {
        SCOPED_TRACE(endsNormally);
        const auto copy = MakeCopy();
        Edit(5);
        ASSERT_TRUE(BecomesCopied(*copy, 5));
        Edit(6);
        table.SetParamValue(Edited + 1, 1, false, false);
        EXPECT_TRUE(QFile::exists(copy->Path())) << "a write that is no edit saves nothing";
        if (endsNormally) {
            copy->Remove();
        } else {
            document.MarkFile(false); // a save or a new set
        }
        PumpWhile([] { return true; }, QDeadlineTimer(3 * SoonMs));
        EXPECT_TRUE(QDir(Path("data/recovery")).isEmpty(QDir::Files | QDir::Hidden));
        EXPECT_FALSE(OfferLeftover(*copy, table, asker));
    }
}

TEST_F(RecoveryCopyTest, TypedNotesAreInIt)
{
    const auto copy = MakeCopy();
    document.Notes = QStringLiteral("before");
    document.TypedNotes = QStringLiteral("half a sen");
    document.MarkFile(true);
    copy->WriteNow();
    EXPECT_EQ(document.Notes, QStringLiteral("before"));
    ASSERT_EQ(file.LoadSettings(copy->Path()), QString());
    EXPECT_EQ(document.Notes, QStringLiteral("half a sen"));
}

TEST_F(RecoveryCopyTest, ADamagedCopyIsToldAndKeptAndChangesNothing)
{
    const auto copy = CrashAndStartAnew(QStringLiteral("unnamed"));
    ASSERT_TRUE(QFile::resize(copy->Path(), QFileInfo(copy->Path()).size() / 2));
    asker.Expect(QStringLiteral("Recover them?"), MsgAnswer::Yes);
    const QByteArray content = Content(copy->Path());
    asker.Expect(QStringLiteral("malformed"));
    EXPECT_FALSE(OfferLeftover(*copy, table, asker));
    EXPECT_NE(table.Value(Edited), 321);
    EXPECT_FALSE(document.FileModified);
    EXPECT_FALSE(QFile::exists(copy->Path())) << "offered once";
    EXPECT_EQ(Content(asker.Shown.last().text.section(u'"', -2, -2)), content);
}

TEST_F(RecoveryCopyTest, AFailureIsToldOnceAndTriedAgain)
{
    // A file where the folder should be.
    QFile blocker(Path("data"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const auto copy = MakeCopy();
    QSignalSpy failed(copy.get(), &RecoveryCopy::WriteFailed);
    document.Notes.clear();
    Edit(7);
    PumpWhile([&] { return failed.count() < 1; }, QDeadlineTimer(10000));
    PumpWhile([] { return true; }, QDeadlineTimer(5 * SoonMs));
    EXPECT_EQ(failed.count(), 1);
    ASSERT_TRUE(blocker.remove());
    EXPECT_TRUE(BecomesCopied(*copy, 7)) << "without another edit";
    EXPECT_EQ(document.Notes, QString()) << "the blank that a save leaves is for the user's own save";
}

} // namespace quorvik::testing
