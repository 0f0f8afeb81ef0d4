#include "desktop/Mnemonics.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>

namespace quorvik
{

QChar MnemonicOf(const QString &caption)
{
    for (qsizetype i = caption.indexOf(u'&'); i >= 0 && i + 1 < caption.size();
         i = caption.indexOf(u'&', i + 2))
        if (caption.at(i + 1) != u'&')
            return caption.at(i + 1).toUpper();
    return {};
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
