#pragma once

#include "model/Document.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvik::testing
{

/** Root may do everything, so that what others are refused would go unnoticed: while this lives, root is
 * nobody. */
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        if (!wasRoot_)
            return;
        // Where the build lies out of others' reach, root it stays.
        QFile presets(QStringLiteral(QUORVIK_PRESETS_FILE));
        if (::seteuid(nobody) != 0 || !presets.open(QIODevice::ReadOnly))
            BecomeRoot();
    }
    ~OrdinaryUser() { BecomeRoot(); }
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

private:
    void BecomeRoot() const { EXPECT_TRUE(!wasRoot_ || ::seteuid(0) == 0); }

    const bool wasRoot_ = ::geteuid() == 0;
};

/** A factory table as the program starts with it, and a folder for files. */
class SetTest : public ::testing::Test
{
protected:
    SetTest() { StartAnew(); }

    void StartAnew()
    {
        EXPECT_EQ(file.LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
        table.ResetToDefaults();
    }

    QString Path(const char *name) const { return folder.filePath(QString::fromUtf8(name)); }
    static QByteArray Content(const QString &path)
    {
        QFile opened(path);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    }
    /** All that lies in the folder, what is hidden too. */
    QStringList Entries() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const OrdinaryUser user;
    QTemporaryDir folder;
    ParameterTable table;
    Document document{table};
    SettingsFile file{table, document};
};

} // namespace quorvik::testing
