#pragma once

#include <QChar>
#include <QSet>
#include <QString>

class QWidget;

namespace quorvik
{

/** The letter or digit behind the single "&" of a caption, as a capital; null where there is none. */
QChar MnemonicOf(const QString &caption);

/** The mnemonics of the buttons, options, frames and captions in a window. */
QSet<QChar> MnemonicsIn(const QWidget &window);

} // namespace quorvik
