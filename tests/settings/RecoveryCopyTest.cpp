#include "SetFixture.h"

#include "platform/Waiting.h"
#include "settings/RecoveryCopy.h"
#include "support/ScriptedAsker.h"

#include <QElapsedTimer>
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
        return std::make_unique<RecoveryCopy>(model, file, Path("data/recovery"), delayMs);
    }
    void Edit(std::int32_t rawValue) { model.SetParamValue(Edited, rawValue, true, false); }
    /** The edited value as the copy on disk has it, or -1. */
    std::int32_t CopiedValue(const RecoveryCopy &copy)
    {
        Model other;
        SettingsFile reader(other);
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
        model.FileName = name;
        Edit(321);
        EXPECT_TRUE(BecomesCopied(*copy, 321));
        copy = MakeCopy();
        model.FileModified = false;
        StartAnew();
        return copy;
    }

    ScriptedAsker asker;
};

TEST_F(RecoveryCopyTest, IsNeverOlderThanFiveSecondsUnderSteadyEdits)
{
    const auto copy = MakeCopy(RecoveryCopy::WriteDelayMs);
    std::vector<qint64> editedAt;
    QElapsedTimer clock;
    clock.start();
    qint64 checkAt = 0;
    while (clock.elapsed() < 9000) {
        editedAt.push_back(clock.elapsed());
        Edit(std::int32_t(editedAt.size()));
        PumpWhile([] { return true; }, QDeadlineTimer(20));
        if (clock.elapsed() < checkAt)
            continue;
        checkAt = clock.elapsed() + 250;
        // The first edit that the copy lacks is not older than five seconds.
        const std::size_t copied = std::size_t(std::max(CopiedValue(*copy), 0));
        if (copied < editedAt.size()) {
            ASSERT_LT(clock.elapsed() - editedAt[copied], 5000) << copied;
        }
    }
    EXPECT_GT(CopiedValue(*copy), 0);
}

TEST_F(RecoveryCopyTest, IsOfferedOnceWithItsNameAndContent)
{
    for (const bool taken : {false, true}) {
        SCOPED_TRACE(taken);
        const auto copy = CrashAndStartAnew(QStringLiteral("/machines/winder.Svx"));
        asker.Expect(QStringLiteral("changes to winder.Svx had not been saved"),
                     taken ? MsgAnswer::Yes : MsgAnswer::No);
        EXPECT_EQ(copy->OfferLeftover(asker), taken);
        EXPECT_EQ(model.FileModified, taken);
        EXPECT_EQ(model.FileName, taken ? QStringLiteral("/machines/winder.Svx") : QStringLiteral("unnamed"));
        EXPECT_EQ(model.Value(Edited) == 321, taken);
        EXPECT_FALSE(copy->OfferLeftover(asker)) << "once";
        EXPECT_TRUE(!taken || BecomesCopied(*copy, 321)) << "a second crash loses nothing";
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
        if (endsNormally) {
            copy->Remove();
        } else {
            model.FileModified = false; // a save or a new set
            model.UpdateTitle();
        }
        PumpWhile([] { return true; }, QDeadlineTimer(3 * SoonMs));
        EXPECT_TRUE(QDir(Path("data/recovery")).isEmpty(QDir::Files | QDir::Hidden));
        EXPECT_FALSE(copy->OfferLeftover(asker));
    }
}

TEST_F(RecoveryCopyTest, ADamagedCopyIsToldAndChangesNothing)
{
    const auto copy = CrashAndStartAnew(QStringLiteral("unnamed"));
    ASSERT_TRUE(QFile::resize(copy->Path(), QFileInfo(copy->Path()).size() / 2));
    asker.Expect(QStringLiteral("Recover them?"), MsgAnswer::Yes);
    asker.Expect(QStringLiteral("malformed"));
    EXPECT_FALSE(copy->OfferLeftover(asker));
    EXPECT_NE(model.Value(Edited), 321);
    EXPECT_FALSE(model.FileModified);
    EXPECT_FALSE(QFile::exists(copy->Path()));
}

TEST_F(RecoveryCopyTest, AFailureIsToldOnceAndTriedAgain)
{
    // A file where the folder should be.
    QFile blocker(Path("data"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const auto copy = MakeCopy();
    QSignalSpy failed(copy.get(), &RecoveryCopy::WriteFailed);
    model.Notes.clear();
    Edit(7);
    PumpWhile([&] { return failed.count() < 1; }, QDeadlineTimer(10000));
    PumpWhile([] { return true; }, QDeadlineTimer(5 * SoonMs));
    EXPECT_EQ(failed.count(), 1);
    ASSERT_TRUE(blocker.remove());
    EXPECT_TRUE(BecomesCopied(*copy, 7)) << "without another edit";
    EXPECT_EQ(model.Notes, QString()) << "the blank that a save leaves is for the user's own save";
}

} // namespace quorvik::testing
