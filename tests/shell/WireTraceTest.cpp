#include "drive/PseudoTerminal.h"
#include "link/PacketLayer.h"
#include "shell/ShellFixture.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSerialPort>
#include <QSet>
#include <QSocketNotifier>
#include <algorithm>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

/** A line between the program and the simulated drive that notes all that passes. */
class TappedLine
{
public:
    explicit TappedLine(const SimulatedDrive &drive)
        : drive_(drive.LinkPath())
    {
        EXPECT_EQ(program_.Open(), QString());
        EXPECT_TRUE(drive_.open(QIODevice::ReadWrite));
        notifier_ = std::make_unique<QSocketNotifier>(program_.Descriptor(), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, &drive_, [this] {
            const QByteArray bytes = program_.Read();
            Note(bytes, true);
            drive_.write(bytes);
        });
        QObject::connect(&drive_, &QIODevice::readyRead, &drive_, [this] {
            const QByteArray bytes = drive_.readAll();
            Note(bytes, false);
            program_.Write(bytes);
        });
    }

    QString Device() const { return program_.DevicePath(); }

    /**
     * What passed since the last call, an exchange a line: request and reply. A poll of one parameter that
     * told the same before is left out, and the drive's clock, for both are a matter of time.
     */
    QStringList Exchanges()
    {
        QStringList lines;
        int param = 0;
        for (const auto &[request, reply] : std::exchange(exchanges_, {})) {
            param = IsRead(request) ? NumberIn(request) : param + 1;
            const bool isClock = reply.size() == Wire::ReadReplyLength && param >= Param::ClockFirst &&
                                 param <= Param::ClockLast;
            lines +=
                QString::fromLatin1(request.toHex() + ' ' + (isClock ? "clock" : reply.toHex())).trimmed();
        }
        const QString endOfRun = QString::fromLatin1(QByteArray(1, Wire::Eot).toHex());
        QStringList different;
        QSet<QString> polls;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const bool isPoll =
                i + 1 < lines.size() && lines.at(i).startsWith(ReadRequest) && lines.at(i + 1) == endOfRun;
            const bool isKnown = lines.at(i).startsWith(PollOfTheState) || polls.contains(lines.at(i));
            if (!isPoll)
                different += lines.at(i);
            else if (!isKnown)
                different += {lines.at(i), lines.at(i + 1)};
            if (isPoll)
                polls.insert(lines.at(i++));
        }
        // Of a poll that was under way at the beginning or is at the end.
        if (!different.isEmpty() && different.first() == endOfRun)
            different.removeFirst();
        if (!different.isEmpty() && different.last().startsWith(PollOfTheState))
            different.removeLast();
        return different;
    }

    /** How often the drive was asked for its state since the last call of Exchanges(). */
    qsizetype Polls() const
    {
        return std::ranges::count_if(exchanges_, [](const auto &exchange) {
            return exchange.first.startsWith(QByteArray::fromHex(PollOfTheState.data()));
        });
    }

    /** Whether the last request of those since the last call of Exchanges() has got its reply. */
    bool IsAnswered() const
    {
        return exchanges_.isEmpty() || exchanges_.last().first.at(0) == Wire::Eot ||
               !exchanges_.last().second.isEmpty();
    }

private:
    static constexpr QLatin1String ReadRequest{"0200"};
    static constexpr QLatin1String PollOfTheState{"020001a6"};

    static bool IsRead(const QByteArray &request) { return request.startsWith(QByteArray::fromHex("0200")); }
    static int NumberIn(const QByteArray &request)
    {
        return request.size() < 4 ? 0 : BytesToInt(std::array{request.at(3), request.at(2)});
    }

    void Note(const QByteArray &bytes, bool isRequest)
    {
        for (const char byte : bytes) {
            if (isRequest && IsWhole())
                exchanges_.emplaceBack();
            // Of an idle poll that was sent before the last call.
            if (exchanges_.isEmpty())
                return;
            (isRequest ? exchanges_.last().first : exchanges_.last().second).append(byte);
        }
    }
    /** Whether the next byte of the program begins a request. */
    bool IsWhole() const
    {
        if (exchanges_.isEmpty())
            return true;
        const QByteArray &request = exchanges_.last().first;
        if (request.at(0) != 2)
            return true;
        return request.size() == (request.size() > 1 && request.at(1) == 1 ? 7 : 5);
    }

    drive::PseudoTerminal program_;
    QSerialPort drive_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QList<std::pair<QByteArray, QByteArray>> exchanges_;
};

