#include "find/FindIndex.h"

#include "find/FoldedWords.h"

#include <algorithm>
#include <array>

namespace quorvik
{

namespace
{

/** What a fit counts, by WordFit. */
constexpr std::array<int, 6> PointsOfFit = {0, 15, 30, 45, 80, 100};
/** How much more a word counts where it stands, by FindIndex::Weight. */
constexpr std::array<int, 4> Factors = {2, 5, 6, 10};
/** A word inside another in a place; the help alone comes to less. */
constexpr int LeastOfAName = 225;

constexpr int WholeTitle = 1000;
constexpr int TitleBegins = 300;
constexpr int TitleHolds = 150;
/** Of a title that is covered by what was typed. */
constexpr int FullCover = 200;
/** Above all that words can come to. */
constexpr int ItsNumber = 100000;

} // namespace

void FindIndex::Add(const FindEntry &entry, const FindTexts &texts)
{
    const QStringList title = FoldedWords(entry.title);
    byKey_.insert(entry.key, int(entries_.size()));
    entries_.push_back(entry);
    titles_.push_back(title.join(u' '));
    AddWords(title, Weight::Title);
    // Who writes two words as one means the same.
    for (qsizetype i = 1; i < title.size(); ++i)
        AddWords({title[i - 1] + title[i]}, Weight::Also);
    texts_.push_back(texts);
    for (const QString &text : texts.texts + texts.also)
        AddWords(FoldedWords(text), Weight::Also);
    AddWords(FoldedWords(entry.place), Weight::Place);
    AddWords(FoldedWords(texts.help), Weight::Help);
}

void FindIndex::AddWords(const QStringList &words, Weight weight)
{
    const int entry = Count() - 1;
    for (const QString &text : words) {
        const auto known = wordNumbers_.constFind(text);
        const int number = known == wordNumbers_.constEnd() ? int(words_.size()) : *known;
        if (known == wordNumbers_.constEnd()) {
            wordNumbers_.insert(text, number);
            words_.push_back({text, {}});
        }
        std::vector<Posting> &postings = words_[std::size_t(number)].postings;
        // Entries come one after the other, their heaviest words first.
        if (postings.empty() || postings.back().entry != entry)
            postings.push_back({entry, weight});
        else
            postings.back().weight = std::max(postings.back().weight, weight);
    }
}

void FindIndex::FitWord(const QString &typed, Forgiving forgiving, Scores &best) const
{
    for (const Word &word : words_) {
        const WordFit fit = FitOf(typed, word.text, forgiving != Forgiving::Nothing);
        const bool isWrong = fit < WordFit::Inside;
        if (fit == WordFit::None)
            continue;
        for (const Posting &posting : word.postings) {
            if (isWrong && posting.weight == Weight::Help && forgiving != Forgiving::Help)
                continue;
            int &score = best[std::size_t(posting.entry)];
            score = std::max(score, PointsOfFit[std::size_t(fit)] * Factors[std::size_t(posting.weight)]);
        }
    }
}

QStringList FindIndex::Reasons(int entry, const QString &query) const
{
    const auto fits = [](const QString &typed, const QString &text) {
        return std::ranges::any_of(FoldedWords(text), [&typed](const QString &word) {
            return FitOf(typed, word, false) >= WordFit::Inside;
        });
    };
    const FindEntry &found = At(entry);
    const FindTexts &texts = texts_[std::size_t(entry)];
    // A topic is the help itself.
    const QStringList help = found.kind == FindKind::Topic ? QStringList() : FoldedWords(texts.help);
    QStringList reasons;
    for (const QString &typed : FoldedWords(query)) {
        if (fits(typed, found.title + u' ' + found.place + u' ' + texts.also.join(u' ')))
            continue;
        const auto fitting = [&](const QString &text) { return fits(typed, text); };
        if (const auto text = std::ranges::find_if(texts.texts, fitting); text != texts.texts.end())
            reasons.append(*text);
        else if (const auto word = std::ranges::find_if(help, fitting); word != help.end())
            reasons.append(QStringLiteral("help: ") + *word);
    }
    reasons.removeDuplicates();
    return reasons;
}

int FindIndex::TitleBonus(int entry, const QStringList &typed) const
{
    const QString &title = titles_[std::size_t(entry)];
    const QString phrase = typed.join(u' ');
    const FindEntry &found = At(entry);
    if (found.kind == FindKind::Parameter && typed.size() == 1 && typed[0] == QString::number(found.number))
        return ItsNumber;
    int bonus = 0;
    // A parameter's title begins with its number, which hardly anybody types.
    const bool isParameter = found.kind == FindKind::Parameter;
    const QStringView name =
        isParameter ? QStringView(title).mid(title.indexOf(u' ') + 1) : QStringView(title);
    if (name == phrase || title == phrase)
        bonus = WholeTitle;
    else if (name.startsWith(phrase) || title.startsWith(phrase))
        bonus = TitleBegins;
    else if (name.contains(phrase))
        bonus = TitleHolds;
    if (bonus > 0)
        bonus += int(FullCover * phrase.size() / std::max<qsizetype>(name.size(), phrase.size()));
    return bonus;
}

std::vector<FindHit> FindIndex::Search(const QStringList &typed, Forgiving forgiving) const
{
    Scores total(entries_.size(), 0);
    Scores best(entries_.size());
    for (const QString &word : typed) {
        std::fill(best.begin(), best.end(), 0);
        FitWord(word, forgiving, best);
        for (std::size_t entry = 0; entry < total.size(); ++entry)
            // Once below zero an entry is out: a word does not fit it.
            total[entry] = total[entry] < 0 || best[entry] == 0 ? -1 : total[entry] + best[entry];
    }
    std::vector<FindHit> hits;
    for (int entry = 0; entry < Count(); ++entry)
        if (const int score = total[std::size_t(entry)]; score > 0)
            hits.push_back({entry, score + TitleBonus(entry, typed)});
    std::ranges::stable_sort(hits, [this](const FindHit &left, const FindHit &right) {
        const FindEntry &first = At(left.entry);
        const FindEntry &second = At(right.entry);
        return std::tuple(-left.score, first.kind, first.number) <
               std::tuple(-right.score, second.kind, second.number);
    });
    return hits;
}

std::vector<FindHit> FindIndex::Search(const QString &query) const
{
    const QStringList typed = FoldedWords(query);
    if (typed.isEmpty())
        return {};
    std::vector<FindHit> hits = Search(typed, Forgiving::Nothing);
    if (hits.empty() || hits.front().score < LeastOfAName * int(typed.size()))
        hits = Search(typed, Forgiving::Names);
    return hits.empty() ? Search(typed, Forgiving::Help) : hits;
}

} // namespace quorvik
