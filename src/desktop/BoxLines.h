#pragma once

class QMessageBox;

namespace quorvik
{

/**
 * Makes a message box wide enough for the lines that its text breaks itself, which otherwise would be broken
 * a second time. A longer line is a paragraph, and wraps. To be called before the box is shown.
 */
void KeepLinesWhole(QMessageBox &box);

} // namespace quorvik
