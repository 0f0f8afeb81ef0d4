#include "SetFixture.h"

#include "platform/Waiting.h"
#include "settings/RecoveryCopy.h"
#include "support/ScriptedAsker.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <map>

namespace quorvik::testing
{

class RecoveryCopyTest : public SetTest
{
protected:
    static constexpr int SoonMs = 20;
    static constexpr int Edited = 217;

    /** What a crash leaves: the first copy object never ends normally. */
    std::unique_ptr<RecoveryCopy> MakeCopy(int delayMs = SoonMs)
    {
        return std::make_unique<RecoveryCopy>(model, file, Folder(), delayMs);
    }
    QString Folder() const { return Path("data/recovery"); }
    void Edit(std::int32_t rawValue) { model.SetParamValue(Edited, rawValue, true, false); }
    bool WaitUntil(const std::function<bool()> &condition)
    {
        return PumpWhile([&] { return !condition(); }, QDeadlineTimer(10000));
    }
    /** The edited value as the copy on disk has it, or -1. */
    std::int32_t CopiedValue(const RecoveryCopy &copy)
    {
        Model other;
        SettingsFile reader(other);
        if (!QFile::exists(copy.Path()) || !reader.LoadSettings(copy.Path()).isEmpty())
            return -1;
        return other.Value(Edited);
    }
    void LeaveACopy(const QString &name)
    {
        const auto copy = MakeCopy();
        model.FileName = name;
        model.Notes = QStringLiteral("halfway");
        Edit(321);
        ASSERT_TRUE(WaitUntil([&] { return CopiedValue(*copy) == 321; }));
    }
    /** The program as it starts again. */
    void StartAnew()
    {
        model.FileModified = false;
        ASSERT_EQ(file.LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
        model.ResetToDefaults();
        model.Notes.clear();
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
    for (const bool taken : {true, false}) {
        SCOPED_TRACE(taken);
        LeaveACopy(QStringLiteral("/machines/winder.Svx"));
        const auto copy = MakeCopy(60000);
        StartAnew();
        asker.Expect(QStringLiteral("changes to winder.Svx had not been saved"),
                     taken ? MsgAnswer::Yes : MsgAnswer::No);
        EXPECT_EQ(copy->OfferLeftover(asker), taken);
        EXPECT_EQ(model.FileModified, taken);
        EXPECT_EQ(model.FileName, taken ? QStringLiteral("/machines/winder.Svx") : QStringLiteral("unnamed"));
        EXPECT_EQ(model.Notes, taken ? QStringLiteral("halfway") : QString());
        EXPECT_EQ(model.Value(Edited) == 321, taken);
        EXPECT_FALSE(copy->OfferLeftover(asker)) << "once";
        copy->Remove();
        StartAnew();
    }
}

TEST_F(RecoveryCopyTest, WhatWasTakenOverIsCopiedAgain)
{
    LeaveACopy(QStringLiteral("unnamed"));
    StartAnew();
    const auto copy = MakeCopy();
    asker.Expect(QStringLiteral("changes to unnamed"), MsgAnswer::Yes);
    ASSERT_TRUE(copy->OfferLeftover(asker));
    EXPECT_TRUE(WaitUntil([&] { return CopiedValue(*copy) == 321; })) << "a second crash loses nothing";
}

TEST_F(RecoveryCopyTest, GoesAwayWithItsReason)
{
    const std::map<QString, std::function<void(RecoveryCopy &)>> ends = {
        {QStringLiteral("a normal end"), [](RecoveryCopy &copy) { copy.Remove(); }},
        {QStringLiteral("a save or a new set"),
         [this](RecoveryCopy &) {
             model.FileModified = false;
             model.UpdateTitle();
         }},
    };
    for (const auto &[title, end] : ends) {
        SCOPED_TRACE(title.toStdString());
        const auto copy = MakeCopy();
        Edit(5);
        ASSERT_TRUE(WaitUntil([&] { return QFile::exists(copy->Path()); }));
        Edit(6);
        end(*copy);
        PumpWhile([] { return true; }, QDeadlineTimer(3 * SoonMs));
        EXPECT_TRUE(QDir(Folder()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        EXPECT_FALSE(copy->OfferLeftover(asker));
    }
}

TEST_F(RecoveryCopyTest, ADamagedCopyIsToldAndChangesNothing)
{
    LeaveACopy(QStringLiteral("unnamed"));
    StartAnew();
    const auto copy = MakeCopy();
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
    Edit(7);
    ASSERT_TRUE(WaitUntil([&] { return failed.count() == 1; }));
    PumpWhile([] { return true; }, QDeadlineTimer(5 * SoonMs));
    EXPECT_EQ(failed.count(), 1);
    ASSERT_TRUE(blocker.remove());
    EXPECT_TRUE(WaitUntil([&] { return CopiedValue(*copy) == 7; })) << "without another edit";
}

TEST_F(RecoveryCopyTest, LeavesEmptyNotesEmpty)
{
    const auto copy = MakeCopy();
    model.Notes.clear();
    Edit(8);
    ASSERT_TRUE(WaitUntil([&] { return CopiedValue(*copy) == 8; }));
    EXPECT_EQ(model.Notes, QString());
}

} // namespace quorvik::testing
