#pragma once

#include "model/Model.h"
#include "settings/SettingsFile.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik::testing
{

/** A factory table as the program starts with it, and a folder for files. */
class SetTest : public ::testing::Test
{
protected:
    SetTest()
    {
        model.InitColors();
        EXPECT_EQ(file.LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
        model.ResetToDefaults();
        model.PortOpen = [this] { return online; };
    }

    QString Path(const char *name) const { return folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir folder;
    Model model;
    SettingsFile file{model};
    bool online = false;
};

} // namespace quorvik::testing
