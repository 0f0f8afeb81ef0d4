#include "desktop/Mnemonics.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>

namespace quorvik
{

QChar MnemonicOf(const QString &caption)
{
    const QKeySequence keys = QKeySequence::mnemonic(caption);
    return keys.isEmpty() ? QChar() : QChar(int(keys[0].key()));
}

QSet<QChar> MnemonicsIn(const QWidget &window)
{
    QSet<QChar> letters;
    const auto add = [&letters](const QString &caption) {
        if (const QChar letter = MnemonicOf(caption); !letter.isNull())
            letters.insert(letter);
    };
    for (const auto *button : window.findChildren<QAbstractButton *>())
        add(button->text());
    for (const auto *frame : window.findChildren<QGroupBox *>())
        add(frame->title());
    for (const auto *label : window.findChildren<QLabel *>())
        if (label->buddy())
            add(label->text());
    return letters;
}

} // namespace quorvik
