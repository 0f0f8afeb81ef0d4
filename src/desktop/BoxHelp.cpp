#include "desktop/BoxHelp.h"

#include "desktop/HTMLHelp.h"
#include "platform/Guard.h"

#include <QMessageBox>
#include <QShortcut>

namespace quorvik
{

void HelpOnF1(QMessageBox &box, HTMLHelp *help)
{
    if (!help)
        return;
    auto *key = new QShortcut(QKeySequence(Qt::Key_F1), &box);
    On(key, &QShortcut::activated, &box, [&box, help] { help->DisplayMessage(box.text(), &box); });
}

} // namespace quorvik
