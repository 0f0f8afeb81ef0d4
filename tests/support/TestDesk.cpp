#include "support/TestDesk.h"

#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace quorvik::testing
{

TestDesk::TestDesk()
    : settings(folder.filePath(QStringLiteral("Quorvik.ini")))
    , desk{table, states, trips, document, colors, rules, guards, asker, settings, help, forms, {}, {}}
{
    colors.Colors = colors.DefaultColors;
    EXPECT_EQ(SettingsFile(table, document).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
    table.ResetToDefaults();
    table.Row(Param::DriveState).ReadFlag = 1;
    forms.Add(&mainWindow);
    desk.ShowChild = [](QWidget *form, bool) { form->show(); };
}

TestDesk::~TestDesk()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    while (forms.Count() > 1)
        delete forms.At(forms.Count() - 1);
}

} // namespace quorvik::testing
