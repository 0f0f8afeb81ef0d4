#include "support/TestDesk.h"

#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace quorvik::testing
{

TestDesk::TestDesk()
    : settings(folder.filePath(QStringLiteral("Quorvik.ini")))
    , desk{model, rules, asker, settings, help, forms, {}, {}}
{
    model.InitColors();
    model.Colors = model.DefaultColors;
    EXPECT_EQ(SettingsFile(model).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)), QString());
    model.ResetToDefaults();
    model.ParamTable[Param::DriveState].ReadFlag = 1;
    model.PortOpen = [this] { return online; };
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
