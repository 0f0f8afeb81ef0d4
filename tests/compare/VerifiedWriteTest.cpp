#include "compare/VerifiedWrite.h"
#include "compare/Backups.h"
#include "compare/WriteOrder.h"
#include "link/DriveLink.h"
#include "link/ScriptedPeer.h"
#include "platform/Waiting.h"
#include "settings/SetFixture.h"

#include <gmock/gmock.h>

namespace quorvik::testing
{

using enum Arrival;
using End = WriteReport::End;

/** Writes to a scripted drive with the factory table. */
class VerifiedWriteTest : public SetTest
{
protected:
    VerifiedWriteTest()
    {
        link.MSComm1.DeviceOf = [this](int) { return peer.Device(); };
        QObject::connect(&writing, &VerifiedWrite::Finished, [this] { isOver = true; });
        peer.LastParam = table.FileLastParam;
        BeFactory();
    }

    void BeFactory()
    {
        for (int p = 0; p <= table.FileLastParam; ++p)
            peer.Values[p] = table.PresetTable[p].Value;
        peer.Answer = [this](const QByteArray &frame) { return peer.DriveAnswer(frame); };
    }
    void GoOnLine()
    {
        ASSERT_EQ(link.Open(), QString());
        PumpWhile([this] { return link.IsAskingForSize(); }, QDeadlineTimer(5000));
        ASSERT_TRUE(link.TakeSize());
    }
    bool Wait()
    {
        return PumpWhile([this] { return !isOver; }, QDeadlineTimer(20'000));
    }
    const WriteReport &Write(const std::vector<ParamValue> &values)
    {
        isOver = false;
        writing.Begin(values);
        EXPECT_TRUE(Wait());
        return writing.Report();
    }
    const WriteReport &Resume(bool acceptsChanged = false)
    {
        isOver = false;
        writing.Resume(acceptsChanged);
        EXPECT_TRUE(Wait());
        return writing.Report();
    }
    Arrival Of(int p) const
    {
        for (const WrittenRow &row : writing.Report().rows)
            if (row.value.param == p)
                return row.arrival;
        return NotSent;
    }
    /** Every plain setting, each with another value than the factory's. */
    std::vector<ParamValue> AllSettings() const
    {
        std::vector<ParamValue> values;
        for (int p = 0; p <= table.LastParam; ++p) {
            const ParamRecord &record = table[p];
            if (table.AttrBit(Attr::ReadOnly, p) || Param::IsClock(p) || Param::ClearsItself(p) ||
                record.Min == record.Max || table.FindLinkSource(p) > 0)
                continue;
            values.push_back({p, record.Value == record.Max ? record.Min : record.Value + 1});
        }
        return values;
    }
    /** What the report says must hold in the drive. */
    void ExpectTrue(const std::map<int, int> &before)
    {
        for (const WrittenRow &row : writing.Report().rows) {
            const int p = row.value.param;
            const int held = std::int16_t(peer.Values[p]);
            if (row.arrival == Verified) {
                EXPECT_EQ(held, std::int16_t(row.value.rawValue)) << p;
            } else if (row.arrival == NotSent || row.arrival == Refused) {
                EXPECT_EQ(held, std::int16_t(before.at(p))) << p;
            }
        }
    }

    ScriptedPeer peer;
    DriveLink link{table, LinkTimings{.scanPause = 5, .replyTimeout = 60, .quiet = 5}};
    Backups backups{Path("backups")};
    VerifiedWrite writing{table, link, backups};
    bool isOver = false;
};

TEST_F(VerifiedWriteTest, WritesVerifiesAndKeepsTheSetOfBefore)
{
    peer.Values[Param::Reference1] = 1234;
    GoOnLine();
    const std::map<int, int> before = peer.Values;
    const std::vector<ParamValue> values = AllSettings();
    const WriteReport &report = Write(values);
    EXPECT_EQ(report.end, End::Complete);
    EXPECT_EQ(report.Count(Verified), int(values.size()));
    EXPECT_EQ(report.Summary(),
              QStringLiteral("%1 written and verified, 0 refused, 0 differ").arg(values.size()));
    for (const ParamValue &value : values)
        EXPECT_EQ(table.Value(value.param), value.rawValue) << "the table follows the drive";

    ParameterTable kept(table);
    kept.SetPortOpen(false);
    Document keptDocument(kept);
    ASSERT_EQ(SettingsFile(kept, keptDocument).LoadSettings(report.backupPath), QString());
    for (int p = 0; p <= table.LastParam; ++p)
        EXPECT_TRUE(Param::IsCommand(p) || std::int16_t(kept.Value(p)) == std::int16_t(before.at(p))) << p;
    EXPECT_FALSE(report.CanResume());
}

TEST_F(VerifiedWriteTest, CatchesADriveThatAcknowledgesAndStoresSomethingElse)
{
    GoOnLine();
    peer.Answer = [this](const QByteArray &frame) {
        const QByteArray reply = peer.DriveAnswer(frame);
        if (frame.size() == 7 && frame.at(1) == 1) {
            peer.Values[Param::Reference1] = 777;                                        // another value
            peer.Values[Param::Reference2] = table.PresetTable[Param::Reference2].Value; // nothing
        }
        return frame == WriteRequest(Param::Reference3, 5) ? Nak : reply;
    };
    // An input of the drive sets what its selector points at.
    peer.Values[Param::AnalogIn2Destination] = Param::JogReference;
    const WriteReport &report = Write(
        {{Param::Reference1, 5}, {Param::Reference2, 5}, {Param::Reference3, 5}, {Param::JogReference, 5}});
    EXPECT_EQ(report.end, End::Complete);
    EXPECT_EQ(Of(Param::Reference1), Differs);
    EXPECT_EQ(report.rows[0].rawFound, 777);
    EXPECT_EQ(Of(Param::Reference2), Differs);
    EXPECT_EQ(Of(Param::JogReference), Verified);
    EXPECT_EQ(table.Value(Param::Reference1), 777) << "and the table shows what the drive has";

    peer.Answer = [this](const QByteArray &frame) {
        const bool isWrite = frame.size() == 7 && frame.at(1) == 1;
        return isWrite ? Ack : peer.DriveAnswer(frame);
    };
    const WriteReport &nothing = Write(AllSettings());
    EXPECT_EQ(nothing.Count(Verified), 0);
    EXPECT_EQ(nothing.Count(Differs), int(nothing.rows.size()));
    EXPECT_GT(std::count_if(nothing.rows.begin(), nothing.rows.end(),
                            [](const auto &row) { return row.drivenBy != 0; }),
              0);
}

TEST_F(VerifiedWriteTest, OrderNeverRefusesASetThatIsValidAsAWhole)
{
    // The drive holds what follows a selector to the selected one's limits, and two limits to each other.
    const auto isRefused = [this](int p, int value) {
        if (p == Param::DigitalIn1OpenValue)
            return peer.Values[Param::DigitalIn1Destination] != Param::Reference1;
        if (p == Param::Reference1)
            return value > peer.Values[Param::Reference2];
        return p == Param::Reference2 && value < peer.Values[Param::Reference1];
    };
    peer.Answer = [&](const QByteArray &frame) {
        if (frame.size() == 7 && frame.at(1) == 1 &&
            isRefused(quint8(frame.at(2)) * 256 + quint8(frame.at(3)),
                      quint8(frame.at(4)) * 256 + quint8(frame.at(5))))
            return Nak;
        return peer.DriveAnswer(frame);
    };
    GoOnLine();
    for (const auto &[low, high] : {std::pair(3000, 4000), std::pair(100, 200), std::pair(250, 300)}) {
        const WriteReport &report = Write({{Param::SaveParameters, 1},
                                           {Param::DigitalIn1OpenValue, 50 + low},
                                           {Param::Reference1, low},
                                           {Param::Reference2, high},
                                           {Param::DigitalIn1Destination, Param::Reference1}});
        EXPECT_EQ(report.Count(Verified), 4) << low;
        EXPECT_EQ(report.Count(Given), 1);
        EXPECT_EQ(report.rows.front().value.param, Param::DigitalIn1Destination);
        EXPECT_EQ(report.rows.back().value.param, Param::SaveParameters);
        peer.Values[Param::DigitalIn1Destination] = 0;
    }
}

TEST_F(VerifiedWriteTest, NothingIsWrittenWhereTheSetOfBeforeCannotBeKept)
{
    const std::map<int, int> before = peer.Values;
    GoOnLine();
    QFile(Path("backups")).open(QIODevice::WriteOnly);
    EXPECT_EQ(Write({{Param::Reference1, 5}}).end, End::NoBackup);
    EXPECT_FALSE(writing.Report().failure.isEmpty());
    QFile::remove(Path("backups"));

    peer.Answer = [this](const QByteArray &frame) {
        const QByteArray reply = peer.DriveAnswer(frame);
        // The reply for one row is damaged whichever way it is asked for.
        return reply == ValueReply(31000) ? Spoiled(reply) : reply;
    };
    peer.Values[Param::Reference3] = 31000;
    EXPECT_EQ(Write({{Param::Reference1, 5}}).end, End::NoBackup);
    EXPECT_THAT(writing.Report().failure.toStdString(), ::testing::HasSubstr("(220)"));
    peer.Values[Param::Reference3] = before.at(Param::Reference3);
    EXPECT_EQ(peer.Values, before);
}

TEST_F(VerifiedWriteTest, ACutLineLeavesATrueReportAndIsResumed)
{
    const std::vector<ParamValue> values = AllSettings();
    for (int tenth = 0; tenth <= 10; ++tenth) {
        SCOPED_TRACE(tenth);
        BeFactory();
        table.ResetToDefaults();
        GoOnLine();
        const std::map<int, int> before = peer.Values;
        int left = int(values.size()) * tenth / 10;
        bool hasLast = tenth % 2 == 0; // what was sent last arrived, and only its answer did not
        bool isCut = false;
        peer.Answer = [&](const QByteArray &frame) {
            const bool isWrite = frame.size() == 7 && frame.at(1) == 1;
            if (isWrite && left-- == 0)
                isCut = true;
            if (isCut && isWrite && hasLast)
                peer.DriveAnswer(frame);
            return isCut ? QByteArray() : peer.DriveAnswer(frame);
        };
        const WriteReport &report = Write(values);
        ASSERT_FALSE(link.PortOpen() && tenth < 10);
        if (tenth < 10) {
            EXPECT_EQ(report.end, End::LinkLost);
            EXPECT_EQ(report.Count(Sent), int(values.size()) * tenth / 10 + 1);
            ExpectTrue(before);
            EXPECT_TRUE(report.CanResume());
        }
        isCut = false;
        left = INT_MAX;
        // A drive that was switched off has lost what came last.
        if (tenth == 4)
            peer.Values = before;
        if (!link.PortOpen())
            GoOnLine();
        Resume();
        EXPECT_EQ(report.end, End::Complete);
        EXPECT_EQ(report.Count(Verified), int(values.size()));
        ExpectTrue(before);
        EXPECT_EQ(backups.List().size(), tenth + 1) << "one for each write, however often it is resumed";
        link.Close();
    }
}

TEST_F(VerifiedWriteTest, AnotherDriveIsNeverWrittenTo)
{
    const std::pair<int, int> others[] = {{Param::DriveModel, 6},
                                          {Param::ControlFirmwareVersion, 201},
                                          {Param::OperatingHours, 900},
                                          {Param::FwdAccelA, 77}};
    for (const auto &[p, value] : others) {
        SCOPED_TRACE(p);
        BeFactory();
        peer.Values[Param::OperatingHours] = 100;
        GoOnLine();
        peer.Answer = [&](const QByteArray &frame) {
            return frame == WriteRequest(Param::Reference2, 5) ? QByteArray() : peer.DriveAnswer(frame);
        };
        const WriteReport &report = Write({{Param::Reference1, 5}, {Param::Reference2, 5}});
        EXPECT_EQ(report.end, End::LinkLost);
        BeFactory();
        peer.Values[Param::OperatingHours] = 100;
        peer.Values[p] = value;
        const std::map<int, int> other = peer.Values;
        GoOnLine();
        Resume();
        const bool isSetting = p == Param::FwdAccelA;
        EXPECT_EQ(report.end, isSetting ? End::Changed : End::OtherDrive);
        EXPECT_EQ(report.changed, isSetting ? std::vector({p}) : std::vector<int>());
        EXPECT_EQ(peer.Values, other);
        if (isSetting) {
            EXPECT_EQ(Resume(true).end, End::Complete);
            EXPECT_EQ(report.Count(Verified), 2);
        }
        link.Close();
    }
}

TEST_F(VerifiedWriteTest, TheNewestBackupsStay)
{
    const Backups few(Path("few"));
    Backups limited = few;
    limited.Newest = 3;
    const ParameterSet set{.name = {},
                           .records = table.Records(),
                           .known = std::vector<bool>(std::size_t(table.LastParam) + 1, true)};
    QDir().mkpath(Path("few"));
    QFile(Path("few/my own.Svx")).open(QIODevice::WriteOnly);
    QStringList paths;
    for (const int minute : {1, 2, 2, 3, 4}) {
        QString path;
        EXPECT_EQ(limited.Keep(set, table, QDateTime(QDate(2026, 11, 22), QTime(14, minute)), path),
                  QString());
        paths.append(path);
    }
    QStringList left;
    for (const Backups::Entry &entry : few.List())
        left.append(entry.path);
    EXPECT_EQ(left, (QStringList{paths[4], paths[3], paths[2]}));
    EXPECT_EQ(QFileInfo(paths[2]).fileName(), QStringLiteral("SVR100-000 2026-11-22 14-02-00 (2).Svx"));
    EXPECT_TRUE(QFile::exists(Path("few/my own.Svx")));
}

} // namespace quorvik::testing
