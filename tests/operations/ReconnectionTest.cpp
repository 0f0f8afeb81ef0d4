#include "link/LinkFixture.h"

#include "link/ValueStates.h"
#include "operations/Reconnection.h"

#include <QElapsedTimer>

namespace quorvik::testing
{

class ReconnectionTest : public LinkFixture
{
protected:
    using Finding = Reconnection::Finding;

    static constexpr int OfferMs = 2000;
    static constexpr int Entered = 12;

    ReconnectionTest()
    {
        peer.LastParam = FileLastParam;
        peer.Values[Param::DriveModel] = 5;
        Want({Param::DriveModel, Param::DriveCurrent, Param::ControlFirmwareVersion,
              Param::TriggerFirmwareVersion, Param::OperatingHours});
    }

    void LoseTheDrive()
    {
        Connect();
        ASSERT_TRUE(WaitUntil([this] { return states.DriveValue(Param::OperatingHours).has_value(); }));
        asker.Expect(QStringLiteral("not Responding"));
        peer.PullOut();
        ASSERT_TRUE(WaitForOffLine());
        ASSERT_TRUE(WaitUntil([this] { return search.Found() == Finding::NoAdapter; }));
        peer.Frames.clear();
    }
    bool Finds(Finding finding)
    {
        return WaitUntil([&] { return search.Found() == finding; });
    }
    bool HasWritten() const
    {
        return std::ranges::any_of(peer.Frames,
                                   [](const QByteArray &f) { return f.size() > 1 && f[1] == 1; });
    }

    ValueStates states{table, link};
    Reconnection search{table, document, link, states, operations};
};

TEST_F(ReconnectionTest, OffersTheDriveOnceItAnswersAndWritesNothing)
{
    LoseTheDrive();
    peer.Answer = [](const QByteArray &) { return QByteArray(); };
    peer.PlugIn();
    ASSERT_TRUE(Finds(Finding::Silent));
    QElapsedTimer sinceReturn;
    sinceReturn.start();
    Answer({});
    ASSERT_TRUE(Finds(Finding::Drive));
    EXPECT_LE(sinceReturn.elapsed(), OfferMs);
    EXPECT_TRUE(states.IsLost() && !link.PortOpen() && !HasWritten());

    peer.Values[Entered] = 77;
    EXPECT_TRUE(search.Read().IsDone());
    EXPECT_EQ(table.Value(Entered), 77);
    EXPECT_EQ(search.Found(), Finding::Nothing);
    EXPECT_FALSE(states.IsLost());
}

TEST_F(ReconnectionTest, ReadsBySelfOnlyTheSameDriveAndOverNothingOfTheUsers)
{
    const struct {
        const char *title;
        bool isAnother;
        bool isEdited;
        Finding finding;
    } cases[] = {
        {"unsaved edits", false, true, Finding::Drive},
        {"another drive", true, false, Finding::AnotherDrive},
        {"the same", false, false, Finding::Nothing},
    };
    search.BySelf = true;
    for (const auto &c : cases) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, c.title);
        peer.Values[Param::DriveModel] = 5;
        LoseTheDrive();
        peer.Values[Param::DriveModel] = c.isAnother ? 6 : 5;
        document.HasUnsavedEdits = c.isEdited;
        peer.PlugIn();
        ASSERT_TRUE(Finds(c.finding));
        EXPECT_EQ(search.OtherDriveText().contains(QStringLiteral("Amps")), c.isAnother);
        EXPECT_EQ(link.PortOpen(), c.finding == Finding::Nothing);
        states.EndLoss();
    }
    EXPECT_FALSE(HasWritten());
}

TEST_F(ReconnectionTest, TriesBySelfOnceForEachReturn)
{
    LoseTheDrive();
    search.BySelf = true;
    document.DriveModified = document.HasUnsavedEdits = false;
    // Answers the search, and nothing of a reading.
    peer.Answer = [this](const QByteArray &frame) {
        return link.PortOpen() ? QByteArray() : peer.DriveAnswer(frame);
    };
    int attempts = 0;
    QObject::connect(&link, &DriveLink::ComStatusChanged, &search, [&] { attempts += link.PortOpen(); });
    asker.Expect(QStringLiteral("not Responding"));
    peer.PlugIn();
    ASSERT_TRUE(WaitUntil([&] { return attempts == 1 && !link.PortOpen(); }));
    PumpWhile([] { return true; }, QDeadlineTimer(2 * Reconnection::LookMs));
    EXPECT_EQ(attempts, 1);
    EXPECT_TRUE(states.IsLost() && search.Found() == Finding::Drive);
}

TEST_F(ReconnectionTest, StopsLookingWhenTheUserGoesOnWithout)
{
    LoseTheDrive();
    states.EndLoss();
    peer.PlugIn();
    PumpWhile([] { return true; }, QDeadlineTimer(Reconnection::LookMs + 200));
    EXPECT_TRUE(peer.Frames.isEmpty());
    EXPECT_EQ(search.Found(), Finding::Nothing);
}

} // namespace quorvik::testing
