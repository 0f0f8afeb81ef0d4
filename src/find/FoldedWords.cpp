#include "find/FoldedWords.h"

#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

constexpr int OneErrorFrom = 4;
constexpr int TwoErrorsFrom = 8;
/** Longer words forgive nothing; there are none in the texts. */
constexpr int LongestForgiven = 24;

using Distances = std::array<int, LongestForgiven + 1>;

bool HasDigit(QStringView word)
{
    return std::any_of(word.begin(), word.end(), [](QChar letter) { return letter.isDigit(); });
}

/** The errors between what was typed and the word, or a beginning of it that ends in the last letters typed;
 * any number above most where there are more. */
int ErrorsOf(QStringView typed, QStringView word, int most)
{
    const int letters = int(typed.size());
    // More of the word than this would cost more letters than may be missing.
    const int length = int(std::min<qsizetype>(word.size(), letters + most));
    std::array<Distances, 3> rows{};
    Distances *before = &rows[0];
    Distances *above = &rows[1];
    Distances *row = &rows[2];
    for (int k = 0; k <= length; ++k)
        (*above)[std::size_t(k)] = k;
    int best = most + 1;
    for (int i = 1; i <= letters; ++i) {
        (*row)[0] = i;
        int least = i;
        for (int k = 1; k <= length; ++k) {
            const auto at = std::size_t(k);
            const bool isSame = typed[i - 1] == word[k - 1];
            const bool isSwapped =
                i > 1 && k > 1 && typed[i - 1] == word[k - 2] && typed[i - 2] == word[k - 1];
            int errors =
                std::min({(*above)[at] + 1, (*row)[at - 1] + 1, (*above)[at - 1] + (isSame ? 0 : 1)});
            if (isSwapped)
                errors = std::min(errors, (*before)[at - 2] + 1);
            (*row)[at] = errors;
            least = std::min(least, errors);
            // A beginning counts only where the typing has arrived at its end.
            if (i == letters && (k == word.size() || isSame || isSwapped))
                best = std::min(best, errors);
        }
        if (least > most)
            return most + 1;
        Distances *spare = before;
        before = above;
        above = row;
        row = spare;
    }
    return best;
}

} // namespace

QStringList FoldedWords(const QString &text)
{
    QStringList words;
    QString word;
    const auto end = [&] {
        if (!word.isEmpty())
            words.append(std::exchange(word, QString()));
    };
    for (const QChar letter : text.normalized(QString::NormalizationForm_D)) {
        if (letter.isLetterOrNumber()) {
            word.append(letter.toLower());
        } else if (!letter.isMark()) {
            end();
            if (letter == u'%')
                words.append(QString(letter));
        }
    }
    end();
    return words;
}

WordFit FitOf(QStringView typed, QStringView word, bool forgives)
{
    if (typed.isEmpty())
        return WordFit::None;
    if (word.startsWith(typed))
        return word.size() == typed.size() ? WordFit::Whole : WordFit::Prefix;
    if (typed.size() > 1 && word.contains(typed))
        return WordFit::Inside;
    if (!forgives || typed.size() < OneErrorFrom || typed.size() > LongestForgiven - 2 || HasDigit(typed))
        return WordFit::None;
    const int most = typed.size() < TwoErrorsFrom ? 1 : 2;
    if (word.size() < typed.size() - most)
        return WordFit::None;
    switch (ErrorsOf(typed, word, most)) {
    case 1:
        return WordFit::OneError;
    case 2:
        return most == 2 ? WordFit::TwoErrors : WordFit::None;
    default:
        return WordFit::None;
    }
}

} // namespace quorvik
