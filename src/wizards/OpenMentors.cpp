#include "wizards/OpenMentors.h"

#include "model/ParameterTable.h"
#include "platform/Asker.h"
#include "wizards/basic/FormWizardBasic.h"
#include "wizards/frame/MentorTitle.h"
#include "wizards/io/FormWizardIO.h"

#include <QGuiApplication>
#include <QScopeGuard>
#include <memory>

namespace quorvik
{

namespace
{

template<typename Window> std::unique_ptr<Window> Build(Desk &desk, DriveLink &link, QWidget *owner)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard(QGuiApplication::restoreOverrideCursor);
    auto form = std::make_unique<Window>(desk, owner);
    form->Follow(link);
    return form;
}

} // namespace

void OpenBasicSetup(Desk &desk, DriveLink &link, QWidget *owner, const std::function<void()> &changeModel)
{
    if (!desk.table.IsModelDefined()) {
        desk.asker.MsgBox(desk.table.PortOpen()
                              ? QStringLiteral("Invalid Drive Model. Verify CT ID board is correctly\r\n"
                                               "installed on Trigger Board and retry.")
                              : QStringLiteral("Invalid Drive Model. Choose a valid drive model under\r\n"
                                               "Tools|Select Drive Model."),
                          MsgButtons::Ok, MsgIcon::Exclamation, MentorTitle());
        return;
    }
    const auto form = Build<FormWizardBasic>(desk, link, owner);
    form->ChangeModel = changeModel;
    form->exec();
}

void OpenIOSetup(Desk &desk, DriveLink &link, QWidget *owner)
{
    Build<FormWizardIO>(desk, link, owner)->exec();
}

} // namespace quorvik
