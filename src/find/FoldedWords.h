#pragma once

#include <QString>
#include <QStringList>

namespace quorvik
{

/** The words of a text as they are compared: small letters without accents. A word is a run of letters and
 * digits, or "%". */
QStringList FoldedWords(const QString &text);

/** How well a typed word fits one of the index, the best last. */
enum class WordFit {
    None,
    TwoErrors, ///< more than one typing error, in a word of eight letters or more
    OneError,  ///< one, in a word of four letters or more
    Inside,
    Prefix,
    Whole
};

/**
 * Compares two folded words. A typing error is a letter too many, too few or wrong, or two in the wrong
 * order; a word that is still being typed may have it as well. Words with a digit forgive none, and one
 * letter stands for what begins with it.
 * @param forgives whether typing errors are looked for, which takes far longer than all else.
 */
WordFit FitOf(QStringView typed, QStringView word, bool forgives = true);

} // namespace quorvik