constexpr int FirstShown = 6;

/** A trace in two lines: its size and what it comes to, and how it begins. */
QString Summary(const QString &name, const QStringList &trace)
{
    const QByteArray all = trace.join(QLatin1Char('\n')).toLatin1();
    return QStringLiteral("%1: %2 exchanges, %3\n  %4")
        .arg(name)
        .arg(trace.size())
        .arg(QString::fromLatin1(QCryptographicHash::hash(all, QCryptographicHash::Sha256).toHex().first(16)),
             trace.first(std::min<qsizetype>(trace.size(), FirstShown)).join(QLatin1String(", ")))
        .trimmed();
}

class WireTrace : public ShellTest
{
protected:
    // A machine at its limits answers late; what is asked again for that is no part of a trace.
    WireTrace()
        : ShellTest({.scanPause = 20, .replyTimeout = 2000, .sizeErrorPause = 100})
    {
    }

    /** Does something, waits until it is done, and notes what passed meanwhile. */
    void Note(const Name &name, const std::function<void()> &act, const std::function<bool()> &isDone)
    {
        SCOPED_TRACE(name.toStdString());
        line.Exchanges();
        act();
        // The history asks once which drive it is.
        const auto isIdentified = [this] {
            return !Link().PortOpen() || Table().Row(Param::OperatingHours).ReadFlag == 0;
        };
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone() && isIdentified(); }, 60000));
        // What the last answer brings about has left by then.
        QTest::qWait(60);
        const qsizetype polls = line.Polls();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !Link().PortOpen() || line.Polls() >= polls + 2; }, 60000));
        // Going off line waits for no answer; a port that is opened again at once would have it in it. A
        // drive that restarts gives none.
        [[maybe_unused]] const bool isAnswered =
            QTest::qWaitFor([&] { return Link().PortOpen() || line.IsAnswered(); }, 5000);
        const QStringList trace = line.Exchanges();
        summary += Summary(name, trace);
        QFile whole(folder.filePath(QStringLiteral("trace %1.txt").arg(summary.size())));
        if (whole.open(QIODevice::WriteOnly))
            whole.write(trace.join(u'\n').toLatin1());
    }
    void NoteEntry(const Name &name, const char *entry)
    {
        NoteEdit(name, [this, entry] { Trigger(entry); });
    }
    bool IsAllWritten() const
    {
        for (int p = 0; p <= Table().LastParam; ++p)
            if (Table().Row(p).WriteFlag == WriteState::Queued)
                return false;
        return true;
    }
    /** Of an entry after which the port is closed: at the link's next tick, after the entry has returned. */
    void NoteUntilOffLine(const Name &name, const char *entry)
    {
        Note(
            name, [this, entry] { Trigger(entry); }, [this] { return !Link().PortOpen(); });
    }
    void NoteCommand(const Name &name, const char *entry, int command)
    {
        NoteEntry(name, entry);
        EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(command) == 0; }, 60000));
    }
    void NoteEdit(const Name &name, const std::function<void()> &edit)
    {
        Note(name, edit, [this] { return IsAllWritten(); });
    }
    void Enter(int p, std::int32_t raw) { Table().SetParamValue(p, raw, true, !Link().PortOpen()); }

    SimulatedDrive drive{SimulatedDrive::Unpaced()
                         << QStringLiteral("--memory-ms") << QStringLiteral("1500")};
    TappedLine line{drive};
    QStringList summary;
};

