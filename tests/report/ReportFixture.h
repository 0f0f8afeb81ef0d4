#pragma once

#include "operations/Engines.h"
#include "platform/SettingsStore.h"
#include "platform/Waiting.h"
#include "report/MakeReport.h"
#include "support/ScriptedAsker.h"
#include "support/SimulatedDrive.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik::testing
{

/** The engines of a run in a folder of its own, with a simulated drive at the port once it is asked for. */
class ReportTest : public ::testing::Test
{
protected:
    ReportTest()
    {
        QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), Path("Presets.fil"));
        EXPECT_EQ(engines.InitGlobals(folder.path()), QString());
        engines.link.MSComm1.DeviceOf = [this](int) { return drive ? drive->LinkPath() : QString(); };
    }
    ~ReportTest() override { engines.link.Close(); }

    QString Path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }

    /** Goes on line with a drive, and reads it whole over the open set. */
    void ReadDrive()
    {
        drive = std::make_unique<SimulatedDrive>();
        ASSERT_TRUE(engines.drive.GoOnLine().IsDone());
        ASSERT_TRUE(engines.drive.ReadAll().IsDone());
    }
    void Enter(std::int32_t rawFwdAccelA)
    {
        const Intent intent(engines.table, Origin::EditDialog);
        engines.table.SetParamValue(Param::FwdAccelA, rawFwdAccelA, true, true);
    }
    CommissioningReport Report(const DriveVerification &verification)
    {
        return MakeReport(engines,
                          {.place = {}, .recordings = {}, .journalDay = QDate::currentDate(), .blocks = {}},
                          verification);
    }
    CommissioningReport Report() { return Report(VerifyOpenSet(engines)); }
    /** The fields of the row whose first field is this, in one text. */
    static std::string RowOf(const CommissioningTable &table, const QString &first)
    {
        for (const QStringList &row : table.rows)
            if (row.value(0) == first)
                return row.join(u'|').toStdString();
        return "no such row";
    }

    QTemporaryDir folder;
    ScriptedAsker asker;
    SettingsStore settings{folder.filePath(QStringLiteral("settings.ini"))};
    std::unique_ptr<SimulatedDrive> drive;
    Engines engines{{.settings = settings,
                     .programFolder = folder.path(),
                     .dataFolder = folder.filePath(QStringLiteral("data")),
                     .timings = {.scanPause = 5, .replyTimeout = 150},
                     .devices = [] { return QList<SerialDevice>{}; },
                     .keepsRecoveryCopy = false},
                    asker};
};

} // namespace quorvik::testing
