#include "link/LinkFixture.h"

#include "link/ValueStates.h"

#include <QSignalSpy>

namespace quorvik::testing
{

class ValueStatesTest : public LinkFixture
{
protected:
    static constexpr int P1 = 12;
    static constexpr int P2 = 13; ///< nobody asks for it

    void ShownBecomes(ValueState state, const QString &tip)
    {
        const auto isThere = [&] {
            const QString said = states.Describe(P1);
            return states.Of(P1) == state && (tip.isEmpty() ? said.isEmpty() : said.startsWith(tip));
        };
        EXPECT_TRUE(WaitUntil(isThere))
            << NameOf(states.Of(P1)).toStdString() << ": " << states.Describe(P1).toStdString();
    }
    /** Breaks the link with P1 confirmed as 7. */
    void LoseTheDrive()
    {
        peer.Values[P1] = 7;
        Want({P1});
        Connect();
        ShownBecomes(ValueState::Live, QStringLiteral("read 0."));
        peer.Answer = [](const QByteArray &) { return QByteArray(); };
        asker.Expect(QStringLiteral("not Responding"));
        ASSERT_TRUE(WaitForOffLine());
    }

    qint64 skew = 0;
    ValueStates states{table, link, [this] { return MillisecondsUp() + skew; }};
};

TEST_F(ValueStatesTest, FollowsEveryEventOfALink)
{
    const struct Step {
        const char *title;
        std::function<void()> happens;
        ValueState state;
        const char *tip;
    } steps[] = {
        {"off line", [] {}, ValueState::Set, ""},
        {"on line, silent",
         [this] {
             Connect();
             Answer(ReadRequest(P1));
         },
         ValueState::Never, "not read from this drive yet"},
        {"a damaged answer",
         [this] {
             Want({P1});
             Answer(ReadRequest(P1), Spoiled(ValueReply(7)), 1);
         },
         ValueState::Never, "not read"},
        {"a good one",
         [this] {
             peer.Values[P1] = 7;
             Answer({});
         },
         ValueState::Live, "read 0."},
        {"asked for twice without an answer", [this] { Answer(ReadRequest(P1)); }, ValueState::Old, "read "},
        {"answered again", [this] { Answer({}); }, ValueState::Live, "read 0."},
        {"nobody asks for it",
         [this] {
             table.RemoveReadInterest(P1);
             skew += 1801;
         },
         ValueState::Old, "read 1."},
        {"long after", [this] { skew += 600'000; }, ValueState::Old, "read 10 min ago, not asked for since"},
        {"put within limits by a rule", [this] { table.SetValue(P1, 9, ChangeCause::Rule); },
         ValueState::Never, "not read since it changed; the drive had 7"},
        {"entered, not answered",
         [this] {
             Answer(WriteRequest(P1, 20));
             Enter(P1, 20);
         },
         ValueState::Queued, "waits to be written: 20"},
        {"taken", [this] { Answer({}); }, ValueState::Live, "written 0."},
        {"refused",
         [this] {
             Answer(WriteRequest(P1, 30), Nak);
             asker.Expect(QStringLiteral("Could not write"));
             Enter(P1, 30);
         },
         ValueState::Refused, "the drive refused 30, it keeps 20"},
        {"and read again",
         [this] {
             Want({P1});
             peer.Values[P1] = 21;
         },
         ValueState::Refused, "the drive refused 30, it keeps 21"},
        {"a minute later", [this] { skew += 60'000; }, ValueState::Live, "read 0."},
        {"refused again",
         [this] {
             asker.Expect(QStringLiteral("Could not write"));
             Enter(P1, 30);
         },
         ValueState::Refused, "the drive refused 30"},
        {"touched", [this] { states.Touch(P1); }, ValueState::Live, "read 0."},
        {"held beside the drive",
         [this] {
             Connect();
             table.Row(P1).WriteFlag = WriteState::Held;
         },
         ValueState::Live, "read"},
        {"gone off line",
         [this] {
             table.Row(P1).WriteFlag = 0;
             operations.GoOffLine(OffLineReason::User);
         },
         ValueState::Set, ""},
        {"computed", [this] { Q_EMIT table.Signals().Computed(P1); }, ValueState::Emulated,
         "computed by the emulator"},
        {"not computed any more", [this] { skew += 2001; }, ValueState::Set, ""},
    };
    for (const Step &step : steps) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, step.title);
        document.DriveModified = false;
        step.happens();
        ShownBecomes(step.state, QString::fromLatin1(step.tip));
    }
}

TEST_F(ValueStatesTest, AnAnswerTooManyUnsettlesThePassBeforeIt)
{
    Want({P1});
    Connect();
    ShownBecomes(ValueState::Live, QStringLiteral("read 0."));
    Answer(ReadRequest(P1), ValueReply(1), 1);
    peer.Send(ValueReply(3));
    EXPECT_TRUE(WaitUntil([this] { return states.Of(P1) == ValueState::Never; }));
    ShownBecomes(ValueState::Live, QStringLiteral("read 0."));
}

TEST_F(ValueStatesTest, WhatALostDriveSaidStandsUntilAnotherWordOrTheUser)
{
    LoseTheDrive();
    EXPECT_TRUE(states.IsLost() && table.OutputsHeld);
    ShownBecomes(ValueState::Lost, QStringLiteral("last seen "));
    EXPECT_EQ(states.Of(P2), ValueState::Set);

    // An attempt that nobody answers changes nothing.
    asker.Expect(QStringLiteral("not Responding"));
    operations.GoOnLine();
    EXPECT_TRUE(states.IsLost());
    ShownBecomes(ValueState::Lost, QStringLiteral("last seen "));
    table.SetParamValue(P1, 8, true, false);
    ShownBecomes(ValueState::Set, {});
    states.EndLoss();
    EXPECT_FALSE(states.IsLost() || table.OutputsHeld);
}

TEST_F(ValueStatesTest, KeepsWhatHadNotArrivedUntilTheDriveTakesAValue)
{
    peer.Values[P1] = 7;
    Want({P1});
    Connect();
    ShownBecomes(ValueState::Live, QStringLiteral("read 0."));
    peer.Answer = [](const QByteArray &) { return QByteArray(); };
    Enter(P1, 40);
    Enter(P2, 41);
    document.DriveModified = false;
    asker.Expect(QStringLiteral("not Responding"));
    ASSERT_TRUE(WaitForOffLine());
    ASSERT_EQ(states.UnwrittenEntries().size(), 2U);
    ShownBecomes(ValueState::Queued, QStringLiteral("40 did not reach the drive"));

    table.DropAllWrites();
    Connect();
    ShownBecomes(ValueState::Live, QStringLiteral("read 0."));
    ASSERT_EQ(states.UnwrittenEntries().size(), 2U);
    EXPECT_EQ(states.UnwrittenEntries().front().rawEntered, 40);
    Enter(P1, 40);
    ASSERT_TRUE(WaitForWrites());
    ASSERT_EQ(states.UnwrittenEntries().size(), 1U);
    EXPECT_EQ(states.UnwrittenEntries().front().param, P2);
    document.DriveModified = false;
}

} // namespace quorvik::testing