// What a drive is sent is held byte by byte: the approved text is rewritten with TRACES=write in the
// environment.
TEST_F(WireTrace, HoldsWhatTheDriveIsSent)
{
    Store("Ports", "Com16", line.Device());
    LoadQuietly();
    // The questions before risky commands read the drive first; without them nothing but this passes.
    main->AllEngines().guards.Asking = false;
    // What it computes between two steps would be sent.
    main->AllEngines().emulator.TimerEmulateSvx.stop();
    const Name ask("Write current parameter settings");
    const Name save("Save Changes in Drive?");

    asker.Expect(ask, MsgAnswer::Cancel);
    NoteEntry("going on line, Cancel", "mnuToolsOnline");
    asker.Expect(ask, MsgAnswer::No);
    NoteEntry("going on line, No", "mnuToolsOnline");
    NoteUntilOffLine("going off line", "mnuToolsOnline");
    Enter(217, 5000);
    asker.Expect(ask, MsgAnswer::Yes);
    NoteEntry("going on line, Yes", "mnuToolsOnline");

    NoteEdit("an edit", [this] { Enter(217, 4000); });
    NoteEdit("two edits at once", [this] {
        Enter(226, 75);
        Enter(3, 226);
    });
    NoteEdit("a Stop before an edit", [this] {
        Enter(218, 100);
        Table().QueueWrite(Param::Stop, 1);
    });
    drive.Send(QStringLiteral("fault refuse:217"));
    asker.Expect("Could not write value of 4100 to (217)");
    NoteEdit("a refused edit", [this] { Enter(217, 4100); });
    drive.Send(QStringLiteral("faults off"));

    const QString file = folder.filePath(QStringLiteral("set.Svx"));
    asker.ExpectSave(file);
    Trigger("mnuFileSave(1)");
    asker.ExpectOpen(file);
    NoteEntry("opening a file on line", "mnuFileOpen");
    NoteCommand("saving in the drive", "mnuToolsSaveDrive", Param::SaveParameters);
    NoteCommand("loading in the drive", "mnuToolsLoadDrive", Param::LoadParameters);
    Enter(218, 200);
    asker.Expect(save, MsgAnswer::Yes);
    NoteUntilOffLine("going off line and saving", "mnuToolsOnline");
    asker.Expect("Save changes?", MsgAnswer::No);
    NoteUntilOffLine("reading the drive's settings", "mnuFileRead");
    asker.Expect(save, MsgAnswer::No);
    NoteUntilOffLine("writing the drive's settings", "mnuFileWrite");

    for (const char *fault :
         {"bad-bcc:100,count=2", "silent:100,count=2", "short:100,count=2", "long:100,count=2"}) {
        drive.Send(QStringLiteral("fault ") + QLatin1String(fault));
        asker.Expect("Save changes?", MsgAnswer::No);
        asker.Expect(save, MsgAnswer::No);
        NoteUntilOffLine(Name("reading with ") + QLatin1String(fault), "mnuFileRead");
        drive.Send(QStringLiteral("faults off"));
    }
    asker.Expect(ask, MsgAnswer::No);
    asker.Expect("Save changes?", MsgAnswer::No);
    Trigger("mnuToolsOnline");
    asker.Expect("Drive parameters have not been saved!");
    NoteUntilOffLine("resetting the drive", "mnuToolsReInitDrive(2)");

    const QString text = summary.join(u'\n') + u'\n';
    QFile approved(QStringLiteral(TRACES));
    const bool writes = qEnvironmentVariable("TRACES") == QStringLiteral("write");
    ASSERT_TRUE(approved.open(writes ? QIODevice::WriteOnly : QIODevice::ReadOnly));
    if (writes)
        approved.write(text.toUtf8());
    else
        EXPECT_EQ(text.toStdString(), approved.readAll().toStdString());
    folder.setAutoRemove(!HasFailure());
}

} // namespace

} // namespace quorvik::testing
