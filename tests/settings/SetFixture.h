#pragma once

#include "model/Document.h"
#include "settings/SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik::testing
{

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

    QTemporaryDir folder;
    ParameterTable table;
    Document document{table};
    SettingsFile file{table, document};
};

} // namespace quorvik::testing
