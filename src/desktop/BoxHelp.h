#pragma once

class QMessageBox;

namespace quorvik
{

class HTMLHelp;

/** Makes F1 in a message box open the help at what the box says; without a help it does nothing. */
void HelpOnF1(QMessageBox &box, HTMLHelp *help);

} // namespace quorvik
